#include "settings/AppSettings.h"
#include "settings/ModuleRegistry.h"
#include "settings/Preferences.h"
#include "settings/StoreHealth.h"
#include "sidebar/FocusReveal.h"
#include "sidebar/PanelKeyboard.h"
#include "sidebar/SidebarModel.h"
#include "sidebar/SidebarUIState.h"
#include "support/Fakes.h"
#include "support/TestEnvironment.h"
#include "support/ViewTest.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

/// The view of the modules here: it remembers its appearance and has a field that takes typing.
ViewDescription moduleView()
{
    const QByteArray qml = R"(
        import QtQuick
        import QtQuick.Templates as T
        import Randblatt.Controls
        FocusScope {
            id: root
            required property CardAppearance appearance
            readonly property Item typingTarget: field
            PlainTextField { id: field; objectName: "field"; appearance: root.appearance; width: 200 }
            PlainButton { objectName: "button"; text: "Löschen"; y: 40 }
            T.Menu {
                id: menu
                objectName: "menu"
                contentItem: Item { objectName: "menuContent" }
            }
            Item { objectName: "menuOpener"; function open() { menu.open() } }
            Flickable {
                y: 80
                width: 200
                height: 2000
                contentHeight: pad.height
                T.TextArea { id: pad; objectName: "pad"; width: 200; height: 3000 }
            }
        })";
    return {QUrl(u"data:text/plain;base64,"_s + QString::fromLatin1(qml.toBase64())), {}};
}

/// The sidebar over the four modules, in a window of 420 × 700 points.
struct Fixture
{
    Preferences preferences{Preferences::inMemory()};
    FakeLoginItem loginItem;
    AppSettings settings{preferences, loginItem};
    ModuleRegistry registry{settings, FakeModule::all(moduleView())};
    SidebarUIState uiState;
    SidebarModel model{settings, registry};
    ViewTest view{QUrl(u"qrc:/qt/qml/Randblatt/Sidebar/SidebarView.qml"_s),
                  {{u"model"_s, QVariant::fromValue(&model)},
                   {u"settings"_s, QVariant::fromValue(&settings)},
                   {u"uiState"_s, QVariant::fromValue(&uiState)}},
                  QSize(420, 700)};
    PanelKeyboard keyboard{view.window(), uiState};

    Fixture()
    {
        if (!QTest::qWaitFor([this] { return view.findAll(u"field"_s).size() == 3; }))
            qFatal("Die Karten bleiben leer.");
    }

    [[nodiscard]] QStringList titles() const
    {
        QStringList titles;
        for (const QQuickItem *title : view.findAll(u"cardTitle"_s))
            titles.append(title->property("text").toString());
        return titles;
    }
    [[nodiscard]] QQuickItem *card(int index) const { return view.findAll(u"moduleWindow"_s).at(index); }
    QQuickItem *openQuickSettings(int index)
    {
        const QPoint place = card(index)->mapToScene(QPointF(40, 100)).toPoint();
        QTest::mouseClick(&view.window(), Qt::RightButton, {}, place);
        const auto opened = view.findAll(u"quickSettings"_s);
        return opened.isEmpty() ? nullptr : opened.last();
    }
    [[nodiscard]] QQuickItem *chip(const QString &label) const
    {
        for (QQuickItem *chip : view.findAll(u"heightChip"_s)) {
            if (chip->property("text").toString() == label)
                return chip;
        }
        return nullptr;
    }
    [[nodiscard]] QStringList checkedChips() const
    {
        QStringList checked;
        for (const QQuickItem *chip : view.findAll(u"heightChip"_s)) {
            if (chip->property("checked").toBool())
                checked.append(chip->property("text").toString());
        }
        return checked;
    }
};

} // namespace

class SidebarViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stacksTheEnabledCards()
    {
        Fixture f;
        QCOMPARE(f.titles(), (QStringList{u"SPOTIFY"_s, u"TODO"_s, u"NOTES"_s}));
        QCOMPARE(f.card(0)->mapToScene({}), QPointF(14, 36));
        QCOMPARE(f.card(0)->size(), QSizeF(392, 240));
        QCOMPARE(f.card(1)->mapToScene({}), QPointF(14, 36 + 240 + 12));

        f.settings.setModuleOrder({u"notes"_s});
        f.settings.setEnabled(u"spotify"_s, false);
        f.settings.setHeight(200, u"notes"_s);
        QTRY_COMPARE(f.titles(), (QStringList{u"NOTES"_s, u"TODO"_s}));
        QTRY_COMPARE(f.card(1)->mapToScene({}).y(), 36.0 + 200 + 12);
    }

    void showsItsEmptyState()
    {
        Fixture f;
        for (const auto &id : {u"spotify"_s, u"todo"_s, u"notes"_s})
            f.settings.setEnabled(id, false);
        QTRY_VERIFY(f.view.find(u"openSettingsButton"_s) != nullptr);
        QSignalSpy requests(f.view.root(), SIGNAL(openSettingsRequested()));
        f.view.click(f.view.find(u"openSettingsButton"_s));
        QCOMPARE(requests.count(), 1);
        f.settings.setEnabled(u"todo"_s, true);
        QTRY_COMPARE(f.titles(), QStringList{u"TODO"_s});
        QVERIFY(f.view.findAll(u"openSettingsButton"_s).isEmpty());
    }

    void opensQuickSettingsByRightClickAndHoldsThePanelOpen()
    {
        Fixture f;
        QVERIFY(f.openQuickSettings(0) != nullptr);
        QVERIFY(f.uiState.keepOpen());
        QCOMPARE(f.checkedChips(), QStringList{u"Mittel"_s});
        QTRY_VERIFY(f.chip(u"XL"_s)->mapToScene({}).y() > 0);

        f.view.click(f.chip(u"XL"_s));
        QCOMPARE(f.settings.height(u"spotify"_s), 480.0);
        QCOMPARE(f.checkedChips(), QStringList{u"XL"_s});
        QCOMPARE(f.card(0)->height(), 480.0);
        f.settings.setHeight(240.5, u"spotify"_s);
        QCOMPARE(f.checkedChips(), QStringList{u"Mittel"_s});
        f.settings.setHeight(300, u"spotify"_s);
        QCOMPARE(f.checkedChips(), QStringList());

        f.view.press(Qt::Key_Escape);
        QVERIFY(!f.uiState.keepOpen());
        QTRY_VERIFY(f.view.findAll(u"quickSettings"_s).isEmpty());
    }

    void hasOneCardsQuickSettingsOpenAtATime()
    {
        Fixture f;
        f.settings.setHeight(160, u"spotify"_s);
        f.openQuickSettings(0);
        f.openQuickSettings(1);
        QVERIFY(f.uiState.keepOpen());
        QTRY_COMPARE(f.view.findAll(u"quickSettings"_s).size(), 1);
        QCOMPARE(f.checkedChips(), QStringList{u"Groß"_s});
        f.view.click(f.view.findAll(u"closeQuickSettings"_s).first());
        QVERIFY(!f.uiState.keepOpen());
    }

    void letsThePanelGoWhenTheCardGoes()
    {
        Fixture f;
        f.openQuickSettings(0);
        QVERIFY(f.uiState.keepOpen());
        f.settings.setEnabled(u"spotify"_s, false);
        QTRY_VERIFY(!f.uiState.keepOpen());
    }

    void keepsTheQuickSettingsOfALowCardInSight()
    {
        Fixture f;
        f.settings.setHeight(60, u"spotify"_s);
        f.settings.setHeight(400, u"todo"_s);
        f.settings.setHeight(80, u"notes"_s);
        f.view.root()->setFocus(true);
        f.card(2)->forceActiveFocus();
        f.view.press(Qt::Key_Menu);
        QTRY_VERIFY(!f.view.findAll(u"quickSettings"_s).isEmpty());
        const QQuickItem *overlay = f.view.findAll(u"quickSettings"_s).first();
        QTRY_VERIFY(overlay->mapToScene({}).y() + overlay->height() <= 700);
        QVERIFY(overlay->mapToScene({}).y() >= 0);
        f.view.press(Qt::Key_Space);
        QCOMPARE(f.settings.height(u"notes"_s), 160.0);
    }

    void scalesTextWithinItsLimits_data()
    {
        QTest::addColumn<double>("textScale");
        QTest::addColumn<double>("drawn");
        QTest::newRow("larger than allowed") << 2.0 << 1.6;
        QTest::newRow("smaller than allowed") << 0.5 << 0.7;
        QTest::newRow("next to nothing") << 1.0005 << 1.0;
        QTest::newRow("within") << 1.3 << 1.3;
        QTest::newRow("no number") << qQNaN() << 1.0;
    }

    void scalesTextWithinItsLimits()
    {
        QFETCH(double, textScale);
        QFETCH(double, drawn);
        Fixture f;
        ThemeConfig theme;
        theme.textScale = textScale;
        theme.textWhite = false;
        f.settings.setGlobalTheme(theme);
        auto *appearance = f.card(0)->property("appearance").value<QObject *>();
        QCOMPARE(appearance->property("textScale").toDouble(), drawn);
        QCOMPARE(appearance->property("foreground").value<QColor>(), QColor(Qt::black));
    }

    void isDismissedByEscapeOnceNothingIsOpen()
    {
        Fixture f;
        QSignalSpy dismissals(f.view.root(), SIGNAL(dismissRequested()));
        f.openQuickSettings(0);
        // The keyboard is elsewhere than in what is open.
        f.view.findAll(u"field"_s).last()->forceActiveFocus();
        f.view.press(Qt::Key_Escape);
        QTRY_VERIFY(f.view.findAll(u"quickSettings"_s).isEmpty());
        QCOMPARE(dismissals.count(), 0);
        f.view.press(Qt::Key_Escape);
        QCOMPARE(dismissals.count(), 1);
    }

    void tellsWhatIsTyped()
    {
        Fixture f;
        QVERIFY(f.uiState.hasKeyboard());
        QSignalSpy typed(&f.uiState, &SidebarUIState::typed);
        f.view.press(Qt::Key_Shift);
        QCOMPARE(typed.count(), 0);
        f.view.press(Qt::Key_Down);
        QCOMPARE(typed.count(), 1);

        f.view.findAll(u"field"_s).first()->forceActiveFocus();
        QInputMethodEvent composing(u"ni"_s, {});
        QCoreApplication::sendEvent(f.view.window().focusObject(), &composing);
        QCOMPARE(typed.count(), 2);
        QVERIFY(f.uiState.isComposing());
        QInputMethodEvent committing;
        committing.setCommitString(u"你"_s);
        QCoreApplication::sendEvent(f.view.window().focusObject(), &committing);
        QVERIFY(!f.uiState.isComposing());
        QCOMPARE(f.view.findAll(u"field"_s).first()->property("text").toString(), u"你"_s);

        QCoreApplication::sendEvent(f.view.window().focusObject(), &composing);
        f.view.findAll(u"field"_s).last()->forceActiveFocus();
        QVERIFY(!f.uiState.isComposing());
        QWindow other;
        other.show();
        other.requestActivate();
        QTRY_VERIFY(!f.uiState.hasKeyboard());
    }

    void takesTypingThatNothingElseTakes()
    {
        Fixture f;
        f.view.type(u"Öl kaufen"_s);
        QCOMPARE(f.view.findAll(u"field"_s).first()->property("text").toString(), u"Öl kaufen"_s);
    }

    void takesTheLatestChangeBackInTheCardWithTheKeyboard()
    {
        Fixture f;
        QStringList undone;
        const auto push = [&](int card, const QString &what) {
            f.registry.enabledModules().at(card)->undoHistory()->push(what,
                                                                      [&, what] { undone.append(what); });
        };
        push(0, u"Gelöscht"_s);
        push(1, u"Umbenannt"_s);
        push(0, u"Verschoben"_s);
        QTRY_COMPARE(f.view.findAll(u"undoBar"_s).size(), 2);
        f.view.click(f.view.findAll(u"undoButton"_s).first());
        QCOMPARE(undone, QStringList{u"Verschoben"_s});
        QTRY_COMPARE(f.view.findAll(u"undoBar"_s).size(), 1);

        f.view.findAll(u"field"_s).first()->forceActiveFocus();
        f.view.press(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(undone.last(), u"Gelöscht"_s);
        push(2, u"Geleert"_s);
        f.view.press(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(undone.last(), u"Geleert"_s);
        QCOMPARE(undone.size(), 3);
    }

    void saysWhatIsNotSavedInTheCardsConcerned()
    {
        Fixture f;
        StoreHealth health;
        QSignalSpy retried(&health, &StoreHealth::retryRequested);
        const auto modules = f.registry.enabledModules();
        for (SidebarModule *module : modules)
            module->notice()->follow(health, module->id());
        modules.first()->notice()->setNamesAside(true);
        QVERIFY(f.view.findAll(u"noticeBar"_s).isEmpty());

        health.setUnsaved({{{StoreTable::preferences, u"todoItems.v1"_s}, StoreResult::full},
                           {{StoreTable::drafts, u"notes.search"_s}, StoreResult::full}},
                          StoreResult::ok);
        QTRY_COMPARE(f.view.findAll(u"noticeBar"_s).size(), 2);
        QCOMPARE(f.view.findAll(u"noticeMessage"_s).first()->property("text").toString(),
                 u"Kein Platz auf dem Datenträger: Änderungen sind noch nicht gespeichert."_s);
        f.view.click(f.view.findAll(u"noticeAction"_s).first());
        QCOMPARE(retried.count(), 1);
        health.setUnsaved({}, StoreResult::ok);
        QTRY_VERIFY(f.view.findAll(u"noticeBar"_s).isEmpty());

        QSignalSpy folders(&health, &StoreHealth::folderRequested);
        health.setAsidePath(u"/somewhere/preferences.sqlite.unlesbar-2026"_s);
        QTRY_COMPARE(f.view.findAll(u"noticeBar"_s).size(), 1);
        f.view.click(f.view.findAll(u"noticeAction"_s).first());
        QCOMPARE(folders.value(0).value(0).toString(), u"/somewhere"_s);
        connect(&health, &StoreHealth::asideDismissed, &health, [&] { health.setAsidePath({}); });
        f.view.click(f.view.findAll(u"noticeDismiss"_s).first());
        QTRY_VERIFY(f.view.findAll(u"noticeBar"_s).isEmpty());
    }

    void leavesTheUndoKeyToAFieldThatHasSomethingToUndo()
    {
        Fixture f;
        bool undone = false;
        f.registry.enabledModules().first()->undoHistory()->push(u"Gelöscht"_s, [&] { undone = true; });
        QQuickItem *field = f.view.findAll(u"field"_s).first();
        f.view.click(field);
        f.view.type(u"ab"_s);
        f.view.press(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(field->property("text").toString(), QString());
        QVERIFY(!undone);
        f.view.press(Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(undone);
    }

    void leavesTheKeyboardOnlyToATextWhenItHides_data()
    {
        QTest::addColumn<QString>("focused");
        QTest::addColumn<bool>("opensMenu");
        QTest::addColumn<QString>("focusedThen");
        QTest::newRow("a button") << u"button"_s << false << QString();
        QTest::newRow("a field") << u"field"_s << false << u"field"_s;
        QTest::newRow("a menu over a button") << u"button"_s << true << QString();
    }

    void leavesTheKeyboardOnlyToATextWhenItHides()
    {
        QFETCH(QString, focused);
        QFETCH(bool, opensMenu);
        QFETCH(QString, focusedThen);
        Fixture f;
        f.view.findAll(focused).last()->forceActiveFocus();
        if (opensMenu) {
            QMetaObject::invokeMethod(f.view.findAll(u"menuOpener"_s).last(), "open");
            QTRY_VERIFY(!f.view.findAll(u"menuContent"_s).isEmpty());
        }
        f.view.window().hide();
        f.view.window().show();
        QVERIFY(QTest::qWaitForWindowActive(&f.view.window()));
        QTRY_VERIFY(f.view.window().activeFocusItem() != nullptr);
        const QQuickItem *then = f.view.window().activeFocusItem();
        QCOMPARE(then->objectName(), focusedThen);
        QVERIFY(f.view.findAll(u"menuContent"_s).isEmpty());
        f.view.type(u"a"_s);
        QCOMPARE(f.view.findAll(u"field"_s).at(focusedThen.isEmpty() ? 0 : 2)->property("text").toString(),
                 u"a"_s);
    }

    void closesTheQuickSettingsWhenItHides()
    {
        Fixture f;
        f.openQuickSettings(0);
        f.view.window().hide();
        QVERIFY(!f.uiState.keepOpen());
    }

    void scrollsToWhatHasTheKeyboard()
    {
        Fixture f;
        const qreal before = f.card(0)->mapToScene({}).y();
        f.view.findAll(u"field"_s).last()->forceActiveFocus();
        f.view.press(Qt::Key_Right);
        QTRY_VERIFY(f.card(0)->mapToScene({}).y() < before);
        QVERIFY(f.view.findAll(u"field"_s).last()->mapToScene({}).y() < 700);
    }

    void movesNothingUnderAClick()
    {
        Fixture f;
        f.settings.setHeight(2500, u"spotify"_s);
        QTRY_COMPARE(f.card(0)->height(), 2500.0);
        QQuickItem *pad = f.view.findAll(u"pad"_s).first();
        pad->setProperty("text", u"Zeile\n"_s.repeated(100));
        const qreal before = f.card(0)->mapToScene({}).y();
        const auto *revealing = f.view.root()->findChild<QObject *>(u"revealing"_s);
        for (const QPoint place : {QPoint(40, 400), QPoint(40, 697), QPoint(40, 300)}) {
            QTest::mouseClick(&f.view.window(), Qt::LeftButton, {}, place);
            QVERIFY(pad->hasActiveFocus());
            QTRY_VERIFY(!revealing->property("running").toBool());
            QCOMPARE(f.card(0)->mapToScene({}).y(), before);
        }

        // But what is typed below the edge comes into sight.
        pad->setProperty("cursorPosition", pad->property("length"));
        f.view.type(u"a"_s);
        const auto cursor = [&] { return pad->mapRectToScene(pad->property("cursorRectangle").toRectF()); };
        QTRY_VERIFY2(cursor().bottom() < 700 && cursor().top() > 0,
                     qPrintable(QString::number(cursor().y())));
    }

    void scrollsNoFurtherThanNeeded_data()
    {
        QTest::addColumn<double>("top");
        QTest::addColumn<double>("bottom");
        QTest::addColumn<bool>("wholly");
        QTest::addColumn<double>("offset");
        // A view from 500 to 1200 on a content of 2000.
        QTest::newRow("seen") << 500.0 << 520.0 << true << 500.0;
        QTest::newRow("half seen, after a click") << 1190.0 << 1210.0 << false << 500.0;
        QTest::newRow("half seen, after a key") << 1190.0 << 1210.0 << true << 546.0;
        QTest::newRow("unseen below") << 1300.0 << 1320.0 << false << 656.0;
        QTest::newRow("unseen above") << 400.0 << 420.0 << false << 364.0;
        QTest::newRow("the first") << 10.0 << 30.0 << true << 0.0;
        QTest::newRow("the last") << 1970.0 << 1990.0 << true << 1300.0;
        QTest::newRow("nearly as long as the view") << 1300.0 << 1980.0 << true << 1300.0;
        QTest::newRow("longer than the view, half seen") << 900.0 << 1900.0 << true << 500.0;
        QTest::newRow("longer than the view, unseen") << 1250.0 << 1990.0 << true << 1214.0;
    }

    void scrollsNoFurtherThanNeeded()
    {
        QFETCH(double, top);
        QFETCH(double, bottom);
        QFETCH(bool, wholly);
        QTEST(FocusReveal::offsetFor({500, 700, 2000}, top, bottom, wholly), "offset");
    }
};

RANDBLATT_TEST_MAIN(SidebarViewTest, QApplication)
#include "tst_sidebarview.moc"
