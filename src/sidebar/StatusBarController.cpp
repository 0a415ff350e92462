#include "sidebar/StatusBarController.h"

#include "sidebar/MenuContent.h"
#include "ui/controls/SymbolProvider.h"

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

// Sizes that trays ask for, in pixels.
constexpr std::array traySizes{16, 22, 24, 32, 48};

QIcon trayIcon()
{
    QIcon icon;
    for (const int size : traySizes)
        icon.addPixmap(QPixmap::fromImage(SymbolProvider::image(u"sparkles"_s, Qt::white, size)));
    return icon;
}

} // namespace

StatusBarController::StatusBarController(MenuContent &menu, QObject *parent)
    : QObject(parent)
    , m_menu(menu)
{
}

StatusBarController::~StatusBarController() = default;

void StatusBarController::showStatusItem()
{
    if (m_statusItem)
        return;
    m_statusItem = std::make_unique<QSystemTrayIcon>(trayIcon());
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
