#include "platform/CalendarStore.h"
#include "platform/calendar/CalendarWorker.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>

#include <atomic>
#include <future>
#include <semaphore>
#include <stdexcept>

using namespace Qt::StringLiterals;
using namespace randblatt;

class CalendarWorkerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersWhereATaskThrows_data()
    {
        QTest::addColumn<std::function<void()>>("fault");
        QTest::addColumn<QString>("reason");
        QTest::newRow("no memory") << std::function<void()>([] { throw std::bad_alloc(); })
                                   << u"Zu wenig Arbeitsspeicher."_s;
        QTest::newRow("something else")
            << std::function<void()>([] { throw std::runtime_error("unerwartet"); })
            << u"Unerwarteter Fehler: unerwartet"_s;
    }

    void answersWhereATaskThrows()
    {
        QFETCH(std::function<void()>, fault);
        QFETCH(QString, reason);
        std::promise<CalendarStore::Removed> promise;
        auto answer = promise.get_future();
        CalendarWorker worker;
        worker.start(fault);
        worker.start<CalendarStore::Removed>(
            [fault]() -> CalendarStore::Removed {
                fault();
                return Removal::removed;
            },
            [&promise](const CalendarStore::Removed &given) { promise.set_value(given); });
        const CalendarStore::Removed given = answer.get();
        QVERIFY(!given);
        QCOMPARE(given.reason(), reason);
    }

    void doesNotWaitForATaskThatHangs()
    {
        struct Shared
        {
            std::binary_semaphore disk{0};
            std::binary_semaphore begun{0};
            std::binary_semaphore ended{0};
            std::atomic<bool> answered = false;
        };
        const auto shared = std::make_shared<Shared>();
        QElapsedTimer timer;
        {
            CalendarWorker worker;
            worker.start<CalendarStore::Removed>(
                [shared]() -> CalendarStore::Removed {
                    shared->begun.release();
                    shared->disk.acquire();
                    return Removal::removed;
                },
                [shared](const CalendarStore::Removed &) { shared->answered = true; });
            worker.start([shared] { shared->ended.release(); });
            shared->begun.acquire();
            timer.start();
        }
        QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
        shared->disk.release();
        shared->ended.acquire();
        QVERIFY(!shared->answered);
    }
};

RANDBLATT_TEST_MAIN(CalendarWorkerTest, QCoreApplication)
#include "tst_calendarworker.moc"
