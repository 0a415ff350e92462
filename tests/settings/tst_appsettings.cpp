#include "platform/GlobalShortcut.h"
#include "settings/AppSettings.h"
#include "settings/Preferences.h"
#include "settings/ShortcutSetting.h"
#include "support/Fakes.h"
#include "support/TestEnvironment.h"

#include <QSignalSpy>
#include <QTest>

Q_DECLARE_METATYPE(randblatt::PreferenceValue)

using namespace Qt::StringLiterals;
using namespace randblatt;

class AppSettingsTest : public QObject
{
    Q_OBJECT

    FakeLoginItem m_loginItem;

    /// One line for every value, in the order of the table of settings.
    static QString describe(const AppSettings &settings)
    {
        QStringList enabled = settings.enabledModuleIDs().values();
        enabled.sort();
        QStringList heights;
        const auto stored = settings.moduleHeights();
        for (auto it = stored.cbegin(); it != stored.cend(); ++it)
            heights.append(it.key() + u'=' + QString::number(it.value()));
        return QStringList{
            rawString(settings.triggerMode()),
            rawString(settings.sidebarSide()),
            rawString(settings.mediaSource()),
            rawString(settings.notesMode()),
            u'"' + settings.notesScratch() + u'"',
            settings.alwaysVisible() ? u"visible"_s : u"hidden"_s,
            settings.launchAtLogin() ? u"login"_s : u"no login"_s,
            settings.hasOnboarded() ? u"onboarded"_s : u"new"_s,
            QString::number(settings.cornerSize()),
            QString::number(settings.edgeThickness()),
            QString::number(settings.revealDelay()),
            QString::number(settings.panelWidth()),
            QString::number(settings.panelHeightFraction()),
            u'{' + heights.join(u',') + u'}',
            settings.perModuleTheme() ? u"per module"_s : u"global"_s,
            settings.globalTheme() == ThemeConfig() ? u"default theme"_s : u"own theme"_s,
            u'[' + QStringList(settings.moduleThemes().keys()).join(u',') + u']',
            rawString(settings.todoViewMode()),
            u'[' + enabled.join(u',') + u']',
            u'[' + settings.moduleOrder().join(u',') + u']',
            u'"' + settings.spotifyClientID() + u'"',
        }
            .join(u' ');
    }

    static QString defaults()
    {
        return u"leftEdge left system scratch \"\" hidden login new 90 3 0.12 420 1 {} global default theme "
               u"[] "
               "kanban [notes,spotify,todo] [spotify,todo,calendar,notes] \"\""_s;
    }

    /// A desktop that answers as it is told, and remembers what is bound.
    class FakeShortcut : public GlobalShortcut
    {
    public:
        Outcome outcome = Outcome::bound;
        QKeySequence keys;

        [[nodiscard]] bool isAvailable() const override { return true; }
        Outcome bind(const QKeySequence &wanted) override
        {
            keys = wanted;
            return outcome;
        }
    };

private Q_SLOTS:
    void bindsTheKeyThatWasChosenAlsoAfterARestart()
    {
        Preferences preferences(Preferences::inMemory());
        FakeShortcut desktop;
        {
            ShortcutSetting setting(preferences, desktop);
            QVERIFY(desktop.keys.isEmpty());
            // Neither half a combination, nor what is typed into texts.
            QVERIFY(!setting.record(Qt::Key_Control, Qt::ControlModifier));
            QVERIFY(!setting.record(Qt::Key_A, Qt::ShiftModifier));
            QVERIFY(setting.record(Qt::Key_F9, Qt::NoModifier));
            QCOMPARE(desktop.keys, QKeySequence(Qt::Key_F9));
            desktop.outcome = GlobalShortcut::Outcome::taken;
            QVERIFY(setting.record(Qt::Key_J, Qt::ControlModifier | Qt::AltModifier | Qt::KeypadModifier));
            QVERIFY(!setting.problem().isEmpty());
        }
        desktop.keys = {};
        desktop.outcome = GlobalShortcut::Outcome::bound;
        ShortcutSetting again(preferences, desktop);
        QCOMPARE(desktop.keys, QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_J));
        QVERIFY(again.problem().isEmpty());
        again.clear();
        QVERIFY(desktop.keys.isEmpty());
        QVERIFY(ShortcutSetting(preferences, desktop).label().isEmpty());
    }

    void startsWithTheDefaults()
    {
        Preferences preferences(Preferences::inMemory());
        QCOMPARE(describe(AppSettings(preferences, m_loginItem)), defaults());
    }

    void survivesARestart()
    {
        Preferences preferences(Preferences::inMemory());
        QString before;
        {
            AppSettings settings(preferences, m_loginItem);
            settings.setTriggerMode(TriggerMode::corners);
            settings.setSidebarSide(SidebarSide::right);
            settings.setMediaSource(MediaSource::spotify);
            settings.setNotesMode(NotesMode::apple);
            settings.setNotesScratch(u"Zeile 1\nZeile 2 😀 \" '"_s);
            settings.setAlwaysVisible(true);
            settings.setLaunchAtLogin(false);
            settings.setHasOnboarded(true);
            settings.setCornerSize(50);
            settings.setEdgeThickness(1);
            settings.setRevealDelay(0);
            settings.setPanelWidth(512.5);
            settings.setPanelHeightFraction(0.35);
            settings.setHeight(300, u"weather"_s);
            settings.setPerModuleTheme(true);
            ThemeConfig theme;
            theme.frosted = true;
            settings.setTheme(theme, u"todo"_s);
            settings.setGlobalTheme(theme);
            settings.setTodoViewMode(TodoViewMode::list);
            settings.setEnabled(u"calendar"_s, true);
            settings.setEnabled(u"notes"_s, false);
            settings.setModuleOrder({u"notes"_s, u"weather"_s});
            settings.setSpotifyClientID(u"abc"_s);
            before = describe(settings);
        }
        QCOMPARE(before,
                 u"corners right spotify apple \"Zeile 1\nZeile 2 😀 \" '\" visible no login onboarded 50 1 0 "
                 "512.5 0.35 {weather=300} per module own theme [todo] list [calendar,spotify,todo] "
                 "[notes,weather] \"abc\""_s);
        QCOMPARE(describe(AppSettings(preferences, m_loginItem)), before);
    }

    void fallsBackToTheDefaultWhereAValueIsUnreadable_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<PreferenceValue>("value");
        const auto row = [](const char *name, const QString &key, const PreferenceValue &value) {
            QTest::newRow(name) << key << value;
        };
        row("unknown trigger", u"triggerMode"_s, u"middle"_s);
        row("trigger in another case", u"triggerMode"_s, u"LeftEdge"_s);
        row("trigger as a number", u"triggerMode"_s, 1.0);
        row("unknown side", u"sidebarSide"_s, u"top"_s);
        row("unknown source", u"mediaSource"_s, u""_s);
        row("unknown notes mode", u"notesMode"_s, u"paper"_s);
        row("unknown view mode", u"todoViewMode"_s, u"grid"_s);
        row("number as a string", u"cornerSize"_s, u"50"_s);
        row("number as data", u"panelWidth"_s, QByteArray("500"));
        row("boolean as a string", u"launchAtLogin"_s, u"false"_s);
        row("boolean as another number", u"alwaysVisible"_s, 2.0);
        row("text as data", u"notesScratch"_s, QByteArray("text"));
        row("height as text", u"moduleHeights"_s, QJsonObject{{u"todo"_s, 1}, {u"notes"_s, u"2"_s}});
        row("corrupt theme", u"globalTheme"_s, QByteArray("{\"frosted\":true"));
        row("theme as a string", u"globalTheme"_s, u"{}"_s);
        row("corrupt themes", u"moduleThemes"_s, QByteArray("{\"todo\":{}}"));
        row("enabled ids not all text", u"enabledModuleIDs"_s, QJsonArray{u"todo"_s, 1});
        row("order as a dictionary", u"moduleOrder"_s, QJsonObject());
    }

    void fallsBackToTheDefaultWhereAValueIsUnreadable()
    {
        QFETCH(QString, key);
        QFETCH(PreferenceValue, value);
        Preferences preferences(Preferences::inMemory());
        preferences.setValue(key, value);
        QCOMPARE(describe(AppSettings(preferences, m_loginItem)), defaults());
        QCOMPARE(preferences.value(key), value);
    }

    void readsWhatConverts()
    {
        Preferences preferences(Preferences::inMemory());
        preferences.setValue(u"launchAtLogin"_s, 0.0);
        preferences.setValue(u"edgeThickness"_s, true);
        preferences.setValue(u"enabledModuleIDs"_s, QJsonArray());
        const AppSettings settings(preferences, m_loginItem);
        QVERIFY(!settings.launchAtLogin());
        QCOMPARE(settings.edgeThickness(), 1.0);
        QVERIFY(settings.enabledModuleIDs().isEmpty());
    }

    void knowsTheHeightOfEveryCard()
    {
        Preferences preferences(Preferences::inMemory());
        AppSettings settings(preferences, m_loginItem);
        QCOMPARE(settings.height(u"notes"_s), 480.0);
        QCOMPARE(settings.height(u"todo"_s), 360.0);
        QCOMPARE(settings.height(u"weather"_s), 240.0);
        settings.setHeight(300, u"weather"_s);
        QCOMPARE(settings.height(u"weather"_s), 300.0);
        QCOMPARE(preferences.get<QJsonObject>(u"moduleHeights"_s), (QJsonObject{{u"weather"_s, 300}}));
    }

    void keepsThemesApartPerModule()
    {
        Preferences preferences(Preferences::inMemory());
        AppSettings settings(preferences, m_loginItem);
        ThemeConfig bright;
        bright.darkness = 0;
        settings.setTheme(bright, u"todo"_s);
        QCOMPARE(settings.globalTheme(), bright);
        QVERIFY(settings.moduleThemes().isEmpty());

        settings.setPerModuleTheme(true);
        ThemeConfig tinted;
        tinted.tintStrength = 1;
        settings.setTheme(tinted, u"todo"_s);
        QCOMPARE(settings.theme(u"todo"_s), tinted);
        QCOMPARE(settings.theme(u"notes"_s), bright);
        QCOMPARE(settings.theme({}), bright);

        settings.setPerModuleTheme(false);
        QCOMPARE(settings.theme(u"todo"_s), bright);
        QCOMPARE(settings.moduleThemes().value(u"todo"_s), tinted);
    }

    void writesBeforeItAnnounces()
    {
        Preferences preferences(Preferences::inMemory());
        AppSettings settings(preferences, m_loginItem);
        std::optional<QString> stored;
        connect(&settings, &AppSettings::notesScratchChanged, this,
                [&] { stored = preferences.get<QString>(u"notesScratch"_s); });
        QSignalSpy changes(&settings, &AppSettings::changed);
        settings.setNotesScratch(u"a"_s);
        settings.setNotesScratch(u"a"_s);
        QCOMPARE(stored, u"a"_s);
        QCOMPARE(changes.count(), 1);
    }

    void keepsAThemeThatCannotBeStored()
    {
        Preferences preferences(Preferences::inMemory());
        AppSettings settings(preferences, m_loginItem);
        ThemeConfig theme;
        theme.blur = qInf();
        settings.setGlobalTheme(theme);
        QCOMPARE(settings.globalTheme(), theme);
        QVERIFY(!preferences.value(u"globalTheme"_s));
    }

    void bringsTheLoginItemInLine()
    {
        Preferences preferences(Preferences::inMemory());
        FakeLoginItem loginItem;
        AppSettings settings(preferences, loginItem);
        settings.reconcileLoginItem();
        QVERIFY(loginItem.calls.isEmpty());

        loginItem.registered = false;
        settings.reconcileLoginItem();
        settings.setLaunchAtLogin(false);
        settings.setLaunchAtLogin(false);
        QCOMPARE(loginItem.calls, (QStringList{u"register"_s, u"unregister"_s}));

        loginItem.error = u"kein Platz"_s;
        QTest::ignoreMessage(QtWarningMsg, "LoginItem-Fehler: kein Platz");
        settings.setLaunchAtLogin(true);
        QVERIFY(settings.launchAtLogin());
        QCOMPARE(preferences.get<bool>(u"launchAtLogin"_s), true);
    }
};

RANDBLATT_TEST_MAIN(AppSettingsTest, QCoreApplication)
#include "tst_appsettings.moc"
