#pragma once

#include <QDBusAbstractAdaptor>
#include <QUrl>
#include <QVariant>

namespace randblatt {

class SingleInstance;

/// The interface by which launchers and other instances call the application (Desktop Entry Specification,
/// "D-Bus Activation").
class ApplicationAdaptor final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationAdaptor(SingleInstance *instance);

public Q_SLOTS: // NOLINT(readability-redundant-access-specifiers): what is exported
    void Activate(const QVariantMap &platform_data);
    void Open(const QStringList &uris, const QVariantMap &platform_data);
    void ActivateAction(const QString &action_name, const QVariantList &parameter,
                        const QVariantMap &platform_data);

private:
    SingleInstance *m_instance;
};

} // namespace randblatt
