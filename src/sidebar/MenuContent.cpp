#include "sidebar/MenuContent.h"

#include <QKeyEvent>

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

void MenuContent::keyPressEvent(QKeyEvent *event)
{
    const auto all = actions();
    for (QAction *action : all) {
        if (action->shortcut().matches(QKeySequence(event->keyCombination())) != QKeySequence::ExactMatch)
            continue;
        close();
        action->trigger();
        return;
    }
    QMenu::keyPressEvent(event);
}

void MenuContent::changeEvent(QEvent *event)
{
    QMenu::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        Q_EMIT paletteChanged();
}

} // namespace randblatt
