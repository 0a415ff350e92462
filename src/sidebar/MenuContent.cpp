#include "sidebar/MenuContent.h"

namespace randblatt {

using namespace Qt::StringLiterals;

MenuContent::MenuContent()
{
    addAction(u"Seitenleiste anzeigen"_s, this, &MenuContent::showSidebarRequested);
    QAction *settings = addAction(u"Einstellungen…"_s, this, &MenuContent::openSettingsRequested);
    settings->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma));
    addSeparator();
    QAction *quit = addAction(u"Randblatt beenden"_s, this, &MenuContent::quitRequested);
    quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
}

} // namespace randblatt
