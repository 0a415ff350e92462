#include "settings/AppSettings.h"
#include "settings/ModuleRegistry.h"
#include "settings/Preferences.h"
#include "support/Fakes.h"
#include "support/TestEnvironment.h"
#include "ui/settings/ThemeEditor.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

struct Fixture
{
    Preferences preferences{Preferences::inMemory()};
    FakeLoginItem loginItem;
    AppSettings settings{preferences, loginItem};
    ModuleRegistry registry{settings, FakeModule::all()};
    ThemeEditor editor{settings, registry};
};

} // namespace

class ThemeEditorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changesOneFieldOfTheGlobalTheme()
    {
        Fixture f;
        ThemeConfig theme;
        theme.textScale = 3.0;
        f.settings.setGlobalTheme(theme);
        QCOMPARE(f.editor.scopeName(), u"Alle Fenster"_s);
        QSignalSpy changes(&f.editor, &ThemeEditor::themeChanged);
        f.editor.setDarkness(0.25);
        theme.darkness = 0.25;
        QCOMPARE(f.settings.globalTheme(), theme);
        QVERIFY(f.settings.moduleThemes().isEmpty());
        QCOMPARE(changes.count(), 1);
    }

    void givesAModuleItsThemeWithTheFirstChange()
    {
        Fixture f;
        ThemeConfig global;
        global.tintStrength = 0.5;
        f.settings.setGlobalTheme(global);
        f.settings.setPerModuleTheme(true);
        f.editor.setSelectedID(u"notes"_s);
        QCOMPARE(f.editor.scopeName(), u"NOTES"_s);
        QCOMPARE(f.editor.tintStrength(), 0.5);
        f.editor.setTintStrength(0.5);
        QVERIFY(f.settings.moduleThemes().isEmpty());

        f.editor.setFrosted(true);
        QCOMPARE(f.settings.globalTheme(), global);
        QCOMPARE(f.settings.moduleThemes().keys(), QStringList{u"notes"_s});
        QCOMPARE(f.settings.theme(u"notes"_s).tintStrength, 0.5);

        f.editor.setSelectedID(u"todo"_s);
        QVERIFY(!f.editor.frosted());
        f.settings.setPerModuleTheme(false);
        f.editor.setBlur(20);
        QCOMPARE(f.settings.globalTheme().blur, 20.0);
        QCOMPARE(f.settings.moduleThemes().size(), 1);
    }

    void resetsTheTextAlone()
    {
        Fixture f;
        ThemeConfig theme;
        theme.tint = {0.1, 0.2, 0.3};
        theme.blur = 40;
        ThemeConfig expected = theme;
        theme.textWhite = false;
        theme.haloStrength = 0.9;
        theme.textScale = 1.4;
        f.settings.setGlobalTheme(theme);
        f.editor.resetText();
        QCOMPARE(f.settings.globalTheme(), expected);
    }

    void resetsWhatIsEdited()
    {
        Fixture f;
        f.editor.setDarkness(0.1);
        f.settings.setPerModuleTheme(true);
        f.editor.setSelectedID(u"todo"_s);
        f.editor.reset();
        QCOMPARE(f.settings.theme(u"todo"_s), ThemeConfig());
        QCOMPARE(f.settings.globalTheme().darkness, 0.1);
        f.settings.setPerModuleTheme(false);
        f.editor.reset();
        QCOMPARE(f.settings.globalTheme(), ThemeConfig());
    }

    void undoesAReset_data()
    {
        QTest::addColumn<bool>("perModule");
        QTest::addColumn<bool>("hasOwn");
        QTest::addColumn<bool>("changesSince");
        QTest::newRow("of all") << false << true << false;
        QTest::newRow("of all, changed since") << false << true << true;
        QTest::newRow("of a module") << true << true << false;
        QTest::newRow("of a module, changed since") << true << true << true;
        QTest::newRow("of a module without a look of its own") << true << false << false;
        QTest::newRow("of a module without a look of its own, changed since") << true << false << true;
    }

    void undoesAReset()
    {
        QFETCH(bool, perModule);
        QFETCH(bool, hasOwn);
        QFETCH(bool, changesSince);
        Fixture f;
        f.editor.setDarkness(0.1);
        f.editor.setTextScale(1.4);
        const ThemeConfig global = f.settings.globalTheme();
        f.settings.setPerModuleTheme(perModule);
        f.editor.setSelectedID(u"notes"_s);
        if (hasOwn)
            f.editor.setBlur(40);
        const ModuleThemes own = f.settings.moduleThemes();
        ThemeConfig expected = f.settings.theme(u"notes"_s);
        f.editor.resetText();
        f.editor.reset();
        QCOMPARE(f.editor.darkness(), ThemeConfig().darkness);
        QCOMPARE(f.editor.undoHistory()->offer(), u"Zurückgesetzt"_s);
        if (changesSince) {
            f.editor.setTintStrength(0.3);
            expected.tintStrength = 0.3;
        }
        // Also where the user has gone on to something else.
        f.editor.setSelectedID(u"todo"_s);
        f.settings.setPerModuleTheme(false);
        QVERIFY(f.editor.undoHistory()->undo());
        QVERIFY(f.editor.undoHistory()->undo());
        QVERIFY(!f.editor.undoHistory()->undo());
        f.settings.setPerModuleTheme(perModule);
        QCOMPARE(f.settings.theme(u"notes"_s), expected);
        if (perModule) {
            QCOMPARE(f.settings.globalTheme(), global);
            QCOMPARE(f.editor.selectedID(), u"notes"_s);
        }
        if (!changesSince && perModule)
            QCOMPARE(f.settings.moduleThemes(), own);
    }

    void offersNoWayBackFromNothing()
    {
        Fixture f;
        f.editor.reset();
        f.editor.resetText();
        QVERIFY(!f.editor.undoHistory()->canUndo());
    }

    void takesColoursWithoutTheirOpacity()
    {
        Fixture f;
        f.editor.setLightColor(QColor(255, 0, 51, 10));
        QCOMPARE(f.settings.globalTheme().lightColor, RGBA::fromColor(QColor(255, 0, 51)));
        f.editor.setTint(QColor());
        QCOMPARE(f.settings.globalTheme().tint, (RGBA{1, 1, 1}));
    }

    void namesAModuleThatDoesNotExist()
    {
        Fixture f;
        QCOMPARE(f.editor.selectedID(), u"todo"_s);
        QSignalSpy changes(&f.editor, &ThemeEditor::scopeChanged);
        f.editor.setSelectedID(u"weather"_s);
        QCOMPARE(f.editor.scopeName(), u"Alle Fenster"_s);
        f.settings.setPerModuleTheme(true);
        QCOMPARE(f.editor.scopeName(), u"Modul"_s);
        QCOMPARE(changes.count(), 2);
        QCOMPARE(f.editor.darkness(), ThemeConfig().darkness);
    }
};

RANDBLATT_TEST_MAIN(ThemeEditorTest, QCoreApplication)
#include "tst_themeeditor.moc"
