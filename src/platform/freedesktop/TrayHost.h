#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

namespace randblatt {

/// Whether the desktop has a place for a tray icon. Qt decides once per process which kind of tray there is,
/// when it is first asked; an icon is therefore to be made only after this object says that there is one.
class TrayHost final : public QObject
{
    Q_OBJECT

public:
    explicit TrayHost(const QDBusConnection &sessionBus, QObject *parent = nullptr);

    [[nodiscard]] bool isAvailable() const { return m_hasNotifierHost || m_hasEmbeddingTray; }

    /// Tells whether there is a tray of the older kind, which embeds windows; only the back end of the window
    /// system knows.
    void setEmbeddingTray(bool exists);

Q_SIGNALS:
    void availableChanged();

private Q_SLOTS:
    void ask();

private:
    void setNotifierHost(bool exists);
    void update(bool &kind, bool exists);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    bool m_hasNotifierHost = false;
    bool m_hasEmbeddingTray = false;
};

} // namespace randblatt
