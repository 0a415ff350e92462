#pragma once

#include "ui/forms/WindowController.h"

#include <QQuickView>

#include <memory>

class QQmlEngine;

namespace randblatt {

class AppSettings;
class FormWindow;

/// The window that welcomes a new user: made with the first show, closed by its button.
class OnboardingWindowController : public WindowController
{
public:
    /// Everything is borrowed and must outlive the controller.
    OnboardingWindowController(QQmlEngine &engine, AppSettings &settings);
    ~OnboardingWindowController() override;

    void show() override;
    /// Null before the first show.
    [[nodiscard]] QQuickView *window() const override;

private:
    QQmlEngine &m_engine;
    AppSettings &m_settings;
    std::unique_ptr<FormWindow> m_window;
};

} // namespace randblatt
