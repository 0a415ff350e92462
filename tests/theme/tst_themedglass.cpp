#include "support/TestEnvironment.h"
#include "support/ViewTest.h"
#include "theme/ThemeConfig.h"

#include <QGuiApplication>
#include <QTest>

#include <atomic>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

constexpr int margin = 40;

/// A card over one wallpaper, with its top left corner at (margin, margin).
class Card
{
public:
    explicit Card(const ThemeConfig &config, const QSize &size = {200, 140})
        : m_view(R"(
            import QtQuick
            import Randblatt.Theme
            Rectangle {
                color: "black"
                ThemedGlass {
                    objectName: "glass"
                    anchors { fill: parent; margins: 40 }
                    corner: 18
                    animated: false
                    config.frosted: false
                }
            })",
                 size + QSize(2 * margin, 2 * margin))
    {
        set("config", QVariant::fromValue(config));
    }

    void set(const char *property, const QVariant &value) { glass()->setProperty(property, value); }
    [[nodiscard]] QQuickItem *glass() { return m_view.find(u"glass"_s); }
    [[nodiscard]] QQuickItem *lights() { return m_view.find(u"lights"_s); }
    [[nodiscard]] QQuickView &window() { return m_view.window(); }

    [[nodiscard]] QImage over(const QColor &wallpaper)
    {
        m_view.root()->setProperty("color", wallpaper);
        return m_view.window().grabWindow();
    }

    /// The pixel at a place of the card over black.
    [[nodiscard]] QColor light(int x, int y) { return over(Qt::black).pixelColor(margin + x, margin + y); }

    /// How much of the wallpaper the card hides at a place, 0…1.
    [[nodiscard]] double opacity(int x, int y)
    {
        const int onWhite = over(Qt::white).pixelColor(margin + x, margin + y).green();
        return 1.0 - (onWhite - light(x, y).green()) / 255.0;
    }

private:
    ViewTest m_view;
};

ThemeConfig bare()
{
    ThemeConfig config;
    config.darkness = 0;
    return config;
}

ThemeConfig lit(double intensity)
{
    ThemeConfig config = bare();
    config.lightsIntensity = intensity;
    config.lightColor = {1, 0, 0};
    config.blur = 0;
    return config;
}

bool isNear(double value, double expected, double tolerance = 0.015)
{
    const bool near = std::abs(value - expected) <= tolerance;
    if (!near)
        qWarning("%f statt %f", value, expected);
    return near;
}

} // namespace

class ThemedGlassTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void clearGlassHasNoMaterialAndALitRim()
    {
        Card card{ThemeConfig()};
        QVERIFY(isNear(card.opacity(100, 70), 0.7));
        QCOMPARE(card.light(100, 70), QColor(Qt::black));
        QVERIFY(card.light(100, 3).red() > card.light(100, 136).red() + 8);
        card.set("config", QVariant::fromValue(bare()));
        QVERIFY(isNear(card.opacity(100, 70), 0));
    }

    void frostedGlassWithoutTintAndDarkeningIsMaterialAndSheen()
    {
        ThemeConfig config = bare();
        config.frosted = true;
        Card card(config);
        const double material = card.opacity(100, 100);
        QVERIFY(material > 0.4 && material < 0.8);
        QVERIFY(isNear(card.opacity(60, 80), material));
        QVERIFY(isNear(card.opacity(100, 35), 1 - (1 - material) * (1 - 0.07)));
        const QImage before = card.over(Qt::white);
        config.tint = {1, 0, 0};
        card.set("config", QVariant::fromValue(config));
        QCOMPARE(card.over(Qt::white), before);
    }

    void stripsOfAPaneMeetWithoutASeam()
    {
        ThemeConfig config = bare();
        config.frosted = true;
        Card card(config);
        const QImage image = card.over(Qt::white);
        for (int x = margin + 3; x < margin + 197; ++x) {
            const int step =
                image.pixelColor(x, margin + 100).green() - image.pixelColor(x + 1, margin + 100).green();
            QVERIFY2(std::abs(step) <= 1, qPrintable(QString::number(x - margin)));
        }
        for (int y = margin + 3; y < margin + 137; ++y) {
            const int step =
                image.pixelColor(margin + 100, y).green() - image.pixelColor(margin + 100, y + 1).green();
            QVERIFY2(std::abs(step) <= 2, qPrintable(QString::number(y - margin)));
        }
    }

    void layersLieInTheOrderOfTheRendering()
    {
        ThemeConfig config;
        config.tint = {0, 1, 0};
        config.tintStrength = 0.5;
        config.darkness = 0.5;
        Card card(config);
        QVERIFY(isNear(card.light(100, 100).greenF(), 0.5));
        config.frosted = true;
        card.set("config", QVariant::fromValue(config));
        QVERIFY(card.light(100, 100).greenF() < 0.35);
    }

    void lightsOffLeaveTheGlowAndTheBand()
    {
        ThemeConfig config = lit(0.8);
        Card card(config);
        QVERIFY(card.light(30, 30).red() > 150);
        config.lightsEnabled = false;
        card.set("config", QVariant::fromValue(config));
        QVERIFY(card.lights() == nullptr);
        QVERIFY(card.light(30, 50).red() < 5);
        const QColor band = card.light(0, 70);
        QVERIFY(band.red() > band.green() + 40);
        QVERIFY(card.light(-3, 70).red() > 15);
    }

    void sizesTheDiscsByTheLargerSide()
    {
        // The first disc reaches to x = 240 at half height, the second, less opaque one, to 247.
        Card card(lit(0.8), {400, 100});
        QVERIFY(isNear(card.light(236, 50).redF(), 0.8));
        QVERIFY(isNear(card.light(244, 50).redF(), 0.8 * 0.85));
    }

    void driftsOnlyWhereItIsSeen()
    {
        Card card(lit(0.5));
        const auto drift = [&] { return card.lights()->property("drift").toDouble(); };
        const auto rests = [&] {
            const double before = drift();
            QTest::qWait(120);
            return drift() == before;
        };
        QCOMPARE(drift(), 0.0);
        QVERIFY(rests());
        card.set("animated", true);
        QTRY_VERIFY(drift() > 0.0005);
        card.set("animated", false);
        QVERIFY(rests());
        card.set("animated", true);
        card.set("visible", false);
        QVERIFY(rests());
        card.set("visible", true);
        QVERIFY(!rests());
        card.window().hide();
        QVERIFY(rests());

        const double reached = drift();
        ThemeConfig config = lit(0.5);
        config.lightsEnabled = false;
        card.set("config", QVariant::fromValue(config));
        config.lightsEnabled = true;
        card.set("config", QVariant::fromValue(config));
        QVERIFY(reached > 0);
        QCOMPARE(drift(), 0.0);
    }

    void anUntouchedCardRendersNoFrames()
    {
        Card card{ThemeConfig()};
        card.set("animated", true);
        QVERIFY(card.lights() == nullptr);
        static_cast<void>(card.over(Qt::gray));
        std::atomic<int> frames = 0;
        connect(
            &card.window(), &QQuickWindow::frameSwapped, &card.window(), [&] { ++frames; },
            Qt::DirectConnection);
        QTest::qWait(200);
        frames = 0;
        QTest::qWait(300);
        QCOMPARE(frames.load(), 0);
        card.window().update();
        QTRY_VERIFY(frames > 0);
    }

    void drawsNothingOfThePaneBeyondItsShape()
    {
        Card card{ThemeConfig()};
        // Only the shadow lies in the corner of the bounds, and nothing beyond its reach.
        QVERIFY(card.opacity(0, 0) < 0.2);
        QVERIFY(card.opacity(6, 6) > 0.65);
        QVERIFY(card.opacity(100, 142) > 0.1);
        QVERIFY(isNear(card.opacity(-30, 70), 0));
        QVERIFY(isNear(card.opacity(100, 140 + 30), 0));
    }

    void anOpaqueCardHidesEverythingAndCastsNoShadow()
    {
        ThemeConfig config = lit(0.8);
        config.tintStrength = 0.3;
        Card card(config);
        card.set("opaque", true);
        for (const QPoint place : {QPoint(100, 70), QPoint(100, 1), QPoint(1, 70), QPoint(8, 8)})
            QVERIFY(isNear(card.opacity(place.x(), place.y()), 1));
        for (const QPoint place : {QPoint(0, 0), QPoint(-2, 70), QPoint(100, 142)})
            QVERIFY(isNear(card.opacity(place.x(), place.y()), 0));
    }

    void limitsNumbersBeyondTheirRange()
    {
        ThemeConfig wild;
        wild.tintStrength = 7;
        wild.darkness = std::numeric_limits<double>::quiet_NaN();
        wild.blur = -3;
        wild.lightsIntensity = 4;
        ThemeConfig tame = wild;
        tame.tintStrength = 1;
        tame.darkness = 0;
        tame.blur = 0;
        tame.lightsIntensity = 1;
        Card card(wild);
        const QImage image = card.over(Qt::white);
        card.set("config", QVariant::fromValue(tame));
        QCOMPARE(image, card.over(Qt::white));
    }
};

RANDBLATT_TEST_MAIN(ThemedGlassTest, QGuiApplication)
#include "tst_themedglass.moc"
