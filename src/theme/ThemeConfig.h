#pragma once

#include "theme/RGBA.h"

#include <QByteArray>
#include <QMap>
#include <QString>

namespace randblatt {

/// The look of one card. The editor keeps the numbers in the ranges named here; the record itself takes any
/// number.
struct ThemeConfig
{
    Q_GADGET
    QML_VALUE_TYPE(themeConfig)
    Q_PROPERTY(bool frosted MEMBER frosted FINAL)
    Q_PROPERTY(randblatt::RGBA tint MEMBER tint FINAL)
    Q_PROPERTY(double tintStrength MEMBER tintStrength FINAL)
    Q_PROPERTY(double darkness MEMBER darkness FINAL)
    Q_PROPERTY(double blur MEMBER blur FINAL)
    Q_PROPERTY(bool lightsEnabled MEMBER lightsEnabled FINAL)
    Q_PROPERTY(randblatt::RGBA lightColor MEMBER lightColor FINAL)
    Q_PROPERTY(double lightsIntensity MEMBER lightsIntensity FINAL)
    Q_PROPERTY(bool textWhite MEMBER textWhite FINAL)
    Q_PROPERTY(double haloStrength MEMBER haloStrength FINAL)
    Q_PROPERTY(double textScale MEMBER textScale FINAL)

public:
    /// Frosted material instead of clear glass.
    bool frosted = false;
    RGBA tint{0.22, 0.2, 0.55};
    /// Opacity of the tint, 0…1.
    double tintStrength = 0.0;
    /// Opacity of the black layer, 0…0.8.
    double darkness = 0.7;
    /// Softness of the lights' edges, 0…60 points.
    double blur = 13.0;
    bool lightsEnabled = true;
    RGBA lightColor{0.0, 0.11, 1.0};
    /// Opacity of the lights, 0…0.8.
    double lightsIntensity = 0.0;
    /// White text on a dark scheme, else black on a light one.
    bool textWhite = true;
    /// Strength of the glow around text, 0…1.
    double haloStrength = 0.29;
    /// Factor on all text sizes, 0.7…1.6.
    double textScale = 1.0;

    /// Decodes one record. Every member is required and must have its type, except `textScale`, which
    /// records of older versions lack.
    [[nodiscard]] static std::optional<ThemeConfig> fromJson(const QJsonValue &value);
    [[nodiscard]] QJsonObject toJson() const;

    friend bool operator==(const ThemeConfig &, const ThemeConfig &) = default;
};

using ModuleThemes = QMap<QString, ThemeConfig>;

/// The stored form of one theme: UTF-8 JSON. None if a number is not finite, which JSON cannot express.
[[nodiscard]] std::optional<QByteArray> encodeTheme(const ThemeConfig &theme);
[[nodiscard]] std::optional<ThemeConfig> decodeTheme(const QByteArray &json);

/// The stored form of the themes of all modules: one object whose members are named by module id. One
/// undecodable theme makes the whole undecodable.
[[nodiscard]] std::optional<QByteArray> encodeThemes(const ModuleThemes &themes);
[[nodiscard]] std::optional<ModuleThemes> decodeThemes(const QByteArray &json);

/// The fixed colour that marks a module; other ids share one fallback.
[[nodiscard]] QColor moduleAccentColor(const QString &moduleID);
/// The fallback of moduleAccentColor(), which is also the accent of every card's controls.
[[nodiscard]] QColor sharedAccentColor();

} // namespace randblatt
