#pragma once

#include <QProcess>
#include <QTemporaryDir>

namespace randblatt {

/// A session bus of its own, without any services, for as long as the object lives.
class PrivateBus
{
public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;

    /// For QDBusConnection::connectToBus().
    [[nodiscard]] QString address() const { return m_address; }

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
};

} // namespace randblatt
