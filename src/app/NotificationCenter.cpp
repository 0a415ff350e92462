#include "app/NotificationCenter.h"

namespace randblatt {

NotificationCenter &NotificationCenter::defaultCenter()
{
    static NotificationCenter center;
    return center;
}

void NotificationCenter::post(const QString &name)
{
    Q_EMIT posted(name);
}

void NotificationCenter::addObserver(const QString &name, QObject *context,
                                     const std::function<void()> &action)
{
    connect(this, &NotificationCenter::posted, context, [name, action](const QString &postedName) {
        if (postedName == name)
            action();
    });
}

} // namespace randblatt
