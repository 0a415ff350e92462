#pragma once

#include <QProcess>
#include <QTemporaryDir>

namespace randblatt {

/// A session bus of its own for as long as the object lives; with the machine's services, which are started
/// when they are called, or without any.
class PrivateBus
{
public:
    enum class Services { none, installed };

    explicit PrivateBus(Services services = Services::none);
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
