#pragma once

#include "settings/SettingsTypes.h"
#include "theme/ThemeConfig.h"

#include <QMap>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

class LoginItem;
class Preferences;

/// Every preference of the user. The values are read from the preferences once, at construction; each change
/// is written before the setter returns and then announced. Numbers are taken as they are: whoever uses one
/// limits it. To be used on the main thread.
///
/// QML sees the enumerations as their stored strings and ignores other strings.
class AppSettings : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one settings object.")
    Q_PROPERTY(
        QString triggerMode READ triggerModeName WRITE setTriggerModeName NOTIFY triggerModeChanged FINAL)
    Q_PROPERTY(
        QString sidebarSide READ sidebarSideName WRITE setSidebarSideName NOTIFY sidebarSideChanged FINAL)
    Q_PROPERTY(
        QString mediaSource READ mediaSourceName WRITE setMediaSourceName NOTIFY mediaSourceChanged FINAL)
    Q_PROPERTY(QString notesMode READ notesModeName WRITE setNotesModeName NOTIFY notesModeChanged FINAL)
    Q_PROPERTY(QString notesScratch READ notesScratch WRITE setNotesScratch NOTIFY notesScratchChanged FINAL)
    Q_PROPERTY(bool alwaysVisible READ alwaysVisible WRITE setAlwaysVisible NOTIFY alwaysVisibleChanged FINAL)
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin WRITE setLaunchAtLogin NOTIFY launchAtLoginChanged FINAL)
    Q_PROPERTY(bool hasOnboarded READ hasOnboarded WRITE setHasOnboarded NOTIFY hasOnboardedChanged FINAL)
    Q_PROPERTY(double cornerSize READ cornerSize WRITE setCornerSize NOTIFY cornerSizeChanged FINAL)
    Q_PROPERTY(
        double edgeThickness READ edgeThickness WRITE setEdgeThickness NOTIFY edgeThicknessChanged FINAL)
    Q_PROPERTY(double revealDelay READ revealDelay WRITE setRevealDelay NOTIFY revealDelayChanged FINAL)
    Q_PROPERTY(double panelWidth READ panelWidth WRITE setPanelWidth NOTIFY panelWidthChanged FINAL)
    Q_PROPERTY(double panelHeightFraction READ panelHeightFraction WRITE setPanelHeightFraction NOTIFY
                   panelHeightFractionChanged FINAL)
    Q_PROPERTY(
        bool perModuleTheme READ perModuleTheme WRITE setPerModuleTheme NOTIFY perModuleThemeChanged FINAL)
    Q_PROPERTY(randblatt::ThemeConfig globalTheme READ globalTheme WRITE setGlobalTheme NOTIFY
                   globalThemeChanged FINAL)
    Q_PROPERTY(
        QString todoViewMode READ todoViewModeName WRITE setTodoViewModeName NOTIFY todoViewModeChanged FINAL)
    Q_PROPERTY(QStringList enabledModuleIDs READ enabledModuleIDList NOTIFY enabledModuleIDsChanged FINAL)
    Q_PROPERTY(QStringList moduleOrder READ moduleOrder WRITE setModuleOrder NOTIFY moduleOrderChanged FINAL)
    Q_PROPERTY(QString spotifyClientID READ spotifyClientID WRITE setSpotifyClientID NOTIFY
                   spotifyClientIDChanged FINAL)

public:
    /// Reads the stored values. `preferences` and `loginItem` are borrowed and must outlive the object.
    AppSettings(Preferences &preferences, LoginItem &loginItem, QObject *parent = nullptr);
    ~AppSettings() override;

    /// The one instance of the process: the first that was made and still lives. It must exist.
    [[nodiscard]] static AppSettings &shared();

    /// The height of a module's card in points: the user's, else the module's default.
    [[nodiscard]] Q_INVOKABLE double height(const QString &moduleID) const;
    Q_INVOKABLE void setHeight(double height, const QString &moduleID);
    /// The theme in force for a module; an empty id means the global theme.
    [[nodiscard]] Q_INVOKABLE randblatt::ThemeConfig theme(const QString &moduleID) const;
    /// Sets the module's own theme while themes are per module and an id is given, else the global theme.
    Q_INVOKABLE void setTheme(const randblatt::ThemeConfig &theme, const QString &moduleID);
    [[nodiscard]] Q_INVOKABLE bool isEnabled(const QString &moduleID) const;
    Q_INVOKABLE void setEnabled(const QString &moduleID, bool enabled);
    /// Brings the login item in line with launchAtLogin(); a failure is logged.
    void reconcileLoginItem();

    [[nodiscard]] TriggerMode triggerMode() const { return m_triggerMode; }
    void setTriggerMode(TriggerMode mode);
    [[nodiscard]] SidebarSide sidebarSide() const { return m_sidebarSide; }
    void setSidebarSide(SidebarSide side);
    [[nodiscard]] MediaSource mediaSource() const { return m_mediaSource; }
    void setMediaSource(MediaSource source);
    [[nodiscard]] NotesMode notesMode() const { return m_notesMode; }
    void setNotesMode(NotesMode mode);
    [[nodiscard]] QString notesScratch() const { return m_notesScratch; }
    void setNotesScratch(const QString &text);
    [[nodiscard]] bool alwaysVisible() const { return m_alwaysVisible; }
    void setAlwaysVisible(bool visible);
    [[nodiscard]] bool launchAtLogin() const { return m_launchAtLogin; }
    /// Also reconciles the login item.
    void setLaunchAtLogin(bool launch);
    [[nodiscard]] bool hasOnboarded() const { return m_hasOnboarded; }
    void setHasOnboarded(bool onboarded);
    /// Side of the hot corners' squares, in points.
    [[nodiscard]] double cornerSize() const { return m_cornerSize; }
    void setCornerSize(double points);
    /// Depth of the edge's trigger zone, in points.
    [[nodiscard]] double edgeThickness() const { return m_edgeThickness; }
    void setEdgeThickness(double points);
    /// How long the pointer must rest in the trigger zone, in seconds.
    [[nodiscard]] double revealDelay() const { return m_revealDelay; }
    void setRevealDelay(double seconds);
    /// In points.
    [[nodiscard]] double panelWidth() const { return m_panelWidth; }
    void setPanelWidth(double points);
    /// The panel's part of the screen's height, meant to be 0.3…1.
    [[nodiscard]] double panelHeightFraction() const { return m_panelHeightFraction; }
    void setPanelHeightFraction(double fraction);
    /// The heights that the user has set, in points by module id.
    [[nodiscard]] QMap<QString, double> moduleHeights() const { return m_moduleHeights; }
    [[nodiscard]] bool perModuleTheme() const { return m_perModuleTheme; }
    void setPerModuleTheme(bool perModule);
    [[nodiscard]] ThemeConfig globalTheme() const { return m_globalTheme; }
    void setGlobalTheme(const ThemeConfig &theme);
    /// The modules' own themes, which are kept while they are not in force.
    [[nodiscard]] ModuleThemes moduleThemes() const { return m_moduleThemes; }
    void setModuleThemes(const ModuleThemes &themes);
    [[nodiscard]] TodoViewMode todoViewMode() const { return m_todoViewMode; }
    void setTodoViewMode(TodoViewMode mode);
    [[nodiscard]] QSet<QString> enabledModuleIDs() const { return m_enabledModuleIDs; }
    [[nodiscard]] QStringList moduleOrder() const { return m_moduleOrder; }
    void setModuleOrder(const QStringList &order);
    [[nodiscard]] QString spotifyClientID() const { return m_spotifyClientID; }
    void setSpotifyClientID(const QString &clientID);

Q_SIGNALS:
    /// Any value changed; sent after the value's own signal.
    void changed();
    void triggerModeChanged();
    void sidebarSideChanged();
    void mediaSourceChanged();
    void notesModeChanged();
    void notesScratchChanged();
    void alwaysVisibleChanged();
    void launchAtLoginChanged();
    void hasOnboardedChanged();
    void cornerSizeChanged();
    void edgeThicknessChanged();
    void revealDelayChanged();
    void panelWidthChanged();
    void panelHeightFractionChanged();
    void moduleHeightsChanged();
    void perModuleThemeChanged();
    void globalThemeChanged();
    void moduleThemesChanged();
    void todoViewModeChanged();
    void enabledModuleIDsChanged();
    void moduleOrderChanged();
    void spotifyClientIDChanged();

private:
    using Signal = void (AppSettings::*)();

    void load();
    /// Values that could not be read at construction come to light.
    void reload();
    template <typename T>
    bool assign(T &member, const T &value, const QString &key, Signal signal);
    template <typename Enum>
    void assignNamed(const QString &name, void (AppSettings::*setter)(Enum));

    [[nodiscard]] QString triggerModeName() const { return rawString(m_triggerMode); }
    void setTriggerModeName(const QString &name);
    [[nodiscard]] QString sidebarSideName() const { return rawString(m_sidebarSide); }
    void setSidebarSideName(const QString &name);
    [[nodiscard]] QString mediaSourceName() const { return rawString(m_mediaSource); }
    void setMediaSourceName(const QString &name);
    [[nodiscard]] QString notesModeName() const { return rawString(m_notesMode); }
    void setNotesModeName(const QString &name);
    [[nodiscard]] QString todoViewModeName() const { return rawString(m_todoViewMode); }
    void setTodoViewModeName(const QString &name);
    [[nodiscard]] QStringList enabledModuleIDList() const { return m_enabledModuleIDs.values(); }

    Preferences &m_preferences;
    LoginItem &m_loginItem;
    TriggerMode m_triggerMode = TriggerMode::leftEdge;
    SidebarSide m_sidebarSide = SidebarSide::left;
    MediaSource m_mediaSource = MediaSource::system;
    NotesMode m_notesMode = NotesMode::scratch;
    QString m_notesScratch;
    bool m_alwaysVisible = false;
    bool m_launchAtLogin = true;
    bool m_hasOnboarded = false;
    double m_cornerSize = 90.0;
    double m_edgeThickness = 3.0;
    double m_revealDelay = 0.12;
    double m_panelWidth = 420.0;
    double m_panelHeightFraction = 1.0;
    QMap<QString, double> m_moduleHeights;
    bool m_perModuleTheme = false;
    ThemeConfig m_globalTheme;
    ModuleThemes m_moduleThemes;
    TodoViewMode m_todoViewMode = TodoViewMode::kanban;
    QSet<QString> m_enabledModuleIDs{QStringLiteral("spotify"), QStringLiteral("todo"),
                                     QStringLiteral("notes")};
    QStringList m_moduleOrder{QStringLiteral("spotify"), QStringLiteral("todo"), QStringLiteral("calendar"),
                              QStringLiteral("notes")};
    QString m_spotifyClientID;
};

} // namespace randblatt
