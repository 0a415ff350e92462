#include "support/TestEnvironment.h"
#include "support/ViewTest.h"
#include "theme/ThemeConfig.h"

#include <QGuiApplication>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

double luminance(const QColor &colour)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

double contrast(const QColor &a, const QColor &b)
{
    const auto [low, high] = std::minmax({luminance(a), luminance(b)});
    return (high + 0.05) / (low + 0.05);
}

bool hasShaderItem(const QQuickItem *item)
{
    const auto children = item->childItems();
    return item->inherits("QQuickShaderEffect") || item->inherits("QQuickShaderEffectSource") ||
           std::any_of(children.begin(), children.end(),
                       [](const QQuickItem *child) { return hasShaderItem(child); });
}

} // namespace

/// The glass on the software renderer, which draws nothing of an item with shaders.
class PlainGlassTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QQuickWindow::setSceneGraphBackend(u"software"_s); }

    void staysReadable_data()
    {
        QTest::addColumn<ThemeConfig>("config");
        QTest::addColumn<QColor>("wallpaper");
        ThemeConfig light;
        light.textWhite = false;
        light.darkness = 0;
        ThemeConfig lit;
        lit.lightsIntensity = 0.8;
        for (const auto &wallpaper : {u"white"_s, u"black"_s}) {
            QTest::addRow("default over %ls", qUtf16Printable(wallpaper))
                << ThemeConfig() << QColor(wallpaper);
            QTest::addRow("dark text over %ls", qUtf16Printable(wallpaper)) << light << QColor(wallpaper);
            QTest::addRow("lights over %ls", qUtf16Printable(wallpaper)) << lit << QColor(wallpaper);
        }
    }

    void staysReadable()
    {
        QFETCH(ThemeConfig, config);
        QFETCH(QColor, wallpaper);
        ViewTest view(R"(
            import QtQuick
            import Randblatt.Theme
            Rectangle {
                ThemedGlass {
                    objectName: "glass"
                    x: 20; y: 20; width: 200; height: 120; corner: 18
                    config.frosted: false
                    Halo {
                        anchors.fill: parent; color: "black"; strength: 1
                        Rectangle { objectName: "text"; x: 20; y: 20; width: 10; height: 10; color: "red" }
                    }
                }
            })",
                      {240, 160});
        view.root()->setProperty("color", wallpaper);
        view.find(u"glass"_s)->setProperty("config", QVariant::fromValue(config));
        QVERIFY(!hasShaderItem(view.root()));
        const QImage image = view.window().grabWindow();
        QCOMPARE(image.pixelColor(45, 45), QColor(Qt::red));
        for (const QPoint place : {QPoint(120, 30), QPoint(120, 80), QPoint(120, 130)})
            QVERIFY(contrast(image.pixelColor(place), config.textWhite ? Qt::white : Qt::black) >= 4.5);
        QCOMPARE(image.pixelColor(20, 20), wallpaper);
    }
};

RANDBLATT_TEST_MAIN(PlainGlassTest, QGuiApplication)
#include "tst_plainglass.moc"
