#include "CalendarContract.h"
#include "ServerProbe.h"
#include "platform/calendar/DesktopCalendarStore.h"
#include "platform/calendar/EmbeddedCalendar.h"
#include "platform/calendar/ServerCalendar.h"
#include "support/PrivateBus.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QSignalSpy>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace randblatt;

class ServerCalendarTest : public CalendarContract
{
    Q_OBJECT

protected:
    std::unique_ptr<CalendarStore> makeStore(const QByteArray &ics) override
    {
        m_probe->clear();
        m_probe->add(ics);
        return makeServerStore(QStringLiteral(SERVER_PLUGIN), bus());
    }
    void addByOthers(const QByteArray &ics) override { m_probe->add(ics); }
    void changeByOthers(const SavedEvent &event, const QByteArray &property) override
    {
        m_probe->change(event.uid.toUtf8(), property);
    }

private:
    [[nodiscard]] static QDBusConnection bus() { return QDBusConnection::sessionBus(); }

    [[nodiscard]] static std::unique_ptr<CalendarStore> makeServerStore(const QString &plugin,
                                                                        const QDBusConnection &bus)
    {
        std::vector<std::unique_ptr<CalendarBackend>> backends;
        backends.push_back(std::make_unique<ServerCalendar>(plugin, bus));
        return std::make_unique<DesktopCalendarStore>(std::move(backends));
    }

    [[nodiscard]] static CalendarStore::Events fetchWeek(CalendarStore &store)
    {
        return fetch(store, QDate(2026, 10, 26), 7);
    }

    /// Kills the server's process that owns a bus name with the given beginning.
    static void kill(const QString &prefix)
    {
        const QStringList names = bus().interface()->registeredServiceNames();
        for (const QString &name : names) {
            if (name.startsWith(prefix))
                ::kill(static_cast<pid_t>(bus().interface()->servicePid(name).value()), SIGKILL);
        }
    }

    std::unique_ptr<ServerProbe> m_probe;

private Q_SLOTS:
    void init()
    {
        if (!m_probe)
            m_probe = std::make_unique<ServerProbe>();
    }
    void cleanupTestCase() { m_probe.reset(); }

    void savesWhereOtherProgramsFindIt()
    {
        const auto store = makeStore(calendar({}));
        QVERIFY(access(*store));
        const QDateTime start(QDate(2026, 10, 26), QTime(9, 0));
        QVERIFY(save(*store, {u"Zahnarzt"_s, start, start.addSecs(3600)}));
        QCOMPARE(m_probe->titles(), QStringList{u"Zahnarzt"_s});
    }

    void savesNothingInACalendarThatIsReadOnly()
    {
        const auto store = makeStore(calendar({}));
        QVERIFY(access(*store));
        const QDateTime start(QDate(2026, 10, 26), QTime(9, 0));
        NewCalendarEvent event{u"Zahnarzt"_s, start, start.addSecs(3600)};
        event.calendar = u"birthdays"_s;
        const auto saved = save(*store, event);
        QVERIFY(!saved);
        QVERIFY2(saved.reason().contains(u"nur lesen"_s), qUtf8Printable(saved.reason()));
        // Not even if it is the default one.
        m_probe->useReadOnlyDefault(true);
        event.calendar.clear();
        const auto elsewhere = save(*store, event);
        m_probe->useReadOnlyDefault(false);
        QVERIFY(elsewhere);
        QCOMPARE(elsewhere->calendar, u"system-calendar"_s);
        QCOMPARE(m_probe->titles(), QStringList{u"Zahnarzt"_s});
    }

    void isNotThereWithoutPluginOrServer()
    {
        const auto withoutPlugin = makeServerStore(u"/nirgends/quillbar-calendar-server.so"_s, bus());
        QVERIFY(!access(*withoutPlugin));
        const PrivateBus empty;
        const auto withoutServer = makeServerStore(
            QStringLiteral(SERVER_PLUGIN), QDBusConnection::connectToBus(empty.address(), u"empty"_s));
        QVERIFY(!access(*withoutServer));
    }

    void showsTheCalendarsThatWorkBesideABrokenOne()
    {
        const auto store =
            makeStore(calendar(event("a", "SUMMARY:Alt\nDTSTART:20261026T080000Z\nDURATION:PT1H")));
        QVERIFY(access(*store));
        QCOMPARE(fetchWeek(*store)->size(), 1);
        QSignalSpy changes(store.get(), &CalendarStore::changed);
        m_probe->addBrokenCalendar("Kaputt");
        QTRY_VERIFY_WITH_TIMEOUT(!changes.isEmpty(), 30'000);
        const auto events = fetchWeek(*store);
        m_probe->removeBrokenCalendar();
        QVERIFY(events);
        QCOMPARE(events->size(), 1);
    }

    void recoversWhenTheServerDies_data()
    {
        QTest::addColumn<QString>("victim");
        QTest::newRow("calendars") << u"org.gnome.evolution.dataserver.Calendar"_s;
        QTest::newRow("registry") << u"org.gnome.evolution.dataserver.Sources"_s;
    }

    void recoversWhenTheServerDies()
    {
        QFETCH(QString, victim);
        const auto store =
            makeStore(calendar(event("a", "SUMMARY:Alt\nDTSTART:20261026T080000Z\nDURATION:PT1H")));
        QVERIFY(access(*store));
        QCOMPARE(fetchWeek(*store)->size(), 1);
        QSignalSpy changes(store.get(), &CalendarStore::changed);
        // The library has one registry for the whole process; ours must be the one that comes back.
        m_probe.reset();
        kill(victim);
        // In the middle of it or after it, the query answers; then the change is told.
        (void)fetchWeek(*store);
        QTRY_VERIFY_WITH_TIMEOUT(!changes.isEmpty(), 30'000);
        QTRY_VERIFY_WITH_TIMEOUT(access(*store) && lines(fetchWeek(*store)).size() == 1 &&
                                     lines(fetchWeek(*store)).first().endsWith(u"Alt"),
                                 60'000);
    }

    void endsInTheMiddleOfAQuery()
    {
        auto store = makeStore(calendar({}));
        QVERIFY(access(*store));
        store->fetchEvents(QDateTime::currentDateTime(), QDateTime::currentDateTime().addDays(7), this,
                           [](const CalendarStore::Events &) { QFAIL("answered after the end"); });
        store.reset();
        QTest::qWait(50);
    }
};

int main(int argc, char **argv)
{
    const TestEnvironment environment;
    qputenv("GSETTINGS_BACKEND", "memory");
    const PrivateBus bus(PrivateBus::Services::installed);
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toLocal8Bit());
    const QCoreApplication application(argc, argv);
    ServerCalendarTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_servercalendar.moc"
