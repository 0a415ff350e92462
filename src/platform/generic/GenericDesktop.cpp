#include "platform/generic/GenericDesktop.h"

#include "platform/Coordinates.h"
#include "platform/ScreenNames.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

namespace randblatt {

GenericDesktop::GenericDesktop(QObject *parent)
    : Desktop(parent)
{
    const auto present = QGuiApplication::screens();
    for (const QScreen *screen : present)
        watch(screen);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](const QScreen *screen) {
        watch(screen);
        refresh();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &GenericDesktop::refresh);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &GenericDesktop::refresh);
    refresh();
}

std::optional<Screen> GenericDesktop::mainScreen() const
{
    // Qt lists the primary screen first.
    return m_screens.isEmpty() ? std::nullopt : std::optional(m_screens.first());
}

std::optional<QPointF> GenericDesktop::pointerLocation() const
{
    const QScreen *primary = QGuiApplication::primaryScreen();
    if (!primary)
        return std::nullopt;
    const QRect frame = primary->geometry();
    return flippedPixel(QCursor::pos() - frame.topLeft(), frame.height());
}

bool GenericDesktop::isButtonHeld() const
{
    return QGuiApplication::mouseButtons() != Qt::NoButton;
}

void GenericDesktop::watch(const QScreen *screen)
{
    connect(screen, &QScreen::geometryChanged, this, &GenericDesktop::refresh);
    connect(screen, &QScreen::availableGeometryChanged, this, &GenericDesktop::refresh);
}

void GenericDesktop::refresh()
{
    const auto present = QGuiApplication::screens();
    const QScreen *primary = QGuiApplication::primaryScreen();
    ScreenNames names;
    QList<Screen> screens;
    for (const QScreen *screen : present) {
        if (screen->geometry().isEmpty())
            continue;
        const QRect origin = primary->geometry();
        const auto inCore = [&](const QRect &rect) {
            return flipped(rect.translated(-origin.topLeft()), origin.height());
        };
        screens.append({.id = names.unique(screen->name()),
                        .frame = inCore(screen->geometry()),
                        .visibleFrame = inCore(screen->availableGeometry())});
    }
    if (screens == m_screens)
        return;
    m_screens = screens;
    Q_EMIT screensChanged();
}

} // namespace randblatt
