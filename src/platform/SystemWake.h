#pragma once

#include <QObject>

namespace randblatt {

/// Tells when the machine has woken from sleep. This one never tells: it serves where nothing is known of it.
class SystemWake : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    void woke();
};

} // namespace randblatt
