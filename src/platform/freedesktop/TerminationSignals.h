#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <memory>

namespace randblatt {

/// Turns the operating system's requests to end (SIGTERM, SIGINT, SIGHUP) into a signal on the main thread.
/// At most one object may exist at a time; with it the former handlers return.
class TerminationSignals final : public QObject
{
    Q_OBJECT

public:
    explicit TerminationSignals(QObject *parent = nullptr);
    ~TerminationSignals() override;
    TerminationSignals(const TerminationSignals &) = delete;
    TerminationSignals &operator=(const TerminationSignals &) = delete;

Q_SIGNALS:
    void terminationRequested();

private:
    static constexpr std::array handled{SIGTERM, SIGINT, SIGHUP};

    std::array<int, 2> m_pipe{-1, -1};
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::array<struct sigaction, handled.size()> m_former{};
};

} // namespace randblatt
