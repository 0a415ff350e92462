#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <memory>

namespace randblatt {

/// Turns SIGTERM, SIGINT and SIGHUP into a Qt signal, so that the application ends in good order. One object
/// per process; the former handling comes back with its end.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    explicit TerminationSignals(QObject *parent = nullptr);
    ~TerminationSignals() override;

Q_SIGNALS:
    void terminationRequested();

private:
    void read();

    static constexpr std::array handledSignals{SIGTERM, SIGINT, SIGHUP};

    std::array<int, 2> m_sockets{-1, -1};
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::array<struct sigaction, handledSignals.size()> m_former{};
};

} // namespace randblatt
