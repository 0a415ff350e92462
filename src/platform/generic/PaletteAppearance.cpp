#include "platform/generic/PaletteAppearance.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

namespace randblatt {

PaletteAppearance::PaletteAppearance(QObject *parent)
    : DesktopAppearance(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
    follow();
}

bool PaletteAppearance::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ApplicationPaletteChange && watched == QCoreApplication::instance())
        follow();
    return false;
}

void PaletteAppearance::follow()
{
    const QPalette palette = QGuiApplication::palette();
    Wishes wishes;
    wishes.isDark =
        palette.color(QPalette::Window).lightnessF() < palette.color(QPalette::WindowText).lightnessF();
    setWishes(wishes);
}

} // namespace randblatt
