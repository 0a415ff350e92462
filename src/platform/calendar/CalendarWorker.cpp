#include "platform/calendar/CalendarWorker.h"

#include "platform/ExceptionText.h"

#include <QLoggingCategory>

#include <chrono>
#include <vector>

namespace randblatt {

using namespace std::chrono_literals;

namespace {

Q_LOGGING_CATEGORY(lcCalendar, "quillbar.calendar")

constexpr std::chrono::milliseconds expiry = 5s;
// Leaving the program takes a second at most, with all that is left to do.
constexpr std::chrono::milliseconds patience = 400ms;

} // namespace

QString reportedException()
{
    const QString text = currentExceptionText();
    qCWarning(lcCalendar, "Ausnahme: %ls", qUtf16Printable(text));
    return text;
}

CalendarWorker::CalendarWorker()
    : m_queue(std::make_unique<QThreadPool>())
    , m_gate(std::make_shared<AnswerGate>())
{
    m_queue->setMaxThreadCount(1);
    m_queue->setExpiryTimeout(static_cast<int>(expiry.count()));
}

CalendarWorker::~CalendarWorker()
{
    const bool isDone = m_queue->waitForDone(static_cast<int>(patience.count()));
    m_gate->close();
    if (isDone)
        return;
    qCWarning(lcCalendar, "Der Kalender antwortet nicht; das Programm wartet nicht auf ihn.");
    // Its destructor would wait.
    static auto *abandoned = new std::vector<std::unique_ptr<QThreadPool>>;
    abandoned->push_back(std::move(m_queue));
}

void CalendarWorker::start(std::function<void()> task)
{
    m_queue->start([task = std::move(task)] {
        (void)guarded(
            [&task] {
                task();
                return true;
            },
            [](const QString &) { return false; });
    });
}

} // namespace randblatt
