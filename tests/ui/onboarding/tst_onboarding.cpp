#include "settings/AppSettings.h"
#include "settings/Preferences.h"
#include "support/Fakes.h"
#include "support/TestEnvironment.h"
#include "support/ViewTest.h"
#include "ui/onboarding/OnboardingWindowController.h"

#include <QGuiApplication>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

struct Fixture
{
    Preferences preferences{Preferences::inMemory()};
    FakeLoginItem loginItem;
    AppSettings settings{preferences, loginItem};
    QQmlEngine engine;
    OnboardingWindowController controller{engine, settings};
    std::optional<ViewTest> view;

    Fixture()
    {
        prepareEngine(engine);
        controller.show();
        view.emplace(*controller.window());
    }
    void click(const QString &name) { view->click(view->find(name)); }
    [[nodiscard]] QString stored(const QString &key) const
    {
        return preferences.get<QString>(key).value_or(QString());
    }
};

} // namespace

class OnboardingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void storesEveryChoiceAtOnce()
    {
        Fixture f;
        f.settings.setMediaSource(MediaSource::spotify);
        f.click(u"mediaSource-system"_s);
        QCOMPARE(f.stored(u"mediaSource"_s), u"system"_s);
        f.click(u"todoViewMode-list"_s);
        QCOMPARE(f.stored(u"todoViewMode"_s), u"list"_s);
        f.click(u"notesMode-apple"_s);
        QCOMPARE(f.stored(u"notesMode"_s), u"apple"_s);
        QVERIFY(!f.settings.hasOnboarded());
        QVERIFY(f.controller.window()->isVisible());
    }

    void endsWithItsButton()
    {
        Fixture f;
        f.settings.setEnabled(u"calendar"_s, true);
        for (const auto &id : {u"todo"_s, u"spotify"_s, u"notes"_s})
            f.click(u"enabled-"_s + id);
        QCOMPARE(f.preferences.get<QJsonArray>(u"enabledModuleIDs"_s),
                 std::optional(QJsonArray{u"calendar"_s}));
        f.click(u"enabled-notes"_s);
        QVERIFY(f.settings.isEnabled(u"notes"_s));
        QVERIFY(f.view->find(u"enabled-notes"_s)->property("on").toBool());
        QVERIFY(!f.view->find(u"enabled-todo"_s)->property("on").toBool());
        f.click(u"finish"_s);
        QCOMPARE(f.preferences.get<bool>(u"hasOnboarded"_s), std::optional(true));
        QVERIFY(!f.controller.window()->isVisible());
    }

    void comesBackWhenItWasOnlyClosed()
    {
        Fixture f;
        f.click(u"todoViewMode-list"_s);
        f.controller.window()->close();
        QVERIFY(!f.settings.hasOnboarded());
        QCOMPARE(f.stored(u"todoViewMode"_s), u"list"_s);
        f.controller.show();
        QVERIFY(f.controller.window()->isVisible());
    }

    void worksByKeyboardAlone()
    {
        Fixture f;
        const auto press = [&f](std::initializer_list<Qt::Key> keys) {
            for (const Qt::Key key : keys)
                f.view->press(key);
        };
        press({Qt::Key_Tab, Qt::Key_Space});
        QVERIFY(!f.settings.isEnabled(u"todo"_s));
        press({Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Left});
        QCOMPARE(f.settings.todoViewMode(), TodoViewMode::list);
        press({Qt::Key_Tab, Qt::Key_Left, Qt::Key_Tab, Qt::Key_Right});
        QCOMPARE(f.settings.mediaSource(), MediaSource::spotify);
        QCOMPARE(f.settings.notesMode(), NotesMode::apple);
        press({Qt::Key_Tab, Qt::Key_Return});
        QVERIFY(f.settings.hasOnboarded());
    }
};

RANDBLATT_TEST_MAIN(OnboardingTest, QGuiApplication)
#include "tst_onboarding.moc"
