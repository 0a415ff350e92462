#include "ui/settings/ThemeEditor.h"

#include "settings/AppSettings.h"
#include "settings/ModuleRegistry.h"

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

/// The present theme with the former value of every field that still is as it was written.
ThemeConfig restored(ThemeConfig present, const ThemeConfig &written, const ThemeConfig &former)
{
    const auto restore = [&](auto... field) {
        ((present.*field = present.*field == written.*field ? former.*field : present.*field), ...);
    };
    restore(&ThemeConfig::frosted, &ThemeConfig::tint, &ThemeConfig::tintStrength, &ThemeConfig::darkness,
            &ThemeConfig::blur, &ThemeConfig::lightsEnabled, &ThemeConfig::lightColor,
            &ThemeConfig::lightsIntensity, &ThemeConfig::textWhite, &ThemeConfig::haloStrength,
            &ThemeConfig::textScale);
    return present;
}

} // namespace

ThemeEditor::ThemeEditor(AppSettings &settings, const ModuleRegistry &registry, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_registry(registry)
{
    const auto modules = registry.allModules();
    if (!modules.isEmpty())
        m_selectedID = modules.first()->id();
    connect(&settings, &AppSettings::perModuleThemeChanged, this, &ThemeEditor::scopeChanged);
    connect(this, &ThemeEditor::scopeChanged, this, &ThemeEditor::themeChanged);
    connect(&settings, &AppSettings::globalThemeChanged, this, &ThemeEditor::themeChanged);
    connect(&settings, &AppSettings::moduleThemesChanged, this, &ThemeEditor::themeChanged);
}

void ThemeEditor::resetText()
{
    const ThemeConfig standard;
    ThemeConfig edited = theme();
    edited.textWhite = standard.textWhite;
    edited.haloStrength = standard.haloStrength;
    edited.textScale = standard.textScale;
    overwrite(edited);
}

void ThemeEditor::reset()
{
    overwrite({});
}

void ThemeEditor::restoreColors()
{
    ThemeConfig edited = theme();
    edited.tint = m_kept.tint;
    edited.lightColor = m_kept.lightColor;
    if (edited != theme())
        m_settings.setTheme(edited, m_selectedID);
}

void ThemeEditor::overwrite(const ThemeConfig &theme)
{
    const QString moduleID = m_settings.perModuleTheme() ? m_selectedID : QString();
    const bool isOwn = moduleID.isEmpty() || m_settings.moduleThemes().contains(moduleID);
    const Overwritten overwritten{moduleID, this->theme(), isOwn, theme};
    if (isOwn && overwritten.shown == theme)
        return;
    m_settings.setTheme(theme, moduleID);
    m_undoHistory.push(u"Zurückgesetzt"_s, [this, overwritten] { restore(overwritten); });
}

void ThemeEditor::restore(const Overwritten &theme)
{
    if (theme.moduleID.isEmpty()) {
        m_settings.setGlobalTheme(restored(m_settings.globalTheme(), theme.written, theme.shown));
        return;
    }
    ModuleThemes themes = m_settings.moduleThemes();
    const ThemeConfig present = themes.value(theme.moduleID, theme.written);
    if (!theme.wasOwn && present == theme.written)
        themes.remove(theme.moduleID);
    else
        themes.insert(theme.moduleID, restored(present, theme.written, theme.shown));
    m_settings.setModuleThemes(themes);
    setSelectedID(theme.moduleID);
}

QVariantList ThemeEditor::scopes() const
{
    QVariantList scopes;
    const auto modules = m_registry.allModules();
    for (const SidebarModule *module : modules)
        scopes.append(QVariantMap{{u"value"_s, module->id()}, {u"label"_s, module->title()}});
    return scopes;
}

void ThemeEditor::setSelectedID(const QString &id)
{
    if (id == m_selectedID)
        return;
    m_selectedID = id;
    Q_EMIT scopeChanged();
}

QString ThemeEditor::scopeName() const
{
    if (!m_settings.perModuleTheme())
        return u"Alle Fenster"_s;
    const SidebarModule *module = m_registry.module(m_selectedID);
    return module != nullptr ? module->title() : u"Modul"_s;
}

ThemeConfig ThemeEditor::theme() const
{
    return m_settings.theme(m_selectedID);
}

template <typename T>
void ThemeEditor::change(T ThemeConfig::*field, const T &value)
{
    ThemeConfig edited = theme();
    if (edited.*field == value)
        return;
    edited.*field = value;
    m_settings.setTheme(edited, m_selectedID);
}

template void ThemeEditor::change(bool ThemeConfig::*field, const bool &value);
template void ThemeEditor::change(double ThemeConfig::*field, const double &value);
template void ThemeEditor::change(RGBA ThemeConfig::*field, const RGBA &value);

} // namespace randblatt
