#include "platform/freedesktop/SingleInstance.h"

#include "platform/freedesktop/ApplicationAdaptor.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QLoggingCategory>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcInstance, "quillbar.instance")

constexpr auto busName = "com.randblatt.Quillbar"_L1;
constexpr auto objectPath = "/com/randblatt/Quillbar"_L1;
constexpr auto interfaceName = "org.freedesktop.Application"_L1;
constexpr int forwardMilliseconds = 5000;

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
    m_owner = m_bus.registerService(busName);
    if (m_owner)
        return true;
    m_bus.unregisterObject(objectPath);
    forward(urls);
    return false;
}

void SingleInstance::forward(const QList<QUrl> &urls) const
{
    QDBusMessage call = QDBusMessage::createMethodCall(busName, objectPath, interfaceName,
                                                       urls.isEmpty() ? u"Activate"_s : u"Open"_s);
    if (!urls.isEmpty())
        call << QUrl::toStringList(urls, QUrl::FullyEncoded);
    call << QVariantMap();
    const QDBusMessage reply = m_bus.call(call, QDBus::Block, forwardMilliseconds);
    if (reply.type() == QDBusMessage::ErrorMessage)
        qCWarning(lcInstance, "Das laufende Quillbar antwortet nicht: %ls", qUtf16Printable(reply.errorMessage()));
}

} // namespace randblatt
