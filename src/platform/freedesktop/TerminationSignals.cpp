#include "platform/freedesktop/TerminationSignals.h"

#include <QLoggingCategory>

#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <unistd.h>

namespace randblatt {

namespace {

Q_LOGGING_CATEGORY(lcSignals, "quillbar.signals")

// A signal handler may do no more than write; the event loop reads at the other end.
volatile std::sig_atomic_t writeEnd = -1;

extern "C" void handleTermination(int)
{
    const int before = errno;
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(writeEnd, &byte, 1);
    errno = before;
}

} // namespace

TerminationSignals::TerminationSignals(QObject *parent)
    : QObject(parent)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, m_sockets.data()) != 0) {
        qCWarning(lcSignals, "Signale werden nicht abgefangen: %s", std::strerror(errno));
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_sockets.at(1), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &TerminationSignals::read);
    writeEnd = m_sockets.at(0);
    struct sigaction action = {};
    action.sa_handler = &handleTermination;
    action.sa_flags = SA_RESTART;
    for (std::size_t i = 0; i < handledSignals.size(); ++i)
        sigaction(handledSignals.at(i), &action, &m_former.at(i));
}

TerminationSignals::~TerminationSignals()
{
    if (!m_notifier)
        return;
    for (std::size_t i = 0; i < handledSignals.size(); ++i)
        sigaction(handledSignals.at(i), &m_former.at(i), nullptr);
    writeEnd = -1;
    m_notifier.reset();
    for (const int socket : m_sockets)
        ::close(socket);
}

void TerminationSignals::read()
{
    char byte = 0;
    while (::read(m_sockets.at(1), &byte, 1) > 0)
        Q_EMIT terminationRequested();
}

} // namespace randblatt
