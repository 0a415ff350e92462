#include "platform/ScreenNames.h"
#include "platform/generic/GenericDesktop.h"
#include "platform/generic/GenericPanelWindow.h"
#include "support/TestEnvironment.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QTest>

using namespace randblatt;
using namespace Qt::StringLiterals;

class GenericPlatformTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pointerAndScreensShareOneOrigin()
    {
        const GenericDesktop desktop;
        const QSizeF size = QGuiApplication::primaryScreen()->geometry().size();
        QCOMPARE(desktop.mainScreen().value().frame, QRectF(QPointF(), size));
        QCursor::setPos(7, static_cast<int>(size.height()) - 1);
        QCOMPARE(desktop.pointerLocation(), QPointF(7, 0));
        QCursor::setPos(7, 0);
        QCOMPARE(desktop.pointerLocation(), QPointF(7, size.height() - 1));
    }

    void framesAreMeasuredFromTheBottom()
    {
        GenericPanelWindow panel(std::make_unique<QWindow>());
        panel.setFrame({-444, 39, 420, 700});
        const int height = QGuiApplication::primaryScreen()->geometry().height();
        QCOMPARE(panel.window()->geometry(), QRect(-444, height - 739, 420, 700));
        QCOMPARE(panel.frame(), QRectF(-444, 39, 420, 700));
    }

    void takesTheKeyboardWhenAsked()
    {
        GenericPanelWindow panel(std::make_unique<QWindow>());
        panel.orderFront();
        QVERIFY(QTest::qWaitForWindowExposed(panel.window()));
        QWindow other;
        other.show();
        QVERIFY(QTest::qWaitForWindowActive(&other));

        panel.makeKey();
        QVERIFY(QTest::qWaitForWindowActive(panel.window()));
        panel.orderOut();
        QVERIFY(!panel.window()->isVisible());
    }

    void repeatedScreenNamesAreTold()
    {
        ScreenNames names;
        QCOMPARE(names.unique(u"DP-1"_s), u"DP-1"_s);
        QCOMPARE(names.unique(u"DP-1"_s), u"DP-1#2"_s);
        QCOMPARE(names.unique({}), u"screen"_s);
        QCOMPARE(names.unique(u"DP-1"_s), u"DP-1#3"_s);
        QCOMPARE(names.unique({}), u"screen#2"_s);
    }
};

RANDBLATT_TEST_MAIN(GenericPlatformTest, QGuiApplication)
#include "tst_genericplatform.moc"
