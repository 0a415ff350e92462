#include "theme/ThemeConfig.h"

#include <QJsonDocument>

#include <algorithm>
#include <array>
#include <cmath>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

std::array<double, 12> numbers(const ThemeConfig &theme)
{
    return {theme.tint.r,          theme.tint.g,       theme.tint.b,
            theme.tintStrength,    theme.darkness,     theme.blur,
            theme.lightColor.r,    theme.lightColor.g, theme.lightColor.b,
            theme.lightsIntensity, theme.haloStrength, theme.textScale};
}

bool isEncodable(const ThemeConfig &theme)
{
    const auto all = numbers(theme);
    return std::all_of(all.begin(), all.end(), [](double number) { return std::isfinite(number); });
}

QByteArray compact(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

/// Reads the members of one JSON object and remembers whether one of them was missing or of another type.
class MemberReader
{
public:
    explicit MemberReader(const QJsonObject &object)
        : m_object(object)
    {
    }

    void read(QLatin1StringView name, bool &target)
    {
        const QJsonValue value = m_object[name];
        m_valid = m_valid && value.isBool();
        target = value.toBool();
    }

    void read(QLatin1StringView name, double &target)
    {
        const QJsonValue value = m_object[name];
        m_valid = m_valid && value.isDouble();
        target = value.toDouble();
    }

    void read(QLatin1StringView name, RGBA &target)
    {
        const auto colour = RGBA::fromJson(m_object[name]);
        m_valid = m_valid && colour.has_value();
        target = colour.value_or(RGBA{});
    }

    void readIfPresent(QLatin1StringView name, double &target)
    {
        const QJsonValue value = m_object[name];
        if (!value.isUndefined() && !value.isNull())
            read(name, target);
    }

    [[nodiscard]] bool isValid() const { return m_valid; }

private:
    QJsonObject m_object;
    bool m_valid = true;
};

} // namespace

std::optional<ThemeConfig> ThemeConfig::fromJson(const QJsonValue &value)
{
    if (!value.isObject())
        return std::nullopt;
    ThemeConfig theme;
    MemberReader reader(value.toObject());
    reader.read("frosted"_L1, theme.frosted);
    reader.read("tint"_L1, theme.tint);
    reader.read("tintStrength"_L1, theme.tintStrength);
    reader.read("darkness"_L1, theme.darkness);
    reader.read("blur"_L1, theme.blur);
    reader.read("lightsEnabled"_L1, theme.lightsEnabled);
    reader.read("lightColor"_L1, theme.lightColor);
    reader.read("lightsIntensity"_L1, theme.lightsIntensity);
    reader.read("textWhite"_L1, theme.textWhite);
    reader.read("haloStrength"_L1, theme.haloStrength);
    reader.readIfPresent("textScale"_L1, theme.textScale);
    if (!reader.isValid())
        return std::nullopt;
    return theme;
}

QJsonObject ThemeConfig::toJson() const
{
    return {
        {"frosted"_L1, frosted},
        {"tint"_L1, tint.toJson()},
        {"tintStrength"_L1, tintStrength},
        {"darkness"_L1, darkness},
        {"blur"_L1, blur},
        {"lightsEnabled"_L1, lightsEnabled},
        {"lightColor"_L1, lightColor.toJson()},
        {"lightsIntensity"_L1, lightsIntensity},
        {"textWhite"_L1, textWhite},
        {"haloStrength"_L1, haloStrength},
        {"textScale"_L1, textScale},
    };
}

std::optional<QByteArray> encodeTheme(const ThemeConfig &theme)
{
    if (!isEncodable(theme))
        return std::nullopt;
    return compact(theme.toJson());
}

std::optional<ThemeConfig> decodeTheme(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        return std::nullopt;
    return ThemeConfig::fromJson(document.object());
}

std::optional<QByteArray> encodeThemes(const ModuleThemes &themes)
{
    QJsonObject object;
    for (auto it = themes.cbegin(); it != themes.cend(); ++it) {
        if (!isEncodable(it.value()))
            return std::nullopt;
        object.insert(it.key(), it.value().toJson());
    }
    return compact(object);
}

std::optional<ModuleThemes> decodeThemes(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        return std::nullopt;
    ModuleThemes themes;
    const QJsonObject object = document.object();
    for (auto it = object.begin(); it != object.end(); ++it) {
        const auto theme = ThemeConfig::fromJson(it.value());
        if (!theme)
            return std::nullopt;
        themes.insert(it.key(), *theme);
    }
    return themes;
}

QColor sharedAccentColor()
{
    static const QColor colour = RGBA{0.55, 0.45, 1.0}.color();
    return colour;
}

QColor moduleAccentColor(const QString &moduleID)
{
    struct Accent
    {
        QLatin1StringView moduleID;
        RGBA colour;
    };
    static const std::array accents{
        Accent{"todo"_L1, {1.0, 0.55, 0.55}},
        Accent{"calendar"_L1, {0.45, 0.7, 1.0}},
        Accent{"notes"_L1, {1.0, 0.84, 0.45}},
        Accent{"spotify"_L1, {0.35, 0.9, 0.55}},
    };
    const auto it = std::find_if(accents.begin(), accents.end(),
                                 [&](const Accent &accent) { return accent.moduleID == moduleID; });
    return it == accents.end() ? sharedAccentColor() : it->colour.color();
}

} // namespace randblatt
