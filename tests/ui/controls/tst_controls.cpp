#include "support/TestEnvironment.h"
#include "support/ViewTest.h"
#include "ui/controls/SymbolProvider.h"

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
