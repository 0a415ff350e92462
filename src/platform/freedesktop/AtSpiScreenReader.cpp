#include "platform/freedesktop/AtSpiScreenReader.h"

#include <QAccessible>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QVariantMap>

namespace randblatt {

using namespace Qt::StringLiterals;

void AtSpiScreenReader::say(QObject &source, const QString &text, bool isUrgent)
{
    if (!QAccessible::isActive())
        return;
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    QAccessibleAnnouncementEvent event(&source, text);
    event.setPoliteness(isUrgent ? QAccessible::AnnouncementPoliteness::Assertive
                                 : QAccessible::AnnouncementPoliteness::Polite);
    QAccessible::updateAccessibility(&event);
#else
    // The toolkit knows no announcements yet; its own connection to that bus is the one that tools know us
    // by.
    const QDBusConnection bus(u"a11y"_s);
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(&source);
    if (!bus.isConnected() || interface == nullptr)
        return;
    const QString path = u"/org/a11y/atspi/accessible/"_s + QString::number(QAccessible::uniqueId(interface));
    QDBusMessage signal =
        QDBusMessage::createSignal(path, u"org.a11y.atspi.Event.Object"_s, u"Announcement"_s);
    // Politeness as in ARIA: 1 is polite, 2 is assertive.
    signal << QString() << (isUrgent ? 2 : 1) << 0 << QVariant::fromValue(QDBusVariant(text))
           << QVariantMap();
    bus.send(signal);
#endif
}

} // namespace randblatt
