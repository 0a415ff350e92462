#include "theme/RGBA.h"

#include <algorithm>
#include <cmath>

namespace randblatt {

using namespace Qt::StringLiterals;

RGBA RGBA::fromColor(const QColor &color)
{
    if (!color.isValid())
        return {};
    float red = 0;
    float green = 0;
    float blue = 0;
    color.toRgb().getRgbF(&red, &green, &blue);
    return {red, green, blue};
}

QColor RGBA::color(double opacity) const
{
    const auto limited = [](double value) {
        return std::isnan(value) ? 0.0F : static_cast<float>(std::clamp(value, 0.0, 1.0));
    };
    return QColor::fromRgbF(limited(r), limited(g), limited(b), limited(opacity));
}

std::optional<RGBA> RGBA::fromJson(const QJsonValue &value)
{
    const QJsonValue r = value["r"_L1];
    const QJsonValue g = value["g"_L1];
    const QJsonValue b = value["b"_L1];
    if (!r.isDouble() || !g.isDouble() || !b.isDouble())
        return std::nullopt;
    return RGBA{r.toDouble(), g.toDouble(), b.toDouble()};
}

QJsonObject RGBA::toJson() const
{
    return {{"r"_L1, r}, {"g"_L1, g}, {"b"_L1, b}};
}

} // namespace randblatt
