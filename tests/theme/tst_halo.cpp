#include "support/TestEnvironment.h"
#include "support/ViewTest.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QSGRenderNode>
#include <QTest>

#include <atomic>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

std::atomic<int> timesDrawn = 0;

class CountingNode : public QSGRenderNode
{
public:
    void render(const RenderState *state) override
    {
        Q_UNUSED(state)
        ++timesDrawn;
    }
    [[nodiscard]] RenderingFlags flags() const override { return BoundedRectRendering; }
    [[nodiscard]] QRectF rect() const override { return {0, 0, 10, 10}; }
};

/// Counts how often it is drawn: on the window, and into the textures of others.
class CountingItem : public QQuickItem
{
    Q_OBJECT

public:
    CountingItem() { setFlag(ItemHasContents); }

protected:
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) override
    {
        Q_UNUSED(data)
        QSGNode *node = old != nullptr ? old : new CountingNode;
        node->markDirty(QSGNode::DirtyMaterial);
        return node;
    }
};

} // namespace

class HaloTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qmlRegisterType<CountingItem>("Counting", 1, 0, "CountingItem"); }

    void glowsAroundTheContentAsStronglyAsAsked()
    {
        ViewTest view(R"(
            import QtQuick
            import Randblatt.Theme
            Rectangle {
                color: "white"
                Halo {
                    objectName: "halo-under-test"
                    x: 40; y: 40; width: 100; height: 60
                    color: "black"
                    strength: 0
                    Rectangle { x: 20; width: 60; height: 60; color: "#ff0000" }
                }
            })",
                      {180, 140});
        QQuickItem *halo = view.find(u"halo-under-test"_s);
        const auto shade = [&](int x, int y) {
            return 1 - view.window().grabWindow().pixelColor(x, y).greenF();
        };
        QVERIFY(view.find(u"halo"_s)->property("item").value<QObject *>() == nullptr);
        QCOMPARE(shade(58, 70), 0.0);
        halo->setProperty("strength", 1.0);
        const double strong = shade(58, 70);
        QVERIFY(strong > 0.2);
        QVERIFY(shade(56, 70) > 0.03);
        // Above the item's own edge too, but not beyond the reach.
        QVERIFY(shade(90, 38) > 0.2);
        QVERIFY(shade(90, 26) < 0.01);
        QVERIFY(shade(40, 70) < 0.01);
        QCOMPARE(view.window().grabWindow().pixelColor(60, 70), QColor(Qt::red));
        halo->setProperty("strength", 0.3);
        QVERIFY(shade(58, 70) < strong - 0.1);
        halo->setProperty("strength", 0.0);
        QCOMPARE(shade(58, 70), 0.0);
        QVERIFY(view.find(u"halo"_s)->property("item").value<QObject *>() == nullptr);
    }

    void followsTheContentAndNothingElse()
    {
        ViewTest view(R"(
            import QtQuick
            import Counting
            import Randblatt.Theme
            Item {
                ThemedGlass {
                    anchors { fill: parent; margins: 30 }
                    corner: 18
                    config.lightsIntensity: 0.5
                    Halo {
                        anchors.fill: parent
                        color: "black"
                        strength: 0.3
                        CountingItem { objectName: "counting"; width: 10; height: 10 }
                    }
                }
            })",
                      {200, 160});
        // Any frame draws the content once on the window; more often means that the halo was made anew.
        std::atomic<int> frames = 0;
        std::atomic<int> framesWithTheHalo = 0;
        connect(
            &view.window(), &QQuickWindow::beforeRendering, &view.window(), [] { timesDrawn = 0; },
            Qt::DirectConnection);
        connect(
            &view.window(), &QQuickWindow::afterRendering, &view.window(),
            [&] {
                ++frames;
                framesWithTheHalo += timesDrawn > 1 ? 1 : 0;
            },
            Qt::DirectConnection);
        QTRY_VERIFY(frames > 3);
        framesWithTheHalo = 0;
        frames = 0;
        QTRY_VERIFY(frames > 10);
        QCOMPARE(framesWithTheHalo.load(), 0);
        view.find(u"counting"_s)->update();
        QTRY_VERIFY(framesWithTheHalo > 0);
    }
};

RANDBLATT_TEST_MAIN(HaloTest, QGuiApplication)
#include "tst_halo.moc"
