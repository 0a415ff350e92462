#pragma once

#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

/// How well a colour is told from another one (WCAG 2.2, "contrast ratio"); opacity is not looked at.
class Contrast : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// 0 for black to 1 for white.
    [[nodiscard]] Q_INVOKABLE static double luminance(const QColor &color);
    /// 1 for the same to 21 for black and white.
    [[nodiscard]] Q_INVOKABLE static double between(const QColor &one, const QColor &other);
};

} // namespace randblatt
