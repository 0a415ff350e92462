#pragma once

#include <QColor>
#include <QJsonObject>
#include <QMetaType>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace randblatt {

/// An opaque colour in the sRGB colour space; each component is 0…1 when it comes from a colour picker, but
/// any number is kept.
struct RGBA
{
    Q_GADGET
    QML_VALUE_TYPE(rgba)
    Q_PROPERTY(double r MEMBER r FINAL)
    Q_PROPERTY(double g MEMBER g FINAL)
    Q_PROPERTY(double b MEMBER b FINAL)

public:
    double r = 1.0;
    double g = 1.0;
    double b = 1.0;

    /// Takes the sRGB components of `color` and drops its alpha; white where the colour has none, as an
    /// invalid colour.
    [[nodiscard]] static RGBA fromColor(const QColor &color);
    /// This colour for display, with the given opacity 0…1; components outside 0…1 are limited.
    [[nodiscard]] Q_INVOKABLE QColor color(double opacity = 1.0) const;

    /// Decodes an object with the numbers r, g and b; none if one is missing or is no number.
    [[nodiscard]] static std::optional<RGBA> fromJson(const QJsonValue &value);
    [[nodiscard]] QJsonObject toJson() const;

    friend bool operator==(const RGBA &, const RGBA &) = default;
};

} // namespace randblatt
