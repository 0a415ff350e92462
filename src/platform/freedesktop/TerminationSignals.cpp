#include "platform/freedesktop/TerminationSignals.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace randblatt {

namespace {

volatile std::sig_atomic_t writingEnd = -1;

// Nothing but a write is safe here; the event loop does the rest.
void tellEventLoop(int)
{
    const int savedError = errno;
    const char byte = 0;
    [[maybe_unused]] const auto written = ::write(writingEnd, &byte, 1);
    errno = savedError;
}

} // namespace

TerminationSignals::TerminationSignals(QObject *parent)
    : QObject(parent)
{
    if (::pipe2(m_pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    writingEnd = m_pipe[1];
    m_notifier = std::make_unique<QSocketNotifier>(m_pipe[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        std::array<char, 16> drained;
        while (::read(m_pipe[0], drained.data(), drained.size()) > 0) {
        }
        Q_EMIT terminationRequested();
    });
    struct sigaction action
    {
    };
    action.sa_handler = tellEventLoop;
    action.sa_flags = SA_RESTART;
    for (std::size_t i = 0; i < handled.size(); ++i)
        ::sigaction(handled[i], &action, &m_former[i]);
}

TerminationSignals::~TerminationSignals()
{
    if (!m_notifier)
        return;
    for (std::size_t i = 0; i < handled.size(); ++i)
        ::sigaction(handled[i], &m_former[i], nullptr);
    writingEnd = -1;
    m_notifier.reset();
    ::close(m_pipe[0]);
    ::close(m_pipe[1]);
}

} // namespace randblatt
