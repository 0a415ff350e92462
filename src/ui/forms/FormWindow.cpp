#include "ui/forms/FormWindow.h"

#include "ui/controls/Wishes.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMetaEnum>
#include <QPalette>
#include <QQmlProperty>
#include <QQuickItem>
#include <QScreen>

namespace randblatt {

using namespace Qt::StringLiterals;

FormWindow::FormWindow(QQmlEngine &engine, const Description &description)
    : QQuickView(&engine, nullptr)
{
    setTitle(description.title);
    setResizeMode(SizeRootObjectToView);
    setMinimumSize(description.minimumSize);
    setPersistentGraphics(false);
    setPersistentSceneGraph(false);
    followPalette();
    setInitialProperties(description.properties);
    setSource(description.source);
    // Leaves room for the window's frame.
    const QSize available = screen()->availableSize() - QSize(0, 48);
    const QSize wanted = description.size * Wishes().textScale();
    resize(wanted.boundedTo(available).expandedTo(description.minimumSize));
}

FormWindow::~FormWindow()
{
    // The views go before the objects that they show.
    delete rootObject();
}

void FormWindow::bringToFront()
{
    // Not show() and its kin: they would undo the user's maximising.
    setWindowStates(windowStates() & ~Qt::WindowMinimized);
    setVisible(true);
    raise();
    requestActivate();
}

bool FormWindow::event(QEvent *event)
{
    if (event->type() == QEvent::ApplicationPaletteChange)
        followPalette();
    return QQuickView::event(event);
}

// The toolkit's dialogs take their colours from the window that they lie in, which does not take them from
// the desktop by itself.
void FormWindow::followPalette()
{
    const QPalette desktop = QGuiApplication::palette();
    const auto roles = QMetaEnum::fromType<QPalette::ColorRole>();
    for (int i = 0; i < QPalette::NColorRoles; ++i) {
        QString name = QString::fromLatin1(roles.key(i));
        name.front() = name.front().toLower();
        QQmlProperty(this, u"palette."_s + name)
            .write(desktop.color(QPalette::Active, static_cast<QPalette::ColorRole>(roles.value(i))));
    }
}

void FormWindow::keyPressEvent(QKeyEvent *event)
{
    // What has the keyboard comes first: a dialog within the window, a drag.
    QQuickView::keyPressEvent(event);
    if (!event->isAccepted() && (event->matches(QKeySequence::Cancel) || event->matches(QKeySequence::Close)))
        close();
}

} // namespace randblatt
