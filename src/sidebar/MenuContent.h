#pragma once

#include <QMenu>

namespace randblatt {

/// The menu of the tray icon.
class MenuContent : public QMenu
{
    Q_OBJECT

public:
    MenuContent();

Q_SIGNALS:
    void showSidebarRequested();
    void openSettingsRequested();
    void quitRequested();
};

} // namespace randblatt
