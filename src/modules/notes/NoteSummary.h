#pragma once

#include <QMetaType>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

/// A note as lists show it.
struct NoteSummary
{
    Q_GADGET
    QML_VALUE_TYPE(noteSummary)
    Q_PROPERTY(QString id MEMBER id FINAL)
    Q_PROPERTY(QString name MEMBER name FINAL)

public:
    /// Names the note in scripts; opaque.
    QString id;
    QString name;

    friend bool operator==(const NoteSummary &, const NoteSummary &) = default;
};

} // namespace randblatt
