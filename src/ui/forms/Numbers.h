#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

/// The numbers of sliders: how they are written, and which ones a slider can set.
class Numbers : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// The nearest whole number: "90".
    [[nodiscard]] Q_INVOKABLE static QString whole(double value);
    /// Two decimals behind a point, whatever the user's language: "0.12".
    [[nodiscard]] Q_INVOKABLE static QString twoDecimals(double value);
    /// A fraction in per cent, as a whole number: "35" for 0.35.
    [[nodiscard]] Q_INVOKABLE static QString percent(double fraction);
    /// The nearest number to `value` within from…to; `from` for what is no number.
    [[nodiscard]] Q_INVOKABLE static double limited(double value, double from, double to);
    /// The nearest number to `value` that lies a whole number of steps above `from` and not above `to`,
    /// without the noise of binary fractions: 0.14 and not 0.14000000000000001.
    [[nodiscard]] Q_INVOKABLE static double snapped(double value, double from, double to, double step);
};

} // namespace randblatt
