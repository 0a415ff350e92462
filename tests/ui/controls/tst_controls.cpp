#include "support/TestEnvironment.h"
#include "support/ViewTest.h"
#include "ui/controls/SymbolProvider.h"

#include <QClipboard>
#include <QDirIterator>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

class ControlsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void drawsEverySymbolInItsColour_data()
    {
        QTest::addColumn<QString>("name");
        QDirIterator symbols(u":/symbols"_s);
        while (symbols.hasNext()) {
            symbols.next();
            const QString name = symbols.fileInfo().completeBaseName();
            QTest::newRow(qPrintable(name)) << name;
        }
    }

    void drawsEverySymbolInItsColour()
    {
        QFETCH(QString, name);
        const QImage image = SymbolProvider::image(name, QColor(255, 0, 0), 48);
        int painted = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor pixel = image.pixelColor(x, y);
                QVERIFY(pixel.alpha() == 0 || (pixel.green() == 0 && pixel.blue() == 0));
                painted += pixel.alpha() > 127 ? 1 : 0;
            }
        }
        QVERIFY(painted > 20);
    }

    void keepsPastedTextInOneLine_data()
    {
        QTest::addColumn<QString>("pasted");
        QTest::addColumn<QString>("text");
        QTest::newRow("plain") << u"Müsli – „fein“"_s << u"Müsli – „fein“"_s;
        QTest::newRow("lines") << u"Milch\r\nBrot\n\nEier"_s << u"Milch Brot Eier"_s;
        QTest::newRow("separators") << u"a\u2028b\u2029c\u0085d"_s << u"a b c d"_s;
        QTest::newRow("tab") << u"a\tb"_s << u"a b"_s;
        QTest::newRow("control characters") << u"a\u0000b\u001b[31mc\u007f"_s << u"ab[31mc"_s;
        QTest::newRow("surrogates and joiners") << u"👩\u200d👧"_s << u"👩\u200d👧"_s;
    }

    void keepsPastedTextInOneLine()
    {
        QFETCH(QString, pasted);
        QFETCH(QString, text);
        ViewTest view(R"(
            import QtQuick
            import Randblatt.Controls
            PlainTextField { objectName: "field"; appearance: CardAppearance {} })",
                      {300, 40});
        QQuickItem *field = view.find(u"field"_s);
        field->forceActiveFocus();
        view.type(u"xy"_s);
        view.press(Qt::Key_Left);
        QGuiApplication::clipboard()->setText(pasted);
        view.press(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(field->property("text").toString(), u'x' + text + u'y');
        QCOMPARE(field->property("cursorPosition").toInt(), 1 + text.size());
    }

    void pressesButtonsByMouseAndKeyboard()
    {
        ViewTest view(R"(
            import QtQuick
            import Randblatt.Controls
            Column {
                PlainButton { objectName: "plain"; text: "Löschen"; symbol: "trash" }
                ProminentButton { objectName: "prominent"; text: "Zugriff anfragen" }
                QuickMenuRow { objectName: "row"; text: "Liste"; symbol: "list.bullet"; chosen: false }
            })",
                      {300, 200});
        for (const auto &name : {u"plain"_s, u"prominent"_s, u"row"_s}) {
            QQuickItem *button = view.find(name);
            QSignalSpy clicks(button, SIGNAL(clicked()));
            view.click(button);
            QCOMPARE(clicks.count(), 1);
            view.press(Qt::Key_Tab);
            QVERIFY2(button->hasActiveFocus(), qPrintable(name));
            view.press(Qt::Key_Space);
            view.press(Qt::Key_Return);
            QCOMPARE(clicks.count(), 3);
            view.hold(Qt::Key_Space);
            view.hold(Qt::Key_Return);
            QCOMPARE(clicks.count(), 5);
        }
    }

    void repeatsOnlyWhatEditsText_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("text");
        const QString lines = u"TextEdit"_s;
        const QString line = u"TextInput"_s;
        QTest::newRow("letter") << line << int(Qt::Key_A) << u"a"_s << u"aaaaaaxyz"_s;
        QTest::newRow("blank") << line << int(Qt::Key_Space) << u" "_s << u"      xyz"_s;
        QTest::newRow("deletion") << line << int(Qt::Key_Delete) << u""_s << u""_s;
        QTest::newRow("end of input") << line << int(Qt::Key_Return) << u"\r"_s << u"!xyz"_s;
        QTest::newRow("line ends") << lines << int(Qt::Key_Return) << u"\r"_s << u"\n\n\n\n\n\nxyz"_s;
        QTest::newRow("giving up") << lines << int(Qt::Key_Escape) << u""_s << u"?xyz"_s;
    }

    void repeatsOnlyWhatEditsText()
    {
        QFETCH(QString, type);
        QFETCH(int, key);
        QFETCH(QString, typed);
        QFETCH(QString, text);
        const QByteArray accepted = type == "TextInput"_L1 ? "onAccepted: insert(0, '!')" : "";
        ViewTest view("import QtQuick\n" + type.toLatin1() + R"( {
                objectName: "field"; text: "xyz"; Component.onCompleted: cursorPosition = 0
                Keys.onEscapePressed: insert(0, "?")
                )" + accepted +
                          '}',
                      {300, 200});
        QQuickItem *field = view.find(u"field"_s);
        field->forceActiveFocus();
        view.hold(Qt::Key(key), 5, typed);
        QCOMPARE(field->property("text").toString(), text);
    }

    void releasesAKeyOnlyWhereItWasPressed()
    {
        ViewTest view(R"(
            import QtQuick
            import Randblatt.Controls
            Column {
                Item { objectName: "opener"; Keys.onPressed: next.forceActiveFocus() }
                PlainButton { id: next; objectName: "next"; text: "Weiter" }
            })",
                      {300, 200});
        view.find(u"opener"_s)->forceActiveFocus();
        QQuickItem *next = view.find(u"next"_s);
        QSignalSpy clicks(next, SIGNAL(clicked()));
        view.hold(Qt::Key_Space);
        QVERIFY(next->hasActiveFocus());
        QCOMPARE(clicks.count(), 0);
        view.press(Qt::Key_Space);
        QCOMPARE(clicks.count(), 1);
    }

    void leavesWhatMovesUnderThePointerAlone_data()
    {
        QTest::addColumn<bool>("takesQuickClicks");
        QTest::addColumn<bool>("byFinger");
        QTest::addColumn<QStringList>("left");
        QTest::newRow("double click") << false << false << QStringList({u"b"_s, u"c"_s});
        QTest::newRow("double tap") << false << true << QStringList({u"b"_s, u"c"_s});
        QTest::newRow("meant for it") << true << false << QStringList(u"c"_s);
    }

    void leavesWhatMovesUnderThePointerAlone()
    {
        QFETCH(bool, takesQuickClicks);
        QFETCH(bool, byFinger);
        QFETCH(QStringList, left);
        ViewTest view(R"(
            import QtQuick
            import Randblatt.Controls
            ListView {
                id: list
                property bool takesQuickClicks
                model: ListModel {
                    ListElement { name: "a" }
                    ListElement { name: "b" }
                    ListElement { name: "c" }
                }
                delegate: PlainButton {
                    required property int index
                    required property string name
                    objectName: "button"
                    text: name
                    onClicked: {
                        list.model.remove(index)
                        list.forceLayout()
                    }
                }
            })",
                      {300, 200});
        view.root()->setProperty("takesQuickClicks", takesQuickClicks);
        const auto buttons = [&] {
            QStringList texts;
            for (const QQuickItem *button : view.findAll(u"button"_s))
                texts.append(button->property("text").toString());
            return texts;
        };
        QTRY_COMPARE(buttons().size(), 3);
        if (byFinger)
            view.doubleTap(view.findAll(u"button"_s).first());
        else
            view.doubleClick(view.findAll(u"button"_s).first());
        QCOMPARE(buttons(), left);
        if (byFinger)
            return;
        // Clicks that are no double click, or not at the same place, are as good as any.
        view.click(view.findAll(u"button"_s).first());
        QCOMPARE(buttons(), left.mid(1));
    }

    void takesQuickClicksAtSeveralPlaces()
    {
        ViewTest view(R"(
            import QtQuick
            import Randblatt.Controls
            Column {
                PlainButton { objectName: "upper"; text: "Oben" }
                PlainButton { objectName: "lower"; text: "Unten" }
            })",
                      {300, 200});
        for (const auto &name : {u"upper"_s, u"lower"_s}) {
            QQuickItem *button = view.find(name);
            QSignalSpy clicks(button, SIGNAL(clicked()));
            view.doubleClick(button);
            QCOMPARE(clicks.count(), 2);
        }
    }
};

RANDBLATT_TEST_MAIN(ControlsTest, QGuiApplication)
#include "tst_controls.moc"
