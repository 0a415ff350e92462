#pragma once

#include <QObject>
#include <QSystemTrayIcon>

#include <memory>

namespace randblatt {

class MenuContent;

/// The tray icon and its menu. The icon may only be made once the desktop has a tray: Qt remembers for the
/// whole process whether it found one.
class StatusBarController : public QObject
{
    Q_OBJECT

public:
    /// `menu` is borrowed and must outlive the controller.
    explicit StatusBarController(MenuContent &menu, QObject *parent = nullptr);
    ~StatusBarController() override;

    /// Puts the icon into the tray; nothing if it is there already. A click on it asks for the sidebar.
    void showStatusItem();
    /// Posts the wish for the settings window, as the menu does.
    void openSettings();
    void quit();

private:
    MenuContent &m_menu;
    std::unique_ptr<QSystemTrayIcon> m_statusItem;
};

} // namespace randblatt
