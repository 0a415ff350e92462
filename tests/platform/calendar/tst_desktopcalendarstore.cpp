#include "platform/calendar/DesktopCalendarStore.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

#include <thread>

using namespace Qt::StringLiterals;
using namespace randblatt;
using Outcome = CalendarOpening::Outcome;

namespace {

struct BackendRecord
{
    CalendarOpening opening = {CalendarOpening::Outcome::opened};
    int opened = 0;
    std::function<void()> changed;
};

/// A back end that answers from a thread of its own.
class ThreadedBackend : public CalendarBackend
{
public:
    ThreadedBackend(QString name, std::shared_ptr<BackendRecord> record)
        : m_name(std::move(name))
        , m_record(std::move(record))
    {
    }
    ~ThreadedBackend() override
    {
        for (std::thread &thread : m_threads)
            thread.join();
    }

    [[nodiscard]] QString name() const override { return m_name; }
    void setChangeHandler(std::function<void()> handler) override { m_record->changed = std::move(handler); }
    void open(std::function<void(const CalendarOpening &)> completion) override
    {
        ++m_record->opened;
        m_threads.emplace_back([completion, opening = m_record->opening] { completion(opening); });
    }
    void fetchEvents(const QDateTime &start, const QDateTime &end,
                     std::function<void(const CalendarStore::Events &)> completion) override
    {
        const CalendarEvent event{m_name, m_name, start, end, false, {}, m_name};
        m_threads.emplace_back([completion, event] { completion(QList<CalendarEvent>{event}); });
    }
    void fetchCalendars(std::function<void(const CalendarStore::Calendars &)> completion) override
    {
        m_threads.emplace_back([completion] { completion(QList<WritableCalendar>()); });
    }
    void saveEvent(const NewCalendarEvent &event,
                   std::function<void(const CalendarStore::Saved &)> completion) override
    {
        m_threads.emplace_back([completion, uid = event.uid] { completion(SavedEvent{{}, uid, {}}); });
    }
    void removeEvent(const SavedEvent &,
                     std::function<void(const CalendarStore::Removed &)> completion) override
    {
        m_threads.emplace_back([completion] { completion(Removal::removed); });
    }

private:
    QString m_name;
    std::shared_ptr<BackendRecord> m_record;
    std::vector<std::thread> m_threads;
};

} // namespace

class DesktopCalendarStoreTest : public QObject
{
    Q_OBJECT

private:
    std::shared_ptr<BackendRecord> m_server;
    std::shared_ptr<BackendRecord> m_file;
    std::unique_ptr<DesktopCalendarStore> m_store;
    QString m_reason;

    std::optional<bool> access()
    {
        std::optional<bool> answer;
        m_store->requestAccess(this, [&](const CalendarStore::Access &access) {
            QCOMPARE(QThread::currentThread(), QCoreApplication::instance()->thread());
            answer = static_cast<bool>(access);
            m_reason = access.reason();
        });
        // Never before the call has returned.
        if (answer || !QTest::qWaitFor([&] { return answer.has_value(); }))
            return std::nullopt;
        return answer;
    }

    QString titleOfFetched()
    {
        std::optional<CalendarStore::Events> answer;
        const QDateTime now = QDateTime::currentDateTime();
        m_store->fetchEvents(now, now, this, [&](const CalendarStore::Events &events) { answer = events; });
        if (!QTest::qWaitFor([&] { return answer.has_value(); }))
            return u"(keine Antwort)"_s;
        return *answer ? (*answer)->first().title : u"(nichts)"_s;
    }

private Q_SLOTS:
    void init()
    {
        m_server = std::make_shared<BackendRecord>();
        m_file = std::make_shared<BackendRecord>();
        std::vector<std::unique_ptr<CalendarBackend>> candidates;
        candidates.push_back(std::make_unique<ThreadedBackend>(u"Server"_s, m_server));
        candidates.push_back(std::make_unique<ThreadedBackend>(u"Datei"_s, m_file));
        m_store = std::make_unique<DesktopCalendarStore>(std::move(candidates));
    }

    void keepsTheFirstThatIsThere()
    {
        m_server->opening = {Outcome::absent};
        QCOMPARE(access(), true);
        m_server->opening = {Outcome::opened};
        QCOMPARE(access(), true);
        QCOMPARE(titleOfFetched(), u"Datei"_s);
        QCOMPARE(m_server->opened, 1);
    }

    void waitsForTheRightOneInsteadOfTakingAnother()
    {
        m_server->opening = {Outcome::failed, u"Der Kalenderdienst antwortet nicht."_s};
        QCOMPARE(access(), false);
        QCOMPARE(m_reason, m_server->opening.reason);
        QCOMPARE(titleOfFetched(), u"(nichts)"_s);
        m_server->opening = {Outcome::opened};
        QCOMPARE(access(), true);
        QCOMPARE(titleOfFetched(), u"Server"_s);
        // Not even if it is taken away.
        m_server->opening = {Outcome::absent};
        QCOMPARE(access(), false);
        QCOMPARE(m_file->opened, 0);
    }

    void refusesAccessWhereThereIsNone()
    {
        m_server->opening = m_file->opening = {Outcome::absent};
        QCOMPARE(access(), false);
        QCOMPARE(titleOfFetched(), u"(nichts)"_s);
    }

    void answersNobodyWhoIsGone()
    {
        QCOMPARE(access(), true);
        bool called = false;
        auto context = std::make_unique<QObject>();
        m_store->saveEvent({}, context.get(), [&](const CalendarStore::Saved &) { called = true; });
        context.reset();
        m_store->saveEvent({}, this, [&](const CalendarStore::Saved &) { called = true; });
        m_store.reset();
        QTest::qWait(20);
        QVERIFY(!called);
    }

    void passesChangesOnToTheMainThread()
    {
        QSignalSpy changes(m_store.get(), &CalendarStore::changed);
        std::thread(m_server->changed).join();
        QCOMPARE(changes.count(), 0);
        QTRY_COMPARE(changes.count(), 1);
    }
};

RANDBLATT_TEST_MAIN(DesktopCalendarStoreTest, QCoreApplication)
#include "tst_desktopcalendarstore.moc"
