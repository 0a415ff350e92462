#pragma once

#include "settings/UndoHistory.h"
#include "theme/ThemeConfig.h"

#include <QColor>
#include <QObject>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

class AppSettings;
class ModuleRegistry;

/// The theme that is being edited, field by field: the global one, or the selected module's while themes are
/// per module. Setting a field writes the whole theme with that one field changed; a module without a theme
/// of its own shows the global one and gets its own with the first change.
class ThemeEditor : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The settings window makes its editor.")
    Q_PROPERTY(randblatt::UndoHistory *undoHistory READ undoHistory CONSTANT FINAL)
    Q_PROPERTY(QVariantList scopes READ scopes CONSTANT FINAL)
    Q_PROPERTY(QString selectedID READ selectedID WRITE setSelectedID NOTIFY scopeChanged FINAL)
    Q_PROPERTY(QString scopeName READ scopeName NOTIFY scopeChanged FINAL)
    Q_PROPERTY(bool frosted READ frosted WRITE setFrosted NOTIFY themeChanged FINAL)
    Q_PROPERTY(QColor tint READ tint WRITE setTint NOTIFY themeChanged FINAL)
    Q_PROPERTY(double tintStrength READ tintStrength WRITE setTintStrength NOTIFY themeChanged FINAL)
    Q_PROPERTY(double darkness READ darkness WRITE setDarkness NOTIFY themeChanged FINAL)
    Q_PROPERTY(double blur READ blur WRITE setBlur NOTIFY themeChanged FINAL)
    Q_PROPERTY(bool lightsEnabled READ lightsEnabled WRITE setLightsEnabled NOTIFY themeChanged FINAL)
    Q_PROPERTY(QColor lightColor READ lightColor WRITE setLightColor NOTIFY themeChanged FINAL)
    Q_PROPERTY(double lightsIntensity READ lightsIntensity WRITE setLightsIntensity NOTIFY themeChanged FINAL)
    Q_PROPERTY(bool textWhite READ textWhite WRITE setTextWhite NOTIFY themeChanged FINAL)
    Q_PROPERTY(double haloStrength READ haloStrength WRITE setHaloStrength NOTIFY themeChanged FINAL)
    Q_PROPERTY(double textScale READ textScale WRITE setTextScale NOTIFY themeChanged FINAL)

public:
    /// Both are borrowed and must outlive the editor. The registry's first module is selected.
    ThemeEditor(AppSettings &settings, const ModuleRegistry &registry, QObject *parent = nullptr);

    /// Makes the text fields the default's, and leaves the others. Can be undone.
    Q_INVOKABLE void resetText();
    /// Makes the theme the default one. Can be undone.
    Q_INVOKABLE void reset();
    /// Keeps the present theme's colours, and brings them back, exactly as they were.
    Q_INVOKABLE void keepColors() { m_kept = theme(); }
    Q_INVOKABLE void restoreColors();
    /// The ways back of this editor. One leads back to the look that was reset, except for what was changed
    /// since, and selects what it belongs to.
    [[nodiscard]] UndoHistory *undoHistory() { return &m_undoHistory; }

    /// The registry's modules as maps with the members `value`, the id, and `label`, the title.
    [[nodiscard]] QVariantList scopes() const;
    /// The module whose theme is edited while themes are per module.
    [[nodiscard]] QString selectedID() const { return m_selectedID; }
    void setSelectedID(const QString &id);
    /// What is edited, for the user.
    [[nodiscard]] QString scopeName() const;

    [[nodiscard]] bool frosted() const { return theme().frosted; }
    void setFrosted(bool frosted) { change(&ThemeConfig::frosted, frosted); }
    [[nodiscard]] QColor tint() const { return theme().tint.color(); }
    void setTint(const QColor &color) { change(&ThemeConfig::tint, RGBA::fromColor(color)); }
    [[nodiscard]] double tintStrength() const { return theme().tintStrength; }
    void setTintStrength(double strength) { change(&ThemeConfig::tintStrength, strength); }
    [[nodiscard]] double darkness() const { return theme().darkness; }
    void setDarkness(double darkness) { change(&ThemeConfig::darkness, darkness); }
    [[nodiscard]] double blur() const { return theme().blur; }
    void setBlur(double points) { change(&ThemeConfig::blur, points); }
    [[nodiscard]] bool lightsEnabled() const { return theme().lightsEnabled; }
    void setLightsEnabled(bool enabled) { change(&ThemeConfig::lightsEnabled, enabled); }
    [[nodiscard]] QColor lightColor() const { return theme().lightColor.color(); }
    void setLightColor(const QColor &color) { change(&ThemeConfig::lightColor, RGBA::fromColor(color)); }
    [[nodiscard]] double lightsIntensity() const { return theme().lightsIntensity; }
    void setLightsIntensity(double intensity) { change(&ThemeConfig::lightsIntensity, intensity); }
    [[nodiscard]] bool textWhite() const { return theme().textWhite; }
    void setTextWhite(bool white) { change(&ThemeConfig::textWhite, white); }
    [[nodiscard]] double haloStrength() const { return theme().haloStrength; }
    void setHaloStrength(double strength) { change(&ThemeConfig::haloStrength, strength); }
    [[nodiscard]] double textScale() const { return theme().textScale; }
    void setTextScale(double scale) { change(&ThemeConfig::textScale, scale); }

Q_SIGNALS:
    void scopeChanged();
    void themeChanged();

private:
    [[nodiscard]] ThemeConfig theme() const;
    /// A theme that was written over another one.
    struct Overwritten
    {
        /// The module that it belongs to; empty for the global one.
        QString moduleID;
        ThemeConfig shown;
        /// Whether the module had a theme of its own.
        bool wasOwn = true;
        ThemeConfig written;
    };

    void overwrite(const ThemeConfig &theme);
    void restore(const Overwritten &theme);
    template <typename T>
    void change(T ThemeConfig::*field, const T &value);

    AppSettings &m_settings;
    const ModuleRegistry &m_registry;
    QString m_selectedID;
    ThemeConfig m_kept;
    UndoHistory m_undoHistory;
};

} // namespace randblatt
