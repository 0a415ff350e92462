#pragma once

#include <QColor>
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

    /// The colour of the tray's texts, for a tray that does not colour the icon itself.
    void setColor(const QColor &color);
    /// Puts the icon into the tray; nothing if it is there already. A click on it asks for the sidebar.
    void showStatusItem();
    /// Posts the wish for the settings window, as the menu does.
    void openSettings();
    void quit();

private:
    MenuContent &m_menu;
    QColor m_color = Qt::white;
    std::unique_ptr<QSystemTrayIcon> m_statusItem;
};

} // namespace randblatt
