#include "platform/freedesktop/TerminationSignals.h"

#include <QLoggingCategory>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/socket.h>
#include <unistd.h>

namespace randblatt {

namespace {

Q_LOGGING_CATEGORY(lcSignals, "quillbar.signals")

constexpr std::array handledSignals{SIGTERM, SIGINT, SIGHUP};

// A signal handler may do no more than write; the event loop reads at the other end.
volatile std::sig_atomic_t writeEnd = -1;

extern "C" void handleTermination(int)
{
    const int before = errno;
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(writeEnd, &byte, 1);
    errno = before;
}

void setHandler(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int signal : handledSignals)
        sigaction(signal, &action, nullptr);
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
    setHandler(&handleTermination);
}

TerminationSignals::~TerminationSignals()
{
    if (!m_notifier)
        return;
    setHandler(SIG_DFL);
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
