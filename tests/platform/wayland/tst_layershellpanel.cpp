#include "platform/wayland/LayerShellDesktop.h"
#include "platform/wayland/LayerShellPanelWindow.h"
#include "platform/wayland/StandInCompositor.h"
#include "settings/AppSettings.h"
#include "settings/Preferences.h"
#include "sidebar/CardRegion.h"
#include "sidebar/SidebarPanelController.h"
#include "support/Fakes.h"
#include "support/TestEnvironment.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

const QSize outputSize(1440, 900);
const QSize panelSize(420, 886);
const QRegion twoCards = cardRegion({{14, 14, 392, 300}, {14, 326, 392, 180}}, panelSize);
const QRegion oneCard = cardRegion({{14, 14, 392, 240}}, panelSize);

/// Tells when it was hidden.
struct View final : QQuickWindow
{
    std::function<void()> hidden = [] {};

protected:
    void hideEvent(QHideEvent *event) override
    {
        QQuickWindow::hideEvent(event);
        hidden();
    }
};

/// The desktop that the compositor shows, with a panel at its left edge that is hidden.
struct Fixture
{
    LayerShellDesktop desktop;
    View *window = new View;
    LayerShellPanelWindow panel{std::unique_ptr<View>(window), desktop, [](double) {}};

    Fixture()
    {
        panel.setScreen(*desktop.mainScreen());
        panel.setFrame(QRectF(QPointF(0, 14), panelSize));
    }
};

} // namespace

class LayerShellPanelTest : public QObject
{
    Q_OBJECT

public:
    explicit LayerShellPanelTest(StandInCompositor &compositor)
        : m_compositor(compositor)
    {
    }

private Q_SLOTS:
    void cleanup()
    {
        m_compositor.withdrawBackgroundEffects();
        m_compositor.withdrawKWinBlur();
        QTRY_COMPARE(m_compositor.blurObjects(), 0);
        QTRY_VERIFY(!panel());
        QCOMPARE(m_compositor.takeFaults(), QString());
    }

    void blursBehindTheCards_data()
    {
        QTest::addColumn<bool>("byKWin");
        QTest::newRow("ext-background-effect") << false;
        QTest::newRow("KWin's own") << true;
    }

    void blursBehindTheCards()
    {
        QFETCH(bool, byKWin);
        byKWin ? m_compositor.offerKWinBlur() : m_compositor.offerBackgroundEffects(true);
        Fixture f;
        f.panel.setBlurRegion(twoCards);
        f.panel.orderFront();
        QTRY_COMPARE(blur(), twoCards);
        f.panel.setBlurRegion(oneCard);
        QTRY_COMPARE(blur(), oneCard);
        f.panel.setBlurRegion({});
        QTRY_COMPARE(blur(), QRegion());
        f.panel.setBlurRegion(twoCards);
        QTRY_COMPARE(blur(), twoCards);

        const int before = panel()->id;
        f.panel.orderOut();
        QTRY_VERIFY(!panel());
        QCOMPARE(m_compositor.blurObjects(), 0);
        f.panel.orderFront();
        QTRY_COMPARE(blur(), twoCards);
        QVERIFY(panel()->id != before);
    }

    void prefersTheProtocolOfAll()
    {
        m_compositor.offerKWinBlur();
        m_compositor.offerBackgroundEffects(true);
        Fixture f;
        f.panel.setBlurRegion(twoCards);
        f.panel.orderFront();
        QTRY_COMPARE(panel()->effectBlur, twoCards);
        QCOMPARE(panel()->kwinBlur, QRegion());
        // It is there for other effects as well.
        m_compositor.offerBackgroundEffects(false);
        QTRY_COMPARE(panel()->kwinBlur, twoCards);
    }

    void followsWhatTheCompositorCanDo_data() { blursBehindTheCards_data(); }

    void followsWhatTheCompositorCanDo()
    {
        QFETCH(bool, byKWin);
        const auto offer = [&](bool hasBlur) {
            if (!byKWin)
                m_compositor.offerBackgroundEffects(hasBlur);
            else if (hasBlur)
                m_compositor.offerKWinBlur();
            else
                m_compositor.withdrawKWinBlur();
        };
        offer(false);
        Fixture f;
        f.panel.setBlurRegion(twoCards);
        f.panel.orderFront();
        QTRY_VERIFY(isShown());
        QCOMPARE(blur(), QRegion());
        offer(true);
        QTRY_COMPARE(blur(), twoCards);
        offer(false);
        // What the desktop learns of at the same time.
        QTRY_COMPARE(m_compositor.blurObjects(), 0);
        f.panel.setBlurRegion(oneCard);
        offer(true);
        QTRY_COMPARE(blur(), oneCard);
        f.panel.orderOut();
        QTRY_VERIFY(!panel());
        offer(false);
        QTRY_VERIFY(!f.desktop.connection().backgroundEffects() && !f.desktop.connection().kwinBlur());
        offer(true);
        QTRY_VERIFY(f.desktop.connection().backgroundEffects() || f.desktop.connection().kwinBlur());
        f.panel.orderFront();
        QTRY_COMPARE(blur(), oneCard);
    }

    void isTakenAway_data() { blursBehindTheCards_data(); }

    void isTakenAway()
    {
        QFETCH(bool, byKWin);
        byKWin ? m_compositor.offerKWinBlur() : m_compositor.offerBackgroundEffects(true);
        Fixture f;
        f.panel.setBlurRegion(twoCards);
        f.panel.orderFront();
        QTRY_COMPARE(blur(), twoCards);
        // Whatever a view wants that is not to be seen any more.
        f.window->hidden = [&] { f.panel.setBlurRegion(oneCard); };
        m_compositor.closePanels();
        QTRY_VERIFY(!f.panel.window()->isVisible());
        f.panel.orderFront();
        QTRY_COMPARE(blur(), oneCard);
    }

    void keepsItsSize()
    {
        Fixture f;
        f.panel.orderFront();
        QTRY_VERIFY(isShown());
        m_compositor.configurePanels({300, 200});
        m_compositor.configurePanels({});
        f.panel.setFrame(QRectF(QPointF(10, 14), panelSize));
        QTRY_COMPARE(panel()->margin, QPoint(10, 0));
        QVERIFY(isShown());
    }

    void letsThePointerReachTheEdgeAgain()
    {
        Fixture f;
        const QSize strip(3, 900);
        f.desktop.watchPointer({{QRectF(-10, -10, 12, 1000)}});
        const auto reach = [&] {
            const auto found = m_compositor.panel(strip.width());
            return found ? found->input : QRegion();
        };
        const QRegion whole(QRect(QPoint(), strip));
        QTRY_COMPARE(reach(), whole);
        f.panel.setFrame(QRectF(QPointF(-444, 14), panelSize));
        f.panel.orderFront();
        // Not before the panel is there to be entered.
        f.desktop.connection().waitForAnswers();
        QCOMPARE(reach(), whole);
        f.panel.setFrame(QRectF(QPointF(0, 14), panelSize));
        QTRY_COMPARE(reach(), whole - QRect(QPoint(), panelSize));
        f.panel.setFrame(QRectF(QPointF(-444, 14), panelSize));
        f.panel.orderOut();
        QTRY_COMPARE(reach(), whole);
    }

    void leavesWithItsScreen_data()
    {
        QTest::addColumn<StandInCompositor::Farewell>("farewell");
        QTest::addColumn<bool>("isOnlyOne");
        using enum StandInCompositor::Farewell;
        QTest::newRow("surfaces first") << surfacesFirst << false;
        QTest::newRow("output first") << outputFirst << false;
        QTest::newRow("output alone") << outputAlone << false;
        QTest::newRow("surfaces first, the only one") << surfacesFirst << true;
        QTest::newRow("output first, the only one") << outputFirst << true;
    }

    void leavesWithItsScreen()
    {
        QFETCH(StandInCompositor::Farewell, farewell);
        QFETCH(bool, isOnlyOne);
        m_compositor.offerBackgroundEffects(true);
        int other = isOnlyOne ? 0 : m_compositor.plug({1280, 720});
        QTRY_COMPARE(QGuiApplication::screens().size(), isOnlyOne ? 1 : 2);
        LayerShellDesktop desktop;
        Preferences preferences{Preferences::inMemory()};
        FakeLoginItem loginItem;
        AppSettings settings{preferences, loginItem};
        SidebarPanelController controller(settings, desktop, [&](const QSizeF &) {
            auto made = std::make_unique<LayerShellPanelWindow>(std::make_unique<QQuickWindow>(), desktop,
                                                                [](double) {});
            made->setBlurRegion(twoCards);
            return made;
        });
        const Screen first = *desktop.mainScreen();
        controller.show(first);
        QTRY_COMPARE(blur(), twoCards);
        const int gone = panel()->output;
        m_compositor.unplug(gone, farewell);
        QTRY_VERIFY(!desktop.screens().contains(first));
        QVERIFY(!controller.isVisible());
        QTRY_COMPARE(m_compositor.blurObjects(), 0);

        if (isOnlyOne)
            other = m_compositor.plug({1280, 720});
        QTRY_VERIFY(desktop.mainScreen());
        controller.show(*desktop.mainScreen());
        QTRY_COMPARE(blur(), twoCards);
        QCOMPARE(panel()->output, other);
    }

private:
    [[nodiscard]] std::optional<StandInCompositor::Panel> panel() const
    {
        return m_compositor.panel(panelSize.width());
    }
    [[nodiscard]] QRegion blur() const
    {
        const auto shown = panel();
        return shown ? shown->effectBlur | shown->kwinBlur : QRegion();
    }
    [[nodiscard]] bool isShown() const
    {
        const auto shown = panel();
        return shown && shown->size == panelSize && shown->picture == panelSize;
    }

    StandInCompositor &m_compositor;
};

int main(int argc, char **argv)
{
    const TestEnvironment environment;
    StandInCompositor compositor;
    compositor.plug(outputSize);
    qputenv("QT_QPA_PLATFORM", "wayland");
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1");
    QGuiApplication application(argc, argv);
    LayerShellPanelTest test(compositor);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_layershellpanel.moc"
