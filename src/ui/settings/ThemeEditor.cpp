#include "ui/settings/ThemeEditor.h"

#include "settings/AppSettings.h"
#include "settings/ModuleRegistry.h"

namespace randblatt {

using namespace Qt::StringLiterals;

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
    m_settings.setTheme(edited, m_selectedID);
}

void ThemeEditor::reset()
{
    m_settings.setTheme({}, m_selectedID);
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
