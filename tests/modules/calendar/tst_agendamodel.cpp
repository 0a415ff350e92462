#include "FakeCalendarStore.h"
#include "modules/calendar/AgendaModel.h"
#include "modules/calendar/CalendarFormat.h"
#include "modules/calendar/CalendarService.h"
#include "modules/calendar/DateTimeText.h"
#include "support/TestEnvironment.h"

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

class AgendaModelTest : public QObject
{
    Q_OBJECT

private:
    const QDate m_monday = QDate(2026, 11, 16);
    std::unique_ptr<FakeCalendarStore> m_store;
    std::unique_ptr<CalendarService> m_service;
    std::unique_ptr<AgendaModel> m_model;

    [[nodiscard]] QDateTime at(int day, int hour, int minute = 0) const
    {
        return {m_monday.addDays(day), QTime(hour, minute)};
    }

    void show(const QList<CalendarEvent> &events)
    {
        m_store->answer = events;
        const size_t before = m_store->fetches.size();
        m_service->reload();
        QCOMPARE(m_store->fetches.size(), before + 1);
        QCoreApplication::processEvents();
    }

    [[nodiscard]] QStringList column(AgendaModel::Role role) const
    {
        QStringList values;
        for (int row = 0; row < m_model->rowCount(); ++row)
            values.append(m_model->data(m_model->index(row), static_cast<int>(role)).toString());
        return values;
    }

private Q_SLOTS:
    void init()
    {
        m_store = std::make_unique<FakeCalendarStore>();
        m_service = std::make_unique<CalendarService>(*m_store, [this] { return at(0, 8); });
        m_model = std::make_unique<AgendaModel>(*m_service);
        new QAbstractItemModelTester(m_model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest,
                                     m_model.get());
    }

    void describesEvents()
    {
        CalendarEvent nameless = FakeCalendarStore::make({}, at(1, 23, 30), at(2, 1));
        nameless.calendarColor = Qt::red;
        show({FakeCalendarStore::make(u"Frühstück"_s, at(0, 9), at(0, 10, 30)),
              FakeCalendarStore::allDay(u"Messe"_s, m_monday), nameless});
        QCOMPARE(column(AgendaModel::Role::title),
                 (QStringList{u"Messe"_s, u"Frühstück"_s, u"(ohne Titel)"_s}));
        QCOMPARE(column(AgendaModel::Role::timeLine),
                 (QStringList{u"Ganztägig"_s, u"09:00 – 10:30"_s, u"23:30 – 01:00"_s}));
        QCOMPARE(column(AgendaModel::Role::day),
                 (QStringList{u"2026-11-16"_s, u"2026-11-16"_s, u"2026-11-17"_s}));
        QCOMPARE(column(AgendaModel::Role::color).last(), u"#ff0000"_s);
        QVERIFY(m_model->data(m_model->index(0), static_cast<int>(AgendaModel::Role::color))
                    .value<QColor>()
                    .isValid());
    }

    void changesOnlyTheRowsThatDiffer()
    {
        const QList<CalendarEvent> before{FakeCalendarStore::make(u"A"_s, at(0, 9), at(0, 10)),
                                          FakeCalendarStore::make(u"B"_s, at(0, 11), at(0, 12)),
                                          FakeCalendarStore::make(u"C"_s, at(1, 9), at(1, 10))};
        show(before);
        QSignalSpy inserted(m_model.get(), &AgendaModel::rowsInserted);
        QSignalSpy removed(m_model.get(), &AgendaModel::rowsRemoved);
        QSignalSpy moved(m_model.get(), &AgendaModel::rowsMoved);
        QSignalSpy changed(m_model.get(), &AgendaModel::dataChanged);
        QSignalSpy reset(m_model.get(), &AgendaModel::modelReset);
        show(before);
        QCOMPARE(inserted.count() + removed.count() + moved.count() + changed.count(), 0);

        QList<CalendarEvent> renamed = before;
        renamed[1].title = u"B neu"_s;
        show(renamed);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.first().first().toModelIndex().row(), 1);

        QList<CalendarEvent> earlier = renamed;
        earlier[1].start = at(0, 8);
        show(earlier);
        QCOMPARE(column(AgendaModel::Role::title), (QStringList{u"B neu"_s, u"A"_s, u"C"_s}));
        QCOMPARE(moved.count(), 1);
        QCOMPARE(inserted.count() + removed.count(), 0);

        // On another day an event belongs to another group.
        earlier[1].start = at(1, 8);
        earlier[1].end = at(1, 9);
        show(earlier);
        QCOMPARE(column(AgendaModel::Role::day),
                 (QStringList{u"2026-11-16"_s, u"2026-11-17"_s, u"2026-11-17"_s}));
        QCOMPARE(reset.count(), 0);
    }

    void followsAnyChange()
    {
        QRandomGenerator random(20261116);
        for (int round = 0; round < 200; ++round) {
            QList<CalendarEvent> events;
            for (int number = 0; number < 12; ++number) {
                if (random.bounded(3) == 0)
                    continue;
                const QDateTime start = at(random.bounded(2), random.bounded(24));
                events.append(FakeCalendarStore::make(QString::number(number), start, start));
            }
            // A store that names two events alike is at fault, but harms nobody.
            if (round % 10 == 0 && !events.isEmpty())
                events.append(events.first());
            show(events);
            QStringList expected;
            for (const CalendarEvent &event : m_service->events())
                expected.append(event.title);
            QCOMPARE(column(AgendaModel::Role::title), expected);
        }
    }

    void writesGermanDatesAndLengths()
    {
        QCOMPARE(CalendarFormat::dayHeading(m_monday), u"Montag, 16. November"_s);
        QCOMPARE(CalendarFormat::dayHeading(u"2026-03-01"_s), u"Sonntag, 1. März"_s);
        QCOMPARE(CalendarFormat::monthTitle(1, 2027), u"Februar 2027"_s);
        QStringList labels;
        for (const int minutes : {15, 45, 60, 90, 120, 180})
            labels.append(CalendarFormat::durationLabel(minutes));
        QCOMPARE(labels,
                 (QStringList{u"15 Min"_s, u"45 Min"_s, u"1 Std"_s, u"1 Std 30"_s, u"2 Std"_s, u"3 Std"_s}));
    }

    void stepsTheNumberUnderTheCursor_data()
    {
        QTest::addColumn<int>("cursor");
        QTest::addColumn<int>("steps");
        QTest::addColumn<QString>("stepped");
        QTest::newRow("day, over the month's end") << 1 << 1 << u"01.02.2028, 23:59"_s;
        QTest::newRow("month, to a shorter one") << 3 << 1 << u"29.02.2028, 23:59"_s;
        QTest::newRow("year") << 10 << -1 << u"31.01.2027, 23:59"_s;
        QTest::newRow("hour") << 12 << 1 << u"01.02.2028, 00:59"_s;
        QTest::newRow("minute") << 17 << -1 << u"31.01.2028, 23:58"_s;
        QTest::newRow("beyond the last year") << 6 << 8000 << u"31.01.2028, 23:59"_s;
    }

    void stepsTheNumberUnderTheCursor()
    {
        QFETCH(int, cursor);
        QFETCH(int, steps);
        QFETCH(QString, stepped);
        const QDateTime time(QDate(2028, 1, 31), QTime(23, 59));
        QCOMPARE(DateTimeText::text(DateTimeText::stepped(time, cursor, steps)), stepped);
        const QPoint section = DateTimeText::section(cursor);
        QVERIFY(section.x() <= cursor && cursor <= section.y());
    }
};

RANDBLATT_TEST_MAIN(AgendaModelTest, QCoreApplication)
#include "tst_agendamodel.moc"
