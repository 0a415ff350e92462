#pragma once

#include <QMenu>

namespace randblatt {

/// The menu of the tray icon.
class MenuContent : public QMenu
{
    Q_OBJECT

public:
    MenuContent();

protected:
    /// Where the menu is a window of ours, its keys work in it as well.
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

Q_SIGNALS:
    void showSidebarRequested();
    void openSettingsRequested();
    void quitRequested();
    /// The desktop has other colours.
    void paletteChanged();
};

} // namespace randblatt
