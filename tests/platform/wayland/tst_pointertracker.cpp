#include "platform/wayland/PointerTracker.h"
#include "support/TestEnvironment.h"

#include <QEnterEvent>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

#include <memory>

using namespace randblatt;

namespace {

void enter(QWindow &window, const QPointF &position)
{
    QEnterEvent event(position, position, position);
    QCoreApplication::sendEvent(&window, &event);
}

void move(QWindow &window, const QPointF &position)
{
    QMouseEvent event(QEvent::MouseMove, position, position, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &event);
}

void leave(QWindow &window)
{
    QEvent event(QEvent::Leave);
    QCoreApplication::sendEvent(&window, &event);
}

} // namespace

class PointerTrackerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void followsThePointerOverAWindow()
    {
        PointerTracker tracker;
        QWindow window;
        tracker.follow(window);
        const QSignalSpy moved(&tracker, &PointerTracker::moved);
        QVERIFY(!tracker.window());
        enter(window, {3, 4});
        QCOMPARE(tracker.window(), &window);
        QCOMPARE(tracker.position(), QPointF(3, 4));
        move(window, {3, 4});
        QCOMPARE(moved.size(), 1);
        move(window, {30, 4});
        QCOMPARE(tracker.position(), QPointF(30, 4));
        leave(window);
        QTRY_VERIFY(!tracker.window());
        QCOMPARE(moved.size(), 3);
    }

    void isNowhereInBetweenTwoWindows()
    {
        PointerTracker tracker;
        QWindow strip;
        QWindow panel;
        tracker.follow(strip);
        tracker.follow(panel);
        enter(strip, {1, 1});
        bool wasNowhere = false;
        connect(&tracker, &PointerTracker::moved, this, [&] { wasNowhere |= tracker.window() == nullptr; });
        // Whichever of the two the compositor tells first.
        leave(strip);
        enter(panel, {2, 2});
        QCoreApplication::processEvents();
        QCOMPARE(tracker.window(), &panel);
        enter(strip, {1, 1});
        leave(panel);
        QCoreApplication::processEvents();
        QCOMPARE(tracker.window(), &strip);
        // In one go or not.
        leave(strip);
        QCoreApplication::processEvents();
        enter(panel, {2, 2});
        QCoreApplication::processEvents();
        QCOMPARE(tracker.window(), &panel);
        QVERIFY(!wasNowhere);
    }

    void losesThePointerWithItsWindow()
    {
        PointerTracker tracker;
        auto window = std::make_unique<QWindow>();
        tracker.follow(*window);
        enter(*window, {1, 1});
        window.reset();
        QTRY_VERIFY(!tracker.window());

        QWindow hidden;
        tracker.follow(hidden);
        enter(hidden, {1, 1});
        tracker.forget(hidden);
        QTRY_VERIFY(!tracker.window());
    }
};

RANDBLATT_TEST_MAIN(PointerTrackerTest, QGuiApplication)
#include "tst_pointertracker.moc"
