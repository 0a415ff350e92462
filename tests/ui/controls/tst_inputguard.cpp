#include "support/TestEnvironment.h"
#include "support/ViewTest.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTest>

#include <private/qinputmethod_p.h>
#include <qpa/qplatforminputcontext.h>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

/// One of each kind of control, which count what was done to them, and rows that go when they are clicked.
constexpr auto controls = R"(
    import QtQuick
    import QtQuick.Templates as T
    import Randblatt.Controls

    FocusScope {
        id: root

        property int done: 0
        property var rows: ["eins", "zwei", "drei", "vier"]
        property string removed
        readonly property CardAppearance appearance: CardAppearance {}

        Column {
            PlainButton { objectName: "plain"; text: "a"; onClicked: ++root.done }
            ProminentButton { objectName: "prominent"; text: "a"; onClicked: ++root.done }
            QuickMenuRow { objectName: "menuRow"; text: "a"; chosen: false; onClicked: ++root.done }
            RowList {
                objectName: "rowList"; appearance: root.appearance; model: 3; height: 10; delegate: Item {}
                onChosen: ++root.done
                onRemoved: ++root.done
            }
            PlainTextField {
                objectName: "field"; appearance: root.appearance; text: "         "
                onAccepted: ++root.done
                onTextEdited: ++root.done
            }
            TextEdit { objectName: "editor"; text: "         "; onTextChanged: ++root.done }
            // Gives the keyboard away while a key is pressed.
            Item {
                objectName: "passing"
                Keys.onPressed: event => {
                    ++root.done
                    root.next.forceActiveFocus()
                    event.accepted = true
                }
            }
            PlainButton { objectName: "opener"; text: "Menü"; height: 30; onClicked: menu.open() }
        }
        property Item next

        Column {
            x: 150
            Repeater {
                model: root.rows
                T.AbstractButton {
                    required property string modelData
                    objectName: "row"; width: 100; height: 30
                    onClicked: {
                        root.removed += modelData + " "
                        root.rows = root.rows.filter(row => row !== modelData)
                    }
                }
            }
        }
        PlainButton { objectName: "stepper"; x: 150; y: 250; text: "+"; width: 40; height: 30; onClicked: ++root.done }
        T.Menu {
            id: menu
            x: 0; y: 0; width: 150; height: 300
            contentItem: MouseArea { onClicked: root.removed += "menu " }
        }
    })";

/// An input method that takes a word over when it is told to, and only then.
class ComposingContext : public QPlatformInputContext
{
public:
    ComposingContext() { method()->testContext = this; }
    ~ComposingContext() override { method()->testContext = nullptr; }

    void compose(const QString &word)
    {
        m_word = word;
        QInputMethodEvent event(word, {});
        QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
    }
    void commit() override
    {
        QInputMethodEvent event;
        event.setCommitString(std::exchange(m_word, {}));
        if (QObject *focus = QGuiApplication::focusObject(); focus && !event.commitString().isEmpty())
            QCoreApplication::sendEvent(focus, &event);
    }

private:
    static QInputMethodPrivate *method() { return QInputMethodPrivate::get(QGuiApplication::inputMethod()); }

    QString m_word;
};

struct Fixture
{
    ViewTest view{QByteArray(controls), {300, 300}};

    Fixture() { view.root()->setProperty("done", 0); }

    [[nodiscard]] int done() const { return view.root()->property("done").toInt(); }
    void send(QEvent::Type type, Qt::Key key, bool isRepeated, quint64 milliseconds)
    {
        const QString text = key == Qt::Key_Space ? u" "_s : key == Qt::Key_Return ? u"\r"_s : QString();
        QKeyEvent event(type, key, Qt::NoModifier, 1, 0, 0, text, isRepeated);
        event.setTimestamp(milliseconds);
        QCoreApplication::sendEvent(&view.window(), &event);
    }
    void click(const QPoint &place, quint64 milliseconds)
    {
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            const bool isPress = type == QEvent::MouseButtonPress;
            QMouseEvent event(type, place, view.window().mapToGlobal(place), Qt::LeftButton,
                              isPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
            event.setTimestamp(milliseconds + (isPress ? 0 : 50));
            QCoreApplication::sendEvent(&view.window(), &event);
        }
    }
    /// As keyboards do it that report each repetition as a release and a press.
    void hold(Qt::Key key, int repetitions, bool isKnown = true)
    {
        send(QEvent::KeyPress, key, false, 1000);
        for (int i = 0; i < repetitions; ++i) {
            send(QEvent::KeyRelease, key, isKnown, 1500 + 30 * i);
            send(QEvent::KeyPress, key, isKnown, 1500 + 30 * i);
        }
        send(QEvent::KeyRelease, key, false, 3000);
    }
};

} // namespace

class InputGuardTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void letsAHeldKeyActOnce_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<int>("times");
        for (const char *button : {"plain", "prominent", "menuRow"}) {
            for (const auto key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter})
                QTest::addRow("%s, %d", button, key) << QString::fromLatin1(button) << key << 1;
        }
        QTest::newRow("a row, chosen") << u"rowList"_s << Qt::Key_Return << 1;
        QTest::newRow("a row, removed") << u"rowList"_s << Qt::Key_Delete << 1;
        QTest::newRow("a field, accepted") << u"field"_s << Qt::Key_Return << 1;
        QTest::newRow("spaces in a field") << u"field"_s << Qt::Key_Space << 6;
        QTest::newRow("deletions in a field") << u"field"_s << Qt::Key_Delete << 6;
        QTest::newRow("lines in an editor") << u"editor"_s << Qt::Key_Return << 6;
    }

    void letsAHeldKeyActOnce()
    {
        QFETCH(QString, name);
        QFETCH(Qt::Key, key);
        // The toolkit does not recognise every repetition.
        for (const bool isKnown : {true, false}) {
            Fixture f;
            f.view.find(name)->forceActiveFocus();
            f.view.find(name)->setProperty("cursorPosition", 0);
            f.hold(key, 5, isKnown);
            QTEST(f.done(), "times");
        }
    }

    void takesAKeyThatIsPressedAgainAndAgain()
    {
        Fixture f;
        f.view.find(u"plain"_s)->forceActiveFocus();
        for (int i = 0; i < 5; ++i) {
            f.hold(Qt::Key_Space, 0);
            f.view.press(Qt::Key_Return);
        }
        QCOMPARE(f.done(), 10);
    }

    void keepsAKeyFromWhatGetsTheKeyboardMeanwhile()
    {
        for (const auto &next : {u"plain"_s, u"rowList"_s}) {
            Fixture f;
            f.view.root()->setProperty("next", QVariant::fromValue(f.view.find(next)));
            f.view.find(u"passing"_s)->forceActiveFocus();
            f.hold(Qt::Key_Space, 3);
            QCOMPARE(f.done(), 1);
            f.hold(Qt::Key_Space, 0);
            QCOMPARE(f.done(), 2);
        }
    }

    void takesAWordInTheMakingOverBeforeItIsUsed_data()
    {
        QTest::addColumn<bool>("hides");
        QTest::newRow("a click") << false;
        QTest::newRow("the end of the window") << true;
    }

    void takesAWordInTheMakingOverBeforeItIsUsed()
    {
        QFETCH(bool, hides);
        Fixture f;
        ComposingContext context;
        QQuickItem *field = f.view.find(u"field"_s);
        field->setProperty("text", QString());
        field->forceActiveFocus();
        context.compose(u"Müll"_s);
        QCOMPARE(field->property("text").toString(), QString());
        if (hides)
            f.view.window().close();
        else
            f.view.click(f.view.find(u"plain"_s));
        QCOMPARE(field->property("text").toString(), u"Müll"_s);
    }

    void keepsASecondClickFromWhatMovedUp()
    {
        Fixture f;
        const QPoint second = ViewTest::centre(f.view.findAll(u"row"_s).at(1));
        f.click(second, 1000);
        QCOMPARE(f.view.root()->property("removed").toString(), u"zwei "_s);
        const auto rests = [&] { return f.view.findAll(u"row"_s).at(1)->y() == 30; };
        QTRY_VERIFY(rests());
        f.click(second, 1150);
        f.click(second, 1300);
        QCOMPARE(f.view.root()->property("removed").toString(), u"zwei "_s);
        f.click(second, 2000);
        QCOMPARE(f.view.root()->property("removed").toString(), u"zwei drei "_s);
        QTRY_VERIFY(rests());
        f.click(second - QPoint(0, 30), 2150);
        QCOMPARE(f.view.root()->property("removed").toString(), u"zwei drei eins "_s);
    }

    void keepsASecondClickFromAMenuThatOpenedUnderIt()
    {
        Fixture f;
        const QPoint opener = ViewTest::centre(f.view.find(u"opener"_s));
        f.click(opener, 1000);
        f.click(opener, 1150);
        QCOMPARE(f.view.root()->property("removed").toString(), QString());
        f.click(opener, 2000);
        QCOMPARE(f.view.root()->property("removed").toString(), u"menu "_s);
    }

    void leavesBothClicksToWhatStays()
    {
        Fixture f;
        const QPoint stepper = ViewTest::centre(f.view.find(u"stepper"_s));
        f.click(stepper, 1000);
        f.click(stepper, 1150);
        QCOMPARE(f.done(), 2);
    }
};

RANDBLATT_TEST_MAIN(InputGuardTest, QGuiApplication)
#include "tst_inputguard.moc"
