#pragma once

#include "platform/DesktopAppearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QMap>
#include <QVariantMap>

#include <memory>

class QDBusServiceWatcher;

namespace randblatt {

/// The desktop's wishes as its settings portal tells them (org.freedesktop.portal.Settings), and where that
/// says nothing another source's. Nothing waits for the portal.
class PortalAppearance : public DesktopAppearance
{
    Q_OBJECT

public:
    /// Values by namespace and key.
    using Values = QMap<QString, QVariantMap>;

    /// `bus` is the session bus; one that is not connected never tells anything.
    PortalAppearance(const QDBusConnection &bus, std::unique_ptr<DesktopAppearance> fallback,
                     QObject *parent = nullptr);
    ~PortalAppearance() override;

    /// What the values say, with `fallback` for what they do not.
    [[nodiscard]] static Wishes read(const Values &values, const Wishes &fallback);

private Q_SLOTS:
    void changeSetting(const QDBusMessage &message);

private:
    void ask();
    void follow();

    QDBusConnection m_bus;
    std::unique_ptr<DesktopAppearance> m_fallback;
    QDBusServiceWatcher *m_watcher;
    Values m_values;
};

} // namespace randblatt
