#include "modules/calendar/DateTimeText.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

class DateTimeTextTest : public QObject
{
    Q_OBJECT

private:
    // A Monday.
    const QDateTime m_now{QDate(2026, 11, 16), QTime(14, 20)};
    const QDateTime m_present{QDate(2026, 12, 1), QTime(9, 30, 12)};

private Q_SLOTS:
    void understandsWhatPeopleWrite_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("meant");
        const auto row = [](const char *typed, const char *meant) {
            QTest::newRow(typed) << QString::fromUtf8(typed) << QString::fromUtf8(meant);
        };
        row("24.12.2026, 18:00", "24.12.2026, 18:00");
        row("24.12.26 18:00", "24.12.2026, 18:00");
        row("24/12/2026 6:05", "24.12.2026, 06:05");
        row("24 12 2026", "24.12.2026, 09:30");
        row("24-12-26", "24.12.2026, 09:30");
        // Without a year, the next such day; today is one.
        row("24.12. 18:00", "24.12.2026, 18:00");
        row("24.12.18:00", "24.12.2026, 18:00");
        row("24.12.18.30 Uhr", "24.12.2026, 18:30");
        row("24.12.18 Uhr", "24.12.2026, 18:00");
        row("24.12.18", "24.12.2018, 09:30");
        row("18:00 24.12", "24.12.2026, 18:00");
        row("24.12.", "24.12.2026, 09:30");
        row("24/12 18:00", "24.12.2026, 18:00");
        row("16.11. 8:00", "16.11.2026, 08:00");
        row("15.11.", "15.11.2027, 09:30");
        row("29.2. 12:00", "29.02.2028, 12:00");
        row("3. Januar", "03.01.2027, 09:30");
        row("3. Jän. 2028 um 7 Uhr", "03.01.2028, 07:00");
        row("24 Dez 18:00", "24.12.2026, 18:00");
        // A time alone keeps the day.
        row("18:00", "01.12.2026, 18:00");
        row("18.30 Uhr", "01.12.2026, 18:30");
        row("18.30", "01.12.2026, 18:30");
        row("um 18 Uhr", "01.12.2026, 18:00");
        row("18 uhr 5", "01.12.2026, 18:05");
        row("24 Uhr", "02.12.2026, 00:00");
        row("0:00", "01.12.2026, 00:00");
        row("6:00 PM", "01.12.2026, 18:00");
        row("6pm", "01.12.2026, 18:00");
        row("6:15 a.m.", "01.12.2026, 06:15");
        row("12 am", "01.12.2026, 00:00");
        row("12:30 p.m., 24.12.", "24.12.2026, 12:30");
        row("12 Uhr am 24.12.", "24.12.2026, 12:00");
        row("12:00 am 24.12.", "24.12.2026, 12:00");
        // As programs write it.
        row("2026-12-24 18:00", "24.12.2026, 18:00");
        row("2026-12-24T18:00:59", "24.12.2026, 18:00");
        row("2026-12-24", "24.12.2026, 09:30");
        // Days by name.
        row("heute", "16.11.2026, 09:30");
        row("Morgen 18 Uhr", "17.11.2026, 18:00");
        row("18:00 morgen", "17.11.2026, 18:00");
        row("morgen 18", "17.11.2026, 18:00");
        row("morgen um 12.10", "17.11.2026, 12:10");
        row("ÜBERMORGEN, 7:05", "18.11.2026, 07:05");
        row("Mittwoch", "18.11.2026, 09:30");
        row("am Do. 18:00", "19.11.2026, 18:00");
        row("So 6 pm", "22.11.2026, 18:00");
        row("Montag", "23.11.2026, 09:30");
        row("Di, 17.11. – 18:00", "17.11.2026, 18:00");
        // The clocks go forward at 02:00.
        row("28.03.2027 2:30", "28.03.2027, 03:30");
        row("  24.12.2026,\u00a018:00\n", "24.12.2026, 18:00");
    }

    void understandsWhatPeopleWrite()
    {
        QFETCH(QString, typed);
        const TypedTime read = DateTimeText::read(typed, m_present, m_now);
        QCOMPARE(read.problem, QString());
        QTEST(DateTimeText::text(read.time), "meant");
    }

    void saysWhatItDoesNotUnderstand_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("named");
        const auto row = [](const char *typed, const char *named) {
            QTest::newRow(typed) << QString::fromUtf8(typed) << QString::fromUtf8(named);
        };
        row("", "fehlen");
        row("bald", "„bald“");
        row("heute abend", "„abend“");
        row("24.12. 18:00 Kino", "„Kino“");
        row("31.2.", "31.02.");
        row("29.02.2027", "29.02.2027");
        row("2026-13-01", "01.13.2026");
        row("25:00", "25:00");
        row("24:30", "24:30");
        row("18:60", "18:60");
        row("13 pm", "1 bis 12");
        row("0 am", "1 bis 12");
        row("12.10", "„12.10.“");
        row("18", "„18“");
        row("24.12. 18", "„18“");
        row("24.12 18", "„18“");
        row("24.12.202", "„202“");
        row("2412", "„2412“");
        row("1.12. 2.12.", "zwei Tage");
        row("heute morgen", "zwei Tage");
        row("Mo Di", "zwei Wochentage");
        row("18:00 19:00", "zwei Uhrzeiten");
        row("Montag, 17.11.", "Dienstag");
        row("24.12.0026", "1000");
        row("2026-12-24T18:00Z", "„Z“");
        row("2026-12-24T18:00+01:00", "„+01:00“");
        row("-18:00 bis 19", "„bis“");
        row("٢٤.١٢.", "„٢٤");
    }

    void saysWhatItDoesNotUnderstand()
    {
        QFETCH(QString, typed);
        QFETCH(QString, named);
        const TypedTime read = DateTimeText::read(typed, m_present, m_now);
        QVERIFY2(read.problem.contains(named), qUtf8Printable(read.problem));
        QVERIFY(!read.time.isValid());
    }

    void readsItsOwnText()
    {
        QCOMPARE(DateTimeText::read(DateTimeText::text(m_present), m_present, m_now).time, m_present);
        for (QDateTime time = m_now; time < m_now.addYears(3); time = time.addSecs(86400 * 13 + 3673)) {
            const TypedTime read = DateTimeText::read(DateTimeText::text(time), m_present, m_now);
            QCOMPARE(DateTimeText::text(read.time), DateTimeText::text(time));
        }
    }
};

RANDBLATT_TEST_MAIN(DateTimeTextTest, QCoreApplication)
#include "tst_datetimetext.moc"
