#include "platform/freedesktop/PortalAppearance.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <algorithm>
#include <cmath>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

constexpr auto service = "org.freedesktop.portal.Desktop"_L1;
constexpr auto objectPath = "/org/freedesktop/portal/desktop"_L1;
constexpr auto interface = "org.freedesktop.portal.Settings"_L1;

const QString appearance = u"org.freedesktop.appearance"_s;
// What older portals pass on of the desktops' own settings.
const QString gnome = u"org.gnome.desktop.interface"_s;
const QString gnomeAccess = u"org.gnome.desktop.a11y.interface"_s;
const QString kde = u"org.kde.kdeglobals.KDE"_s;

// Milliseconds; the portal may have to be started.
constexpr int timeout = 5000;

QVariant valueOf(const PortalAppearance::Values &values, const QString &name, const QString &key)
{
    return values.value(name).value(key);
}

std::optional<bool> isDark(const PortalAppearance::Values &values)
{
    switch (valueOf(values, appearance, u"color-scheme"_s).toUInt()) {
    case 1:
        return true;
    case 2:
        return false;
    default:
        break;
    }
    if (valueOf(values, gnome, u"color-scheme"_s).toString() == "prefer-dark"_L1)
        return true;
    return std::nullopt;
}

/// Three numbers of 0…1; others mean that there is none.
std::optional<QColor> accent(const PortalAppearance::Values &values)
{
    const QVariant value = valueOf(values, appearance, u"accent-color"_s);
    if (!value.canConvert<QDBusArgument>())
        return std::nullopt;
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != "(ddd)"_L1)
        return std::nullopt;
    double red = -1;
    double green = -1;
    double blue = -1;
    argument.beginStructure();
    argument >> red >> green >> blue;
    argument.endStructure();
    const auto isPart = [](double part) { return part >= 0 && part <= 1; };
    if (!isPart(red) || !isPart(green) || !isPart(blue))
        return std::nullopt;
    return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue));
}

bool wantsHighContrast(const PortalAppearance::Values &values)
{
    return valueOf(values, appearance, u"contrast"_s).toUInt() == 1 ||
           valueOf(values, gnomeAccess, u"high-contrast"_s).toBool();
}

bool wantsReducedMotion(const PortalAppearance::Values &values)
{
    if (valueOf(values, appearance, u"reduced-motion"_s).toUInt() == 1)
        return true;
    const QVariant animations = valueOf(values, gnome, u"enable-animations"_s);
    if (animations.isValid() && !animations.toBool())
        return true;
    bool isNumber = false;
    const double factor = valueOf(values, kde, u"AnimationDurationFactor"_s).toDouble(&isNumber);
    return isNumber && factor <= 0;
}

} // namespace

PortalAppearance::PortalAppearance(const QDBusConnection &bus, std::unique_ptr<DesktopAppearance> fallback,
                                   QObject *parent)
    : DesktopAppearance(parent)
    , m_bus(bus)
    , m_fallback(std::move(fallback))
    , m_watcher(new QDBusServiceWatcher(service, m_bus, QDBusServiceWatcher::WatchForRegistration, this))
{
    qDBusRegisterMetaType<Values>();
    connect(m_fallback.get(), &DesktopAppearance::wishesChanged, this, &PortalAppearance::follow);
    connect(m_watcher, &QDBusServiceWatcher::serviceRegistered, this, &PortalAppearance::ask);
    m_bus.connect(service, objectPath, interface, u"SettingChanged"_s, this,
                  SLOT(changeSetting(QDBusMessage)));
    follow();
    ask();
}

PortalAppearance::~PortalAppearance() = default;

DesktopAppearance::Wishes PortalAppearance::read(const Values &values, const Wishes &fallback)
{
    Wishes wishes = fallback;
    if (const auto dark = randblatt::isDark(values))
        wishes.isDark = dark;
    if (const auto color = randblatt::accent(values))
        wishes.accent = color;
    wishes.highContrast = fallback.highContrast || wantsHighContrast(values);
    wishes.reducedMotion = fallback.reducedMotion || wantsReducedMotion(values);
    bool isNumber = false;
    const double scale = valueOf(values, gnome, u"text-scaling-factor"_s).toDouble(&isNumber);
    if (isNumber && std::isfinite(scale))
        wishes.textScale = std::clamp(scale, 0.5, 3.0);
    return wishes;
}

void PortalAppearance::ask()
{
    QDBusMessage call = QDBusMessage::createMethodCall(service, objectPath, interface, u"ReadAll"_s);
    call << QStringList{appearance, gnome, gnomeAccess, kde};
    auto *pending = new QDBusPendingCallWatcher(m_bus.asyncCall(call, timeout), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
        const QDBusPendingReply<Values> reply = *pending;
        pending->deleteLater();
        if (!reply.isValid())
            return;
        m_values = reply.value();
        follow();
    });
}

void PortalAppearance::changeSetting(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments();
    if (message.signature() != "ssv"_L1)
        return;
    m_values[arguments.at(0).toString()].insert(arguments.at(1).toString(),
                                                arguments.at(2).value<QDBusVariant>().variant());
    follow();
}

void PortalAppearance::follow()
{
    setWishes(read(m_values, m_fallback->wishes()));
}

} // namespace randblatt
