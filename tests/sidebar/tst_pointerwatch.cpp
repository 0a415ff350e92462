#include "sidebar/PointerWatch.h"

#include "settings/AppSettings.h"
#include "settings/Preferences.h"
#include "sidebar/SidebarPanelController.h"
#include "sidebar/SidebarUIState.h"
#include "sidebar/TriggerZone.h"
#include "support/Fakes.h"
#include "support/TestEnvironment.h"

#include <QTest>

#include <algorithm>

using namespace randblatt;

namespace {

const QPointF edge(0, 400);
const QPointF edgeOnTheRightScreen(1440, 400);
const QPointF corner(80, 890);
// Beside the panel, below it, and on it.
const QPointF beside(430, 400);
const QPointF below(200, 26);
const QPointF onThePanel(200, 400);

struct Fixture
{
    Preferences preferences{Preferences::inMemory()};
    FakeLoginItem loginItem;
    AppSettings settings{preferences, loginItem};
    FakeDesktop desktop;
    std::shared_ptr<PanelRecord> record = std::make_shared<PanelRecord>();
    SidebarPanelController controller{
        settings, desktop, [this](const QSizeF &) { return std::make_unique<RecordingPanel>(record); }};
    SidebarUIState uiState;
    PointerWatch watch{settings, desktop, controller, uiState};

    Fixture()
    {
        settings.setTriggerMode(TriggerMode::leftEdge);
        desktop.connected = {FakeDesktop::primaryScreen(), FakeDesktop::rightScreen()};
        Q_EMIT desktop.screensChanged();
    }

    [[nodiscard]] bool isWatched(const QPointF &point) const
    {
        return std::any_of(desktop.watched.begin(), desktop.watched.end(),
                           [&](const PointerArea &area) { return area.rect.contains(point); });
    }
};

} // namespace

class PointerWatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void watchesTheZonesOfAllScreens()
    {
        Fixture f;
        QVERIFY(f.isWatched(edge));
        QVERIFY(f.isWatched(edgeOnTheRightScreen));
        QVERIFY(!f.isWatched(corner));
        QVERIFY(!f.isWatched(beside));

        f.settings.setTriggerMode(TriggerMode::corners);
        QVERIFY(f.isWatched(corner));
        QVERIFY(!f.isWatched(edge));

        f.desktop.connected.removeFirst();
        Q_EMIT f.desktop.screensChanged();
        QVERIFY(!f.isWatched(corner));
    }

    void watchesAroundThePanelWhileItIsUp()
    {
        Fixture f;
        f.controller.show(FakeDesktop::primaryScreen());
        QVERIFY(f.isWatched(beside));
        QVERIFY(f.isWatched(below));
        QVERIFY(f.isWatched(edge));
        QVERIFY(!f.isWatched(onThePanel));

        f.controller.show(FakeDesktop::rightScreen());
        QTRY_VERIFY(f.isWatched(beside + QPointF(1440, 0)));
        QVERIFY(!f.isWatched(beside));

        f.controller.tearDown();
        QVERIFY(!f.isWatched(beside + QPointF(1440, 0)));
        QVERIFY(f.isWatched(edge));
    }

    void watchesEverywhereWhileSomethingIsOpen()
    {
        Fixture f;
        f.settings.setAlwaysVisible(true);
        f.uiState.setKeepOpen(true);
        for (const QPointF &point : {edge, corner, QPointF(900, 300), QPointF(3000, 300)})
            QVERIFY(f.isWatched(point));
        QVERIFY(f.desktop.watched.first().yieldsToClicks);
        f.uiState.setKeepOpen(false);
        QVERIFY(f.desktop.watched.isEmpty());
    }

    void leavesTheDesktopAloneWhenThePanelIsAlwaysVisible()
    {
        Fixture f;
        f.controller.show(FakeDesktop::primaryScreen());
        f.settings.setAlwaysVisible(true);
        QVERIFY(f.desktop.watched.isEmpty());
        f.settings.setAlwaysVisible(false);
        QVERIFY(f.isWatched(beside));
    }
};

RANDBLATT_TEST_MAIN(PointerWatchTest, QCoreApplication)
#include "tst_pointerwatch.moc"
