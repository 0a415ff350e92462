#include "settings/AppSettings.h"
#include "settings/ModuleRegistry.h"
#include "settings/Preferences.h"
#include "settings/StoreBackups.h"
#include "settings/StoreHealth.h"
#include "support/Fakes.h"
#include "support/TestEnvironment.h"
#include "support/ViewTest.h"
#include "ui/settings/SettingsWindowController.h"

#include <QAccessible>
#include <QDir>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

/// What the music module offers to connect.
class FakeAccount : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isAuthorized MEMBER authorized NOTIFY changed FINAL)
    Q_PROPERTY(QString lastError MEMBER error NOTIFY changed FINAL)

public:
    bool authorized = false;
    QString error;

public Q_SLOTS:
    void signIn() { set(true); }
    void signOut() { set(false); }

Q_SIGNALS:
    void changed();

private:
    void set(bool connected)
    {
        authorized = connected;
        Q_EMIT changed();
    }
};

class FakeWebPlayer : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString problem MEMBER problem NOTIFY problemChanged FINAL)

public:
    QString problem;

Q_SIGNALS:
    void problemChanged();
};

class FakeMedia : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QObject *auth READ auth CONSTANT FINAL)
    Q_PROPERTY(QObject *webPlayer READ webPlayer CONSTANT FINAL)

public:
    FakeAccount account;
    FakeWebPlayer player;

    QObject *auth() { return &account; }
    QObject *webPlayer() { return &player; }
};

struct Fixture
{
    Preferences preferences{Preferences::inMemory()};
    FakeLoginItem loginItem;
    AppSettings settings{preferences, loginItem};
    ModuleRegistry registry{settings, FakeModule::all()};
    QQmlEngine engine;
    SettingsWindowController controller;
    std::optional<ViewTest> view;

    explicit Fixture(const QString &tab, QObject *media = nullptr, StoreHealth *health = nullptr,
                     StoreBackups *backups = nullptr)
        : controller(engine, settings, registry, media, health, backups)
    {
        prepareEngine(engine);
        controller.show();
        view.emplace(*controller.window());
        view->click(item(u"tab-"_s + tab));
    }
    [[nodiscard]] QQuickItem *item(const QString &name) const
    {
        QQuickItem *found = view->find(name);
        if (found == nullptr)
            qFatal("Es fehlt: %ls", qUtf16Printable(name));
        return found;
    }
    [[nodiscard]] QString text(const QString &name) const { return item(name)->property("text").toString(); }
    /// Pulls the knob of a slider to a part 0…1 of its way.
    void pull(const QString &name, double part) const
    {
        QQuickItem *slider = item(name);
        QQuickItem *form = slider;
        while (form->objectName() != u"form"_s)
            form = form->parentItem();
        QMetaObject::invokeMethod(form, "reveal", Q_ARG(QQuickItem *, slider));
        const auto place = [slider](double position) {
            return slider->mapToScene(QPointF(9 + position * (slider->width() - 18), slider->height() / 2))
                .toPoint();
        };
        const double start = slider->property("visualPosition").toDouble();
        QTest::mousePress(controller.window(), Qt::LeftButton, {}, place(start));
        for (int i = 1; i <= 10; ++i)
            QTest::mouseMove(controller.window(), place(start + (part - start) * i / 10));
        QTest::mouseRelease(controller.window(), Qt::LeftButton, {}, place(part));
    }
    template <typename T>
    [[nodiscard]] T stored(const QString &key) const
    {
        return preferences.get<T>(key).value_or(T());
    }
};

} // namespace

class SettingsWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsWhatIsNotSavedAndBringsCopiesBack()
    {
        const QTemporaryDir folder;
        Preferences preferences(folder.filePath(u"quillbar/preferences.sqlite"_s));
        StoreBackups backups(preferences);
        StoreHealth health;
        QSignalSpy retried(&health, &StoreHealth::retryRequested);
        const QString day = u"2026-11-22"_s;
        QDir(folder.path()).mkpath(u"quillbar/backups"_s);
        Preferences(folder.filePath(u"quillbar/backups/preferences-2026-11-22.sqlite"_s))
            .setValue(u"a"_s, true);
        Fixture f(u"Allgemein"_s, nullptr, &health, &backups);
        const auto press = [&f](const QString &button) {
            f.item(button)->forceActiveFocus(Qt::TabFocusReason);
            f.view->press(Qt::Key_Return);
        };
        QVERIFY(!f.item(u"storeTrouble"_s)->isVisible());
        health.setUnsaved({{{StoreTable::preferences, u"panelWidth"_s}, StoreResult::busy}}, StoreResult::ok);
        QTRY_VERIFY(f.item(u"storeTrouble"_s)->isVisible());
        press(u"retrySaving"_s);
        QCOMPARE(retried.count(), 1);

        press(u"bringBack"_s);
        QTRY_VERIFY(f.view->find(u"choose-"_s + day) != nullptr);
        press(u"choose-"_s + day);
        QCOMPARE(backups.chosen(), day);
        QTRY_COMPARE(f.item(u"chosenCopy"_s)->property("text").toString(),
                     u"Beim nächsten Start: Stand von Sonntag, 22. November 2026"_s);
        press(u"keepPresent"_s);
        QCOMPARE(backups.chosen(), QString());
    }

    void isOneWindowThatClosesByKeyboard()
    {
        Fixture f(u"Allgemein"_s);
        QQuickView *window = f.controller.window();
        f.controller.show();
        QCOMPARE(f.controller.window(), window);
        f.view->press(Qt::Key_Escape);
        QVERIFY(!window->isVisible());
        f.controller.show();
        QVERIFY(window->isVisible());
        QVERIFY(QTest::qWaitForWindowActive(window));
        f.view->press(Qt::Key_PageDown, Qt::ControlModifier);
        QVERIFY(f.item(u"tab-Module"_s)->property("current").toBool());
        f.view->press(Qt::Key_W, Qt::ControlModifier);
        QVERIFY(!window->isVisible());
        QCOMPARE(f.controller.window(), window);
    }

    void writesTheGeneralSettings()
    {
        Fixture f(u"Allgemein"_s);
        f.view->click(f.item(u"alwaysVisible"_s));
        QVERIFY(f.stored<bool>(u"alwaysVisible"_s));
        f.view->click(f.item(u"launchAtLogin"_s));
        QCOMPARE(f.preferences.get<bool>(u"launchAtLogin"_s), std::optional(false));
        f.view->click(f.item(u"sidebarSide-right"_s));
        QCOMPARE(f.stored<QString>(u"sidebarSide"_s), u"right"_s);
        f.view->click(f.item(u"triggerMode-corners"_s));
        QCOMPARE(f.stored<QString>(u"triggerMode"_s), u"corners"_s);
        f.pull(u"panelWidthSlider"_s, 1);
        QCOMPARE(f.stored<double>(u"panelWidth"_s), 720.0);
        QCOMPARE(f.text(u"panelWidth"_s), u"Breite: 720"_s);
        f.pull(u"revealDelaySlider"_s, 0.35);
        QCOMPARE(f.stored<double>(u"revealDelay"_s), 0.28);
    }

    void writesTheNumbersOut()
    {
        Fixture f(u"Allgemein"_s);
        QCOMPARE(f.text(u"revealDelay"_s), u"Verzögerung: 0.12 s"_s);
        QCOMPARE(f.text(u"cornerSize"_s), u"Größe der Eck-Zone: 90"_s);
        QCOMPARE(f.text(u"edgeThickness"_s), u"Randempfindlichkeit: 3"_s);
        f.settings.setPanelHeightFraction(0.35);
        QCOMPARE(f.text(u"panelHeightFraction"_s), u"35 % der Bildschirmhöhe"_s);
    }

    void followsChangesMadeElsewhere()
    {
        Fixture f(u"Allgemein"_s);
        f.view->click(f.item(u"triggerMode-both"_s));
        f.settings.setTriggerMode(TriggerMode::corners);
        f.settings.setAlwaysVisible(true);
        f.settings.setCornerSize(120);
        QVERIFY(f.item(u"triggerMode-corners"_s)->property("chosen").toBool());
        QVERIFY(f.item(u"alwaysVisible"_s)->property("on").toBool());
        QCOMPARE(f.item(u"cornerSizeSlider"_s)->property("value").toDouble(), 120.0);
        f.pull(u"cornerSizeSlider"_s, 0);
        f.settings.setCornerSize(150);
        QCOMPARE(f.item(u"cornerSizeSlider"_s)->property("value").toDouble(), 150.0);
    }

    void keepsNumbersOutsideTheirRangeUntilTheUserMovesThem()
    {
        Fixture f(u"Design"_s);
        f.settings.setCornerSize(900);
        f.settings.setHeight(20, u"todo"_s);
        ThemeConfig theme;
        theme.darkness = 5;
        theme.textScale = 0.1;
        f.settings.setGlobalTheme(theme);
        const QQuickItem *darkness = f.item(u"darknessSlider"_s);
        QCOMPARE(darkness->property("value").toDouble(), 0.8);
        for (const auto &tab : {u"Module"_s, u"Spotify"_s, u"Allgemein"_s})
            f.view->click(f.item(u"tab-"_s + tab));
        QCOMPARE(f.item(u"height-todo"_s)->property("value").toDouble(), 120.0);
        QCOMPARE(f.text(u"cornerSize"_s), u"Größe der Eck-Zone: 200"_s);
        f.item(u"cornerSizeSlider"_s)->forceActiveFocus();
        f.view->press(Qt::Key_Right);
        QCOMPARE(f.stored<double>(u"cornerSize"_s), 900.0);
        QCOMPARE(f.settings.height(u"todo"_s), 20.0);
        QCOMPARE(f.settings.globalTheme(), theme);

        f.view->press(Qt::Key_Left);
        QCOMPARE(f.stored<double>(u"cornerSize"_s), 195.0);
        f.view->click(f.item(u"tab-Design"_s));
        f.pull(u"darknessSlider"_s, 0.5);
        theme.darkness = 0.4;
        QCOMPARE(f.settings.globalTheme(), theme);
    }

    void sortsTheModulesByDragging()
    {
        Fixture f(u"Module"_s);
        f.settings.setModuleOrder({u"weather"_s, u"spotify"_s, u"todo"_s, u"calendar"_s, u"notes"_s});
        QQuickView *window = f.controller.window();
        const auto handle = [&f](const QString &row) {
            const auto found = f.item(row)->findChildren<QQuickItem *>(u"handle"_s);
            return ViewTest::centre(found.first());
        };
        QTRY_COMPARE(f.item(u"row-todo"_s)->y(), f.item(u"row-spotify"_s)->height());
        const QPoint from = handle(u"row-calendar"_s);
        const QPoint to = handle(u"row-spotify"_s) - QPoint(0, 10);
        const QQuickItem *mark = f.item(u"dropMark"_s);
        const auto drag = [&] {
            QTest::mousePress(window, Qt::LeftButton, {}, from);
            for (int i = 1; i <= 10; ++i)
                QTest::mouseMove(window, from + (to - from) * i / 10);
            return mark->isVisible() && mark->y() < 5;
        };
        const QStringList before = f.settings.moduleOrder();
        QVERIFY(drag());
        f.view->press(Qt::Key_Escape);
        QTest::mouseRelease(window, Qt::LeftButton, {}, to);
        QVERIFY(window->isVisible());
        QVERIFY(!mark->isVisible());
        QCOMPARE(f.settings.moduleOrder(), before);

        QVERIFY(drag());
        QCOMPARE(f.settings.moduleOrder(), before);
        QTest::mouseRelease(window, Qt::LeftButton, {}, to);
        QVERIFY(!mark->isVisible());
        QCOMPARE(f.stored<QJsonArray>(u"moduleOrder"_s),
                 (QJsonArray{u"weather"_s, u"calendar"_s, u"spotify"_s, u"todo"_s, u"notes"_s}));
        QTRY_VERIFY(f.item(u"row-calendar"_s)->y() < f.item(u"row-spotify"_s)->y());
    }

    void sortsTheModulesByKeyboard()
    {
        Fixture f(u"Module"_s);
        f.item(u"height-todo"_s)->forceActiveFocus();
        f.view->press(Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(f.settings.moduleOrder(), (QStringList{u"todo"_s, u"spotify"_s, u"calendar"_s, u"notes"_s}));
        f.view->press(Qt::Key_Up, Qt::AltModifier);
        f.view->press(Qt::Key_Down, Qt::AltModifier);
        f.view->press(Qt::Key_Down, Qt::AltModifier);
        QCOMPARE(f.settings.moduleOrder(), (QStringList{u"spotify"_s, u"calendar"_s, u"todo"_s, u"notes"_s}));
        QVERIFY(f.item(u"height-todo"_s)->hasActiveFocus());
    }

    void enablesSizesAndSetsUpTheModules()
    {
        Fixture f(u"Module"_s);
        for (const auto &id : {u"todo"_s, u"notes"_s, u"spotify"_s})
            f.view->click(f.item(u"enabled-"_s + id));
        QCOMPARE(f.preferences.get<QJsonArray>(u"enabledModuleIDs"_s), std::optional(QJsonArray()));
        f.view->click(f.item(u"enabled-calendar"_s));
        QCOMPARE(f.stored<QJsonArray>(u"enabledModuleIDs"_s), QJsonArray{u"calendar"_s});
        f.pull(u"height-calendar"_s, 1);
        QCOMPARE(f.stored<QJsonObject>(u"moduleHeights"_s), (QJsonObject{{u"calendar"_s, 700}}));
        f.view->click(f.item(u"mode-notes-apple"_s));
        QCOMPARE(f.stored<QString>(u"notesMode"_s), u"apple"_s);
        f.view->click(f.item(u"mode-spotify-spotify"_s));
        QCOMPARE(f.stored<QString>(u"mediaSource"_s), u"spotify"_s);
    }

    void designsOneWindowOrAll()
    {
        Fixture f(u"Design"_s);
        QCOMPARE(f.text(u"scopeName"_s), u"Du bearbeitest: Alle Fenster"_s);
        f.view->click(f.item(u"style-frosted"_s));
        QVERIFY(f.settings.globalTheme().frosted);
        f.view->click(f.item(u"perModuleTheme"_s));
        QVERIFY(f.stored<bool>(u"perModuleTheme"_s));
        f.view->click(f.item(u"scope-notes"_s));
        QCOMPARE(f.text(u"scopeName"_s), u"Du bearbeitest: NOTES"_s);
        f.pull(u"darknessSlider"_s, 1.04);
        QCOMPARE(f.settings.theme(u"notes"_s).darkness, 0.8);
        QCOMPARE(f.settings.globalTheme().darkness, ThemeConfig().darkness);
        f.pull(u"textScaleSlider"_s, -0.04);
        QCOMPARE(f.settings.theme(u"notes"_s).textScale, 0.7);
        f.item(u"resetText"_s)->forceActiveFocus();
        f.view->press(Qt::Key_Space);
        QCOMPARE(f.settings.theme(u"notes"_s).textScale, 1.0);
        QCOMPARE(f.settings.theme(u"notes"_s).darkness, 0.8);
        f.item(u"resetTheme"_s)->forceActiveFocus();
        f.view->press(Qt::Key_Return);
        QCOMPARE(f.settings.theme(u"notes"_s), ThemeConfig());
        QVERIFY(f.settings.globalTheme().frosted);

        // The way back by the bar, and by the key also in a window that was closed.
        f.view->click(f.item(u"undoButton"_s));
        QCOMPARE(f.settings.theme(u"notes"_s).darkness, 0.8);
        QTRY_VERIFY(f.view->find(u"undoBar"_s) == nullptr);
        f.settings.setPerModuleTheme(false);
        f.settings.setPerModuleTheme(true);
        QCOMPARE(f.settings.theme(u"notes"_s).darkness, 0.8);
        f.view->press(Qt::Key_Escape);
        QVERIFY(!f.controller.window()->isVisible());
        f.controller.show();
        QVERIFY(QTest::qWaitForWindowActive(f.controller.window()));
        f.view->click(f.item(u"tab-Allgemein"_s));
        f.view->press(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(f.settings.theme(u"notes"_s).textScale, 0.7);
        QVERIFY(f.item(u"tab-Design"_s)->property("current").toBool());
    }

    void togglesOnceHoweverLongTheKeyIsHeld()
    {
        Fixture f(u"Allgemein"_s);
        f.item(u"alwaysVisible"_s)->forceActiveFocus();
        for (int i = 0; i < 4; ++i) {
            QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, i > 0);
            QCoreApplication::sendEvent(f.controller.window(), &press);
        }
        QVERIFY(f.settings.alwaysVisible());
    }

    void takesAColourFromAWindowOfItsOwn()
    {
        Fixture f(u"Design"_s);
        f.view->click(f.item(u"tint"_s));
        auto *window = f.item(u"tint"_s)->findChild<QQuickWindow *>(u"colorWindow"_s);
        QVERIFY(window != nullptr);
        QVERIFY(QTest::qWaitForWindowActive(window));
        const auto stop = [window](const QString &name) {
            auto *item = window->findChild<QQuickItem *>(name);
            item->forceActiveFocus(Qt::TabFocusReason);
            return item;
        };
        const QColor former = f.settings.globalTheme().tint.color();

        // The cards show each change at once, and have their colour again when it is cancelled.
        stop(u"hueSlider"_s);
        QTest::keyClick(window, Qt::Key_PageUp);
        const QColor turned = f.settings.globalTheme().tint.color();
        QVERIFY(std::abs(turned.hsvHue() - former.hsvHue() - 36) <= 2);
        QVERIFY(std::abs(turned.value() - former.value()) <= 2);
        QTest::keyClick(window, Qt::Key_Escape);
        QTRY_VERIFY(!window->isVisible());
        QVERIFY(f.controller.window()->isVisible());
        QCOMPARE(f.settings.globalTheme(), ThemeConfig());

        f.view->click(f.item(u"tint"_s));
        QTRY_VERIFY(window->isVisible());
        QQuickItem *number = stop(u"colorNumber"_s);
        QCOMPARE(number->property("text").toString(), former.name());
        number->setProperty("text", QString());
        for (const QChar digit : u"#0ac81e"_s)
            QTest::sendKeyEvent(QTest::Click, window, Qt::Key_unknown, QString(digit), Qt::NoModifier);
        QCOMPARE(f.settings.globalTheme().tint.color(),
                 QColor::fromRgbF(10 / 255.0F, 200 / 255.0F, 30 / 255.0F));
        QTest::keyClick(window, Qt::Key_Return);
        QTRY_VERIFY(!window->isVisible());
        QCOMPARE(f.settings.globalTheme().tint.color().green(), 200);
    }

    void storesWhatKeysAndAssistiveToolsDoToSliders_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<double>("stored");
        QTest::newRow("a step up") << int(Qt::Key_Up) << 95.0;
        QTest::newRow("a step down") << int(Qt::Key_Down) << 85.0;
        QTest::newRow("a page up") << int(Qt::Key_PageUp) << 105.0;
        QTest::newRow("a page down") << int(Qt::Key_PageDown) << 75.0;
        QTest::newRow("increased") << 0 << 95.0;
        QTest::newRow("set") << 1 << 120.0;
    }

    void storesWhatKeysAndAssistiveToolsDoToSliders()
    {
        QFETCH(int, key);
        QFETCH(double, stored);
        Fixture f(u"Allgemein"_s);
        QQuickItem *slider = f.item(u"cornerSizeSlider"_s);
        slider->forceActiveFocus(Qt::TabFocusReason);
        QAccessibleInterface *tool = QAccessible::queryAccessibleInterface(slider);
        QCOMPARE(tool->valueInterface()->minimumValue().toDouble(), 30.0);
        QCOMPARE(tool->valueInterface()->maximumValue().toDouble(), 200.0);
        if (key == 0)
            tool->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
        else if (key == 1)
            tool->valueInterface()->setCurrentValue(120.0);
        else
            f.view->press(static_cast<Qt::Key>(key));
        QCOMPARE(f.stored<double>(u"cornerSize"_s), stored);
        QCOMPARE(slider->property("value").toDouble(), stored);
    }

    void reachesEverythingWithTheTabKey()
    {
        Fixture f(u"Design"_s);
        f.controller.window()->resize(560, 420);
        QStringList reached;
        const QString firstStop = u"perModuleTheme"_s;
        f.item(firstStop)->forceActiveFocus(Qt::TabFocusReason);
        do {
            QQuickItem *focused = f.controller.window()->activeFocusItem();
            QVERIFY(focused != nullptr);
            reached.append(focused->objectName());
            QVERIFY2(!QAccessible::queryAccessibleInterface(focused)->text(QAccessible::Name).isEmpty(),
                     qPrintable(focused->objectName()));
            const QRectF place = focused->mapRectToScene(focused->boundingRect());
            QVERIFY2(place.top() >= 0 && place.bottom() <= 420, qPrintable(focused->objectName()));
            f.view->press(Qt::Key_Tab);
        } while (f.controller.window()->activeFocusItem()->objectName() != firstStop && reached.size() < 50);
        QCOMPARE(reached, (QStringList{u"perModuleTheme"_s, u"style-clear"_s, u"tint"_s,
                                       u"tintStrengthSlider"_s, u"darknessSlider"_s, u"blurSlider"_s,
                                       u"lightsEnabled"_s, u"lightColor"_s, u"lightsIntensitySlider"_s,
                                       u"textWhite"_s, u"haloStrengthSlider"_s, u"textScaleSlider"_s,
                                       u"resetText"_s, u"resetTheme"_s, u"quitButton"_s, u"tab-Design"_s}));
    }

    void choosesWithTheArrowKeys()
    {
        Fixture f(u"Allgemein"_s);
        f.item(u"triggerMode-leftEdge"_s)->forceActiveFocus(Qt::TabFocusReason);
        f.view->press(Qt::Key_Down);
        QCOMPARE(f.settings.triggerMode(), TriggerMode::both);
        f.view->press(Qt::Key_Down);
        f.view->press(Qt::Key_Up);
        f.view->press(Qt::Key_Up);
        QCOMPARE(f.settings.triggerMode(), TriggerMode::corners);
        f.view->press(Qt::Key_Backtab);
        f.view->press(Qt::Key_Right);
        QCOMPARE(f.settings.sidebarSide(), SidebarSide::right);
    }

    void storesTheClientIDAndOffersTheAccount()
    {
        Fixture without(u"Spotify"_s);
        QVERIFY(!without.item(u"connectAccount"_s)->isVisible());
        without.view->click(without.item(u"spotifyClientID"_s));
        without.view->type(u" abc1"_s);
        QCOMPARE(without.stored<QString>(u"spotifyClientID"_s), u"abc1"_s);

        FakeMedia media;
        FakeAccount &account = media.account;
        account.error = u"Keine Autorisierung erhalten."_s;
        Fixture with(u"Spotify"_s, &media);
        QCOMPARE(with.item(u"accountState"_s)->property("description").toString(), account.error);
        with.view->click(with.item(u"connectAccount"_s));
        QVERIFY(account.authorized);
        QCOMPARE(with.text(u"connectAccount"_s), u"Trennen"_s);
        with.view->click(with.item(u"connectAccount"_s));
        QVERIFY(!account.authorized);

        QVERIFY(!with.item(u"playbackProblem"_s)->isVisible());
        media.player.problem = u"Es fehlt etwas."_s;
        Q_EMIT media.player.problemChanged();
        QVERIFY(with.item(u"playbackProblem"_s)->isVisible());
        QCOMPARE(with.text(u"playbackProblem"_s), media.player.problem);
    }
};

RANDBLATT_TEST_MAIN(SettingsWindowTest, QGuiApplication)
#include "tst_settingswindow.moc"
