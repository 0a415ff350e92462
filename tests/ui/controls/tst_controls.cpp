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
                QuickMenuRow { objectName: "row"; text: "Liste"; symbol: "list.bullet" }
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
        }
    }
};

RANDBLATT_TEST_MAIN(ControlsTest, QGuiApplication)
#include "tst_controls.moc"
