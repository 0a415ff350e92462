#include "platform/freedesktop/ApplicationAdaptor.h"

namespace randblatt {

ApplicationAdaptor::ApplicationAdaptor(SingleInstance *instance)
    : QDBusAbstractAdaptor(instance)
    , m_instance(instance)
{
}

void ApplicationAdaptor::Activate(const QVariantMap &)
{
    Q_EMIT m_instance->activated();
}

void ApplicationAdaptor::Open(const QStringList &uris, const QVariantMap &)
{
    QList<QUrl> urls;
    for (const QString &uri : uris)
        urls.append(QUrl(uri));
    Q_EMIT m_instance->opened(urls);
}

void ApplicationAdaptor::ActivateAction(const QString &actionName, const QVariantList &, const QVariantMap &)
{
    Q_EMIT m_instance->actionActivated(actionName);
}

} // namespace randblatt
