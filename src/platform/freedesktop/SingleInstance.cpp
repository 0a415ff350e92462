#include "platform/freedesktop/SingleInstance.h"

#include "platform/freedesktop/ApplicationAdaptor.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QLoggingCategory>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcInstance, "quillbar.instance")

constexpr auto busName = "com.randblatt.Quillbar"_L1;
constexpr auto objectPath = "/com/randblatt/Quillbar"_L1;
constexpr auto interfaceName = "org.freedesktop.Application"_L1;
constexpr int forwardMilliseconds = 5000;
constexpr int attempts = 3;

/// What the launcher handed this process so that the other one may come forward (Desktop Entry Specification,
/// "D-Bus Activation").
QVariantMap platformData()
{
    QVariantMap data;
    const auto add = [&](const QString &key, const char *variable) {
        if (const QString value = qEnvironmentVariable(variable); !value.isEmpty())
            data.insert(key, value);
    };
    add(u"desktop-startup-id"_s, "DESKTOP_STARTUP_ID");
    add(u"activation-token"_s, "XDG_ACTIVATION_TOKEN");
    return data;
}

} // namespace

SingleInstance::SingleInstance(const QDBusConnection &bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
{
    new ApplicationAdaptor(this);
}

SingleInstance::~SingleInstance()
{
    if (!m_owner)
        return;
    m_bus.unregisterService(busName);
    m_bus.unregisterObject(objectPath);
}

bool SingleInstance::acquire(const QList<QUrl> &urls)
{
    if (!m_bus.isConnected()) {
        qCInfo(lcInstance, "Kein Sitzungsbus: Quillbar läuft, ist von außen aber nicht erreichbar");
        return true;
    }
    // The object is there before the name, so that nobody who waits for the name calls into nothing.
    m_bus.registerObject(objectPath, this, QDBusConnection::ExportAdaptors);
    // If the other instance ends before it is told, the name is free again.
    QString refusal;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
            m_bus.interface()->registerService(busName);
        m_owner = reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered;
        if (m_owner)
            return true;
        refusal = reply.error().message();
        if (!reply.isValid())
            break;
        if (forward(urls)) {
            m_bus.unregisterObject(objectPath);
            return false;
        }
    }
    // Nobody else has it, and the panel is worth more than being called.
    m_bus.unregisterObject(objectPath);
    qCWarning(lcInstance,
              "Der Sitzungsbus gibt den Namen %ls nicht her: Quillbar läuft, ist von außen aber nicht "
              "erreichbar. %ls",
              qUtf16Printable(QString(busName)), qUtf16Printable(refusal));
    return true;
}

bool SingleInstance::forward(const QList<QUrl> &urls) const
{
    QDBusMessage call = QDBusMessage::createMethodCall(busName, objectPath, interfaceName,
                                                       urls.isEmpty() ? u"Activate"_s : u"Open"_s);
    if (!urls.isEmpty())
        call << QUrl::toStringList(urls, QUrl::FullyEncoded);
    call << platformData();
    call.setAutoStartService(false);
    const QDBusMessage reply = m_bus.call(call, QDBus::Block, forwardMilliseconds);
    if (reply.type() != QDBusMessage::ErrorMessage)
        return true;
    const QString error = reply.errorName();
    if (error == "org.freedesktop.DBus.Error.ServiceUnknown"_L1 ||
        error == "org.freedesktop.DBus.Error.NameHasNoOwner"_L1)
        return false;
    qCWarning(lcInstance, "Das laufende Quillbar antwortet nicht: %ls",
              qUtf16Printable(reply.errorMessage()));
    return true;
}

} // namespace randblatt
