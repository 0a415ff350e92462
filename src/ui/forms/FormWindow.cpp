#include "ui/forms/FormWindow.h"

#include <QKeyEvent>
#include <QQuickItem>
#include <QScreen>

namespace randblatt {

FormWindow::FormWindow(QQmlEngine &engine, const Description &description)
    : QQuickView(&engine, nullptr)
{
    setTitle(description.title);
    setResizeMode(SizeRootObjectToView);
    setMinimumSize(description.minimumSize);
    setPersistentGraphics(false);
    setPersistentSceneGraph(false);
    setInitialProperties(description.properties);
    setSource(description.source);
    const QSize available = screen()->availableSize();
    resize(description.size.boundedTo(available).expandedTo(description.minimumSize));
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

void FormWindow::keyPressEvent(QKeyEvent *event)
{
    // What has the keyboard comes first: a dialog within the window, a drag.
    QQuickView::keyPressEvent(event);
    if (!event->isAccepted() && (event->matches(QKeySequence::Cancel) || event->matches(QKeySequence::Close)))
        close();
}

} // namespace randblatt
