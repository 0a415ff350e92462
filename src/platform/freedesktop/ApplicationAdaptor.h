#pragma once

#include "platform/freedesktop/SingleInstance.h"

#include <QDBusAbstractAdaptor>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

namespace randblatt {

/// The interface org.freedesktop.Application on the bus; it tells the instance what it hears.
class ApplicationAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationAdaptor(SingleInstance *instance);

public Q_SLOTS:
    void Activate(const QVariantMap &platformData);
    void Open(const QStringList &uris, const QVariantMap &platformData);
    void ActivateAction(const QString &actionName, const QVariantList &parameter,
                        const QVariantMap &platformData);

private:
    SingleInstance *m_instance;
};

} // namespace randblatt
