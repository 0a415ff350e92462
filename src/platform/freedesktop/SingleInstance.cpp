#include "platform/freedesktop/SingleInstance.h"

#include "platform/freedesktop/ApplicationAdaptor.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QLoggingCategory>

#include <array>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcInstance, "quillbar.instance")

constexpr auto busName = "com.randblatt.Quillbar"_L1;
constexpr auto objectPath = "/com/randblatt/Quillbar"_L1;
constexpr auto interfaceName = "org.freedesktop.Application"_L1;
constexpr int timeoutInMilliseconds = 5000;
constexpr int attempts = 3;

/// What the launcher handed this process, for the running one to come forward with.
QVariantMap platformData()
{
    QVariantMap data;
    constexpr std::array<std::pair<const char *, const char *>, 2> entries{
        {{"DESKTOP_STARTUP_ID", "desktop-startup-id"}, {"XDG_ACTIVATION_TOKEN", "activation-token"}}};
    for (const auto &[variable, key] : entries) {
        if (const QString value = qEnvironmentVariable(variable); !value.isEmpty())
            data.insert(QLatin1StringView(key), value);
    }
    return data;
}

} // namespace

SingleInstance::SingleInstance(const QDBusConnection &sessionBus, QObject *parent)
    : QObject(parent)
    , m_bus(sessionBus)
{
    new ApplicationAdaptor(this);
}

bool SingleInstance::claim(const Request &request)
{
    if (!m_bus.isConnected())
        return true;
    // Before the name: whoever sees the name may call at once.
    m_bus.registerObject(objectPath, this, QDBusConnection::ExportAdaptors);
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const auto reply = m_bus.interface()->registerService(busName);
        if (!reply.isValid()) {
            qCWarning(lcInstance, "Name am Sitzungsbus nicht erhalten: %ls",
                      qUtf16Printable(reply.error().message()));
            return true;
        }
        if (reply.value() == QDBusConnectionInterface::ServiceRegistered)
            return true;
        // If the other process ends in between, the name is free again.
        if (forward(request))
            break;
    }
    m_bus.unregisterObject(objectPath);
    return false;
}

bool SingleInstance::forward(const Request &request) const
{
    QString method = u"Activate"_s;
    QVariantList arguments;
    if (!request.urls.isEmpty()) {
        method = u"Open"_s;
        arguments.append(QUrl::toStringList(request.urls, QUrl::FullyEncoded));
    } else if (!request.action.isEmpty()) {
        method = u"ActivateAction"_s;
        arguments = {request.action, QVariant::fromValue(QVariantList())};
    }
    arguments.append(platformData());
    QDBusMessage call = QDBusMessage::createMethodCall(busName, objectPath, interfaceName, method);
    call.setArguments(arguments);
    call.setAutoStartService(false);
    const QDBusMessage reply = m_bus.call(call, QDBus::Block, timeoutInMilliseconds);
    if (reply.type() != QDBusMessage::ErrorMessage)
        return true;
    qCWarning(lcInstance, "Die laufende Anwendung antwortet nicht: %ls",
              qUtf16Printable(reply.errorMessage()));
    const QString error = reply.errorName();
    return error != "org.freedesktop.DBus.Error.ServiceUnknown"_L1 &&
           error != "org.freedesktop.DBus.Error.NameHasNoOwner"_L1;
}

} // namespace randblatt
