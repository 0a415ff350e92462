#pragma once

#include <QColor>
#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

#include <optional>

namespace randblatt {

/// Tells when the desktop has a place for a tray icon. An icon that is made earlier may never appear.
class TrayHost : public QObject
{
    Q_OBJECT

public:
    /// Watches for a StatusNotifier host on `bus` (freedesktop.org/KDE Status Notifier Specification).
    explicit TrayHost(const QDBusConnection &bus, QObject *parent = nullptr);

    [[nodiscard]] bool isAvailable() const { return m_hasHost || m_hasClassicTray; }
    /// Whether the desktop has a tray of the older kind, which the bus does not tell, and the colour in which
    /// it writes, if it tells.
    void setClassicTray(bool present, const std::optional<QColor> &textColor = {});
    /// The colour in which the tray writes; none where it keeps that to itself.
    [[nodiscard]] std::optional<QColor> textColor() const;

Q_SIGNALS:
    void availableChanged();

private Q_SLOTS:
    void ask();

private:
    void set(bool &member, bool value);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    bool m_hasHost = false;
    bool m_hasClassicTray = false;
    std::optional<QColor> m_classicColor;
};

} // namespace randblatt
