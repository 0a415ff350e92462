#pragma once

#include "ui/forms/WindowController.h"

#include <QQuickView>

#include <memory>

class QObject;
class QQmlEngine;

namespace randblatt {

class AppSettings;
class FormWindow;
class ModuleListModel;
class ModuleRegistry;
class ThemeEditor;

/// The settings window: made with the first show, kept when it is closed.
class SettingsWindowController : public WindowController
{
public:
    /// Everything is borrowed and must outlive the controller. `account`, where there is one, is the user's
    /// account with the music service, which the window then offers to connect: an object with the properties
    /// `isAuthorized` and `lastError` and the operations `signIn()` and `signOut()`.
    SettingsWindowController(QQmlEngine &engine, AppSettings &settings, ModuleRegistry &registry,
                             QObject *account = nullptr);
    ~SettingsWindowController() override;

    void show() override;
    /// Null before the first show.
    [[nodiscard]] QQuickView *window() const override;

private:
    QQmlEngine &m_engine;
    AppSettings &m_settings;
    ModuleRegistry &m_registry;
    QObject *m_account;
    std::unique_ptr<ModuleListModel> m_modules;
    std::unique_ptr<ThemeEditor> m_editor;
    std::unique_ptr<FormWindow> m_window;
};

} // namespace randblatt
