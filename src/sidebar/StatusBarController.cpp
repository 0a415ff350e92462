#include "sidebar/StatusBarController.h"

#include "sidebar/MenuContent.h"
#include "sidebar/TrayIcon.h"

namespace randblatt {

using namespace Qt::StringLiterals;

StatusBarController::StatusBarController(MenuContent &menu, QObject *parent)
    : QObject(parent)
    , m_menu(menu)
{
}

StatusBarController::~StatusBarController() = default;

void StatusBarController::setColor(const QColor &color)
{
    if (m_color == color)
        return;
    m_color = color;
    if (m_statusItem)
        m_statusItem->setIcon(trayIcon(m_color));
}

void StatusBarController::showStatusItem()
{
    if (m_statusItem)
        return;
    m_statusItem = std::make_unique<QSystemTrayIcon>(trayIcon(m_color));
    m_statusItem->setToolTip(u"Quillbar"_s);
    m_statusItem->setContextMenu(&m_menu);
    connect(m_statusItem.get(), &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger)
                    Q_EMIT m_menu.showSidebarRequested();
            });
    m_statusItem->show();
}

void StatusBarController::openSettings()
{
    Q_EMIT m_menu.openSettingsRequested();
}

void StatusBarController::quit()
{
    Q_EMIT m_menu.quitRequested();
}

} // namespace randblatt
