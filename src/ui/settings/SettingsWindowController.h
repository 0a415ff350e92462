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
class ShortcutSetting;
class StoreBackups;
class StoreHealth;
class ThemeEditor;

/// The settings window: made with the first show, kept when it is closed.
class SettingsWindowController : public WindowController
{
public:
    /// Everything is borrowed and must outlive the controller. `media`, where there is one, is the media
    /// module: its property `auth` is the user's account with the music service, which the window offers to
    /// connect (`isAuthorized`, `lastError`, `signIn()`, `signOut()`), and the `problem` of its property
    /// `webPlayer` says why the application cannot play by itself. They are not asked for before they are
    /// seen. With `health` the window tells what of the settings is not on the disk, with
    /// `backups` it offers to bring one back, with `shortcut` it records the key for the panel.
    SettingsWindowController(QQmlEngine &engine, AppSettings &settings, ModuleRegistry &registry,
                             QObject *media = nullptr, StoreHealth *health = nullptr,
                             StoreBackups *backups = nullptr, ShortcutSetting *shortcut = nullptr);
    ~SettingsWindowController() override;

    void show() override;
    /// Null before the first show.
    [[nodiscard]] QQuickView *window() const override;

private:
    QQmlEngine &m_engine;
    AppSettings &m_settings;
    ModuleRegistry &m_registry;
    QObject *m_media;
    StoreHealth *m_health;
    StoreBackups *m_backups;
    ShortcutSetting *m_shortcut;
    std::unique_ptr<ModuleListModel> m_modules;
    std::unique_ptr<ThemeEditor> m_editor;
    std::unique_ptr<FormWindow> m_window;
};

} // namespace randblatt
