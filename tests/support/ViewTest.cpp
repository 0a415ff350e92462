#include "support/ViewTest.h"

#include <QKeyEvent>
#include <QPointingDevice>
#include <QQmlComponent>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

void collect(QQuickItem *item, const QString &objectName, QList<QQuickItem *> &found)
{
    if (item->objectName() == objectName)
        found.append(item);
    const auto children = item->childItems();
    for (QQuickItem *child : children)
        collect(child, objectName, found);
}

} // namespace

ViewTest::ViewTest(const QUrl &source, const QVariantMap &properties, const QSize &size)
    : m_ownView(std::make_unique<QQuickView>())
    , m_view(m_ownView.get())
{
    prepareEngine(*m_view->engine());
    m_view->setInitialProperties(properties);
    m_view->setSource(source);
    show(size);
}

ViewTest::ViewTest(const QByteArray &qml, const QSize &size)
    : m_ownView(std::make_unique<QQuickView>())
    , m_view(m_ownView.get())
{
    prepareEngine(*m_view->engine());
    auto *component = new QQmlComponent(m_view->engine(), m_view);
    component->setData(qml, QUrl(u"qrc:/qt/qml/Test.qml"_s));
    m_view->setContent({}, component, component->create());
    show(size);
}

ViewTest::ViewTest(QQuickView &window)
    : m_view(&window)
{
    waitUntilActive();
}

void ViewTest::show(const QSize &size)
{
    m_view->setResizeMode(QQuickView::SizeRootObjectToView);
    m_view->resize(size);
    m_view->show();
    m_view->requestActivate();
    waitUntilActive();
}

void ViewTest::waitUntilActive()
{
    QTest::failOnWarning(QRegularExpression(u"\\.qml:"_s));
    if (m_view->status() != QQuickView::Ready) {
        const auto errors = m_view->errors();
        for (const QQmlError &error : errors)
            qWarning("%ls", qUtf16Printable(error.toString()));
        qFatal("Die Ansicht lässt sich nicht laden.");
    }
    if (!QTest::qWaitForWindowActive(m_view))
        qFatal("Das Fenster wird nicht aktiv.");
}

QQuickItem *ViewTest::find(const QString &objectName) const
{
    QList<QQuickItem *> found;
    collect(m_view->contentItem(), objectName, found);
    return found.isEmpty() ? nullptr : found.first();
}

QList<QQuickItem *> ViewTest::findAll(const QString &objectName) const
{
    QList<QQuickItem *> found;
    collect(m_view->contentItem(), objectName, found);
    found.removeIf([](const QQuickItem *item) { return !item->isVisible(); });
    std::sort(found.begin(), found.end(), [](const QQuickItem *a, const QQuickItem *b) {
        const QPointF placeA = a->mapToScene({});
        const QPointF placeB = b->mapToScene({});
        return placeA.y() != placeB.y() ? placeA.y() < placeB.y() : placeA.x() < placeB.x();
    });
    return found;
}

QPoint ViewTest::centre(const QQuickItem *item)
{
    return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
}

void ViewTest::click(const QQuickItem *item, Qt::MouseButton button)
{
    QTest::mouseClick(m_view, button, {}, centre(item));
}

void ViewTest::doubleClick(const QQuickItem *item)
{
    QTest::mouseDClick(m_view, Qt::LeftButton, {}, centre(item));
}

void ViewTest::clickAt(const QPoint &place, quint64 time)
{
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        const bool isPress = type == QEvent::MouseButtonPress;
        QMouseEvent event(type, place, m_view->mapToGlobal(place), Qt::LeftButton,
                          isPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
        event.setTimestamp(time);
        QCoreApplication::sendEvent(m_view, &event);
    }
}

void ViewTest::moveTo(const QQuickItem *item)
{
    QTest::mouseMove(m_view, centre(item));
}

void ViewTest::type(const QString &text)
{
    for (const QChar character : text)
        QTest::sendKeyEvent(QTest::Click, m_view, Qt::Key_unknown, QString(character), Qt::NoModifier);
}

void ViewTest::press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(m_view, key, modifiers);
}

void ViewTest::hold(Qt::Key key, int repeats, const QString &text)
{
    constexpr quint32 scanCode = 42;
    quint64 time = 1000;
    const auto send = [&](QEvent::Type type, bool isRepeat) {
        QKeyEvent event(type, key, Qt::NoModifier, scanCode, 0, 0, text, isRepeat);
        event.setTimestamp(time);
        QCoreApplication::sendEvent(m_view, &event);
    };
    send(QEvent::KeyPress, false);
    for (int repeat = 0; repeat < repeats; ++repeat) {
        time += repeat == 0 ? 500 : 40;
        send(QEvent::KeyRelease, repeat >= repeats / 2);
        send(QEvent::KeyPress, repeat >= repeats / 2);
    }
    time += 40;
    send(QEvent::KeyRelease, false);
}

void ViewTest::doubleTap(const QQuickItem *item)
{
    static QPointingDevice *screen = QTest::createTouchDevice();
    const QPoint place = centre(item);
    for (int tap = 0; tap < 2; ++tap) {
        QTest::touchEvent(m_view, screen).press(0, place);
        QTest::touchEvent(m_view, screen).release(0, place);
    }
}

} // namespace randblatt
