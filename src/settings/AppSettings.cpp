#include "settings/AppSettings.h"

#include "platform/LoginItem.h"
#include "settings/Preferences.h"

#include <QLoggingCategory>
#include <QMetaProperty>

#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcSettings, "quillbar.settings")

AppSettings *sharedInstance = nullptr;

// The stored form of each type of setting; none where a value has no stored form.

std::optional<PreferenceValue> stored(const QString &text)
{
    return text;
}

std::optional<PreferenceValue> stored(bool boolean)
{
    return boolean;
}

std::optional<PreferenceValue> stored(double number)
{
    return number;
}

template <typename Enum>
requires std::is_enum_v<Enum> std::optional<PreferenceValue> stored(Enum value)
{
    return rawString(value);
}

std::optional<PreferenceValue> stored(const QMap<QString, double> &heights)
{
    QJsonObject dictionary;
    for (auto it = heights.cbegin(); it != heights.cend(); ++it)
        dictionary.insert(it.key(), it.value());
    return dictionary;
}

std::optional<PreferenceValue> stored(const QStringList &ids)
{
    return QJsonArray::fromStringList(ids);
}

std::optional<PreferenceValue> stored(const QSet<QString> &ids)
{
    return QJsonArray::fromStringList(ids.values());
}

std::optional<PreferenceValue> stored(const ThemeConfig &theme)
{
    return encodeTheme(theme);
}

std::optional<PreferenceValue> stored(const ModuleThemes &themes)
{
    return encodeThemes(themes);
}

/// Reads one value after another; whatever is missing or unreadable leaves its target, the default, alone.
class Loader
{
public:
    explicit Loader(const Preferences &preferences)
        : m_preferences(preferences)
    {
    }

    void text(const QString &key, QString &target) const
    {
        target = m_preferences.get<QString>(key).value_or(target);
    }

    template <typename Enum>
    void enumeration(const QString &key, Enum &target) const
    {
        if (const auto name = m_preferences.get<QString>(key))
            target = fromRawString<Enum>(*name).value_or(target);
    }

    /// Booleans, and the numbers that stand for one.
    void boolean(const QString &key, bool &target) const
    {
        if (const auto boolean = m_preferences.get<bool>(key))
            target = *boolean;
        else if (const auto number = m_preferences.get<double>(key); number == 0.0 || number == 1.0)
            target = *number == 1.0;
    }

    /// Numbers, and booleans as 0 and 1.
    void number(const QString &key, double &target) const
    {
        if (const auto number = m_preferences.get<double>(key))
            target = *number;
        else if (const auto boolean = m_preferences.get<bool>(key))
            target = *boolean ? 1.0 : 0.0;
    }

    void heights(const QString &key, QMap<QString, double> &target) const
    {
        const auto dictionary = m_preferences.get<QJsonObject>(key).value_or(QJsonObject());
        QMap<QString, double> heights;
        for (auto it = dictionary.begin(); it != dictionary.end(); ++it) {
            if (!it->isDouble())
                return;
            heights.insert(it.key(), it->toDouble());
        }
        target = heights;
    }

    void theme(const QString &key, ThemeConfig &target) const
    {
        if (const auto json = m_preferences.get<QByteArray>(key))
            target = decodeTheme(*json).value_or(target);
    }

    void themes(const QString &key, ModuleThemes &target) const
    {
        if (const auto json = m_preferences.get<QByteArray>(key))
            target = decodeThemes(*json).value_or(target);
    }

    void ids(const QString &key, QStringList &target) const
    {
        const auto array = m_preferences.get<QJsonArray>(key);
        if (!array)
            return;
        QStringList ids;
        for (const auto &id : *array) {
            if (!id.isString())
                return;
            ids.append(id.toString());
        }
        target = ids;
    }

    void ids(const QString &key, QSet<QString> &target) const
    {
        QStringList list = target.values();
        ids(key, list);
        target = QSet<QString>(list.cbegin(), list.cend());
    }

private:
    const Preferences &m_preferences;
};

} // namespace

AppSettings::AppSettings(Preferences &preferences, LoginItem &loginItem, QObject *parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_loginItem(loginItem)
{
    load();
    connect(&preferences.health(), &StoreHealth::valueArrived, this, &AppSettings::reload);
    if (sharedInstance == nullptr)
        sharedInstance = this;
}

AppSettings::~AppSettings()
{
    if (sharedInstance == this)
        sharedInstance = nullptr;
}

AppSettings &AppSettings::shared()
{
    Q_ASSERT(sharedInstance != nullptr);
    return *sharedInstance;
}

void AppSettings::load()
{
    const Loader loader(m_preferences);
    loader.enumeration(u"triggerMode"_s, m_triggerMode);
    loader.enumeration(u"sidebarSide"_s, m_sidebarSide);
    loader.enumeration(u"mediaSource"_s, m_mediaSource);
    loader.enumeration(u"notesMode"_s, m_notesMode);
    loader.text(u"notesScratch"_s, m_notesScratch);
    loader.boolean(u"alwaysVisible"_s, m_alwaysVisible);
    loader.boolean(u"launchAtLogin"_s, m_launchAtLogin);
    loader.boolean(u"hasOnboarded"_s, m_hasOnboarded);
    loader.number(u"cornerSize"_s, m_cornerSize);
    loader.number(u"edgeThickness"_s, m_edgeThickness);
    loader.number(u"revealDelay"_s, m_revealDelay);
    loader.number(u"panelWidth"_s, m_panelWidth);
    loader.number(u"panelHeightFraction"_s, m_panelHeightFraction);
    loader.heights(u"moduleHeights"_s, m_moduleHeights);
    loader.boolean(u"perModuleTheme"_s, m_perModuleTheme);
    loader.theme(u"globalTheme"_s, m_globalTheme);
    loader.themes(u"moduleThemes"_s, m_moduleThemes);
    loader.enumeration(u"todoViewMode"_s, m_todoViewMode);
    loader.ids(u"enabledModuleIDs"_s, m_enabledModuleIDs);
    loader.ids(u"moduleOrder"_s, m_moduleOrder);
    loader.text(u"spotifyClientID"_s, m_spotifyClientID);
}

void AppSettings::reload()
{
    const QMetaObject &meta = staticMetaObject;
    QVariantList before;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i)
        before.append(meta.property(i).read(this));
    const auto heights = m_moduleHeights;
    const ModuleThemes themes = m_moduleThemes;
    const bool launched = m_launchAtLogin;
    load();
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        if (meta.property(i).read(this) != before.at(i - meta.propertyOffset()))
            meta.property(i).notifySignal().invoke(this, Qt::DirectConnection);
    }
    if (m_moduleHeights != heights)
        Q_EMIT moduleHeightsChanged();
    if (m_moduleThemes != themes)
        Q_EMIT moduleThemesChanged();
    Q_EMIT changed();
    if (m_launchAtLogin != launched)
        reconcileLoginItem();
}

template <typename T>
bool AppSettings::assign(T &member, const T &value, const QString &key, Signal signal)
{
    if (member == value)
        return false;
    member = value;
    if (const auto form = stored(value))
        m_preferences.setValue(key, *form);
    Q_EMIT(this->*signal)();
    Q_EMIT changed();
    return true;
}

template <typename Enum>
void AppSettings::assignNamed(const QString &name, void (AppSettings::*setter)(Enum))
{
    if (const auto value = fromRawString<Enum>(name))
        (this->*setter)(*value);
    else
        qCWarning(lcSettings, "Unbekannter Wert: %ls", qUtf16Printable(name));
}

double AppSettings::height(const QString &moduleID) const
{
    if (const auto it = m_moduleHeights.constFind(moduleID); it != m_moduleHeights.cend())
        return *it;
    if (moduleID == "notes"_L1)
        return 480.0;
    if (moduleID == "todo"_L1)
        return 360.0;
    return 240.0;
}

void AppSettings::setHeight(double height, const QString &moduleID)
{
    auto heights = m_moduleHeights;
    heights.insert(moduleID, height);
    assign(m_moduleHeights, heights, u"moduleHeights"_s, &AppSettings::moduleHeightsChanged);
}

ThemeConfig AppSettings::theme(const QString &moduleID) const
{
    if (!m_perModuleTheme || moduleID.isEmpty())
        return m_globalTheme;
    return m_moduleThemes.value(moduleID, m_globalTheme);
}

void AppSettings::setTheme(const ThemeConfig &theme, const QString &moduleID)
{
    if (!m_perModuleTheme || moduleID.isEmpty()) {
        setGlobalTheme(theme);
        return;
    }
    auto themes = m_moduleThemes;
    themes.insert(moduleID, theme);
    setModuleThemes(themes);
}

bool AppSettings::isEnabled(const QString &moduleID) const
{
    return m_enabledModuleIDs.contains(moduleID);
}

void AppSettings::setEnabled(const QString &moduleID, bool enabled)
{
    auto ids = m_enabledModuleIDs;
    if (enabled)
        ids.insert(moduleID);
    else
        ids.remove(moduleID);
    assign(m_enabledModuleIDs, ids, u"enabledModuleIDs"_s, &AppSettings::enabledModuleIDsChanged);
}

void AppSettings::reconcileLoginItem()
{
    // What starts at login against the user's wish need not be this very program.
    if (m_launchAtLogin ? m_loginItem.isRegistered() : !m_loginItem.hasEntry())
        return;
    const auto error = m_launchAtLogin ? m_loginItem.registerItem() : m_loginItem.unregisterItem();
    if (error)
        qCWarning(lcSettings, "LoginItem-Fehler: %ls", qUtf16Printable(*error));
}

void AppSettings::setTriggerMode(TriggerMode mode)
{
    assign(m_triggerMode, mode, u"triggerMode"_s, &AppSettings::triggerModeChanged);
}

void AppSettings::setSidebarSide(SidebarSide side)
{
    assign(m_sidebarSide, side, u"sidebarSide"_s, &AppSettings::sidebarSideChanged);
}

void AppSettings::setMediaSource(MediaSource source)
{
    assign(m_mediaSource, source, u"mediaSource"_s, &AppSettings::mediaSourceChanged);
}

void AppSettings::setNotesMode(NotesMode mode)
{
    assign(m_notesMode, mode, u"notesMode"_s, &AppSettings::notesModeChanged);
}

void AppSettings::setNotesScratch(const QString &text)
{
    assign(m_notesScratch, text, u"notesScratch"_s, &AppSettings::notesScratchChanged);
}

void AppSettings::setAlwaysVisible(bool visible)
{
    assign(m_alwaysVisible, visible, u"alwaysVisible"_s, &AppSettings::alwaysVisibleChanged);
}

void AppSettings::setLaunchAtLogin(bool launch)
{
    if (assign(m_launchAtLogin, launch, u"launchAtLogin"_s, &AppSettings::launchAtLoginChanged))
        reconcileLoginItem();
}

void AppSettings::setHasOnboarded(bool onboarded)
{
    assign(m_hasOnboarded, onboarded, u"hasOnboarded"_s, &AppSettings::hasOnboardedChanged);
}

void AppSettings::setCornerSize(double points)
{
    assign(m_cornerSize, points, u"cornerSize"_s, &AppSettings::cornerSizeChanged);
}

void AppSettings::setEdgeThickness(double points)
{
    assign(m_edgeThickness, points, u"edgeThickness"_s, &AppSettings::edgeThicknessChanged);
}

void AppSettings::setRevealDelay(double seconds)
{
    assign(m_revealDelay, seconds, u"revealDelay"_s, &AppSettings::revealDelayChanged);
}

void AppSettings::setPanelWidth(double points)
{
    assign(m_panelWidth, points, u"panelWidth"_s, &AppSettings::panelWidthChanged);
}

void AppSettings::setPanelHeightFraction(double fraction)
{
    assign(m_panelHeightFraction, fraction, u"panelHeightFraction"_s,
           &AppSettings::panelHeightFractionChanged);
}

void AppSettings::setPerModuleTheme(bool perModule)
{
    assign(m_perModuleTheme, perModule, u"perModuleTheme"_s, &AppSettings::perModuleThemeChanged);
}

void AppSettings::setModuleThemes(const ModuleThemes &themes)
{
    assign(m_moduleThemes, themes, u"moduleThemes"_s, &AppSettings::moduleThemesChanged);
}

void AppSettings::setGlobalTheme(const ThemeConfig &theme)
{
    assign(m_globalTheme, theme, u"globalTheme"_s, &AppSettings::globalThemeChanged);
}

void AppSettings::setTodoViewMode(TodoViewMode mode)
{
    assign(m_todoViewMode, mode, u"todoViewMode"_s, &AppSettings::todoViewModeChanged);
}

void AppSettings::setModuleOrder(const QStringList &order)
{
    assign(m_moduleOrder, order, u"moduleOrder"_s, &AppSettings::moduleOrderChanged);
}

void AppSettings::setSpotifyClientID(const QString &clientID)
{
    assign(m_spotifyClientID, clientID, u"spotifyClientID"_s, &AppSettings::spotifyClientIDChanged);
}

void AppSettings::setTriggerModeName(const QString &name)
{
    assignNamed(name, &AppSettings::setTriggerMode);
}

void AppSettings::setSidebarSideName(const QString &name)
{
    assignNamed(name, &AppSettings::setSidebarSide);
}

void AppSettings::setMediaSourceName(const QString &name)
{
    assignNamed(name, &AppSettings::setMediaSource);
}

void AppSettings::setNotesModeName(const QString &name)
{
    assignNamed(name, &AppSettings::setNotesMode);
}

void AppSettings::setTodoViewModeName(const QString &name)
{
    assignNamed(name, &AppSettings::setTodoViewMode);
}

} // namespace randblatt
