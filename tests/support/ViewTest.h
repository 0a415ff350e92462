#pragma once

#include "ui/controls/EngineSetup.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QVariantMap>

#include <memory>

namespace randblatt {

/// A window that shows one view, for tests with real events.
class ViewTest
{
public:
    /// Loads the document at `source`, as `qrc:/qt/qml/Randblatt/Todo/TodoRow.qml`, shows it in a window of
    /// `size` points and waits until the window is active. Fails the test program if it cannot be loaded.
    ViewTest(const QUrl &source, const QVariantMap &properties, const QSize &size);
    /// The same for QML text, with the application's modules to import.
    ViewTest(const QByteArray &qml, const QSize &size);
    /// Takes a window that is there already; it is borrowed and must outlive the object.
    explicit ViewTest(QQuickView &window);

    [[nodiscard]] QQuickView &window() { return *m_view; }
    [[nodiscard]] QQuickItem *root() const { return m_view->rootObject(); }
    /// The first item named `objectName` in the window, depth first; null if there is none.
    [[nodiscard]] QQuickItem *find(const QString &objectName) const;
    /// All visible items named `objectName`, in the order of their places: top to bottom, left to right.
    [[nodiscard]] QList<QQuickItem *> findAll(const QString &objectName) const;
    /// The centre of an item in window coordinates.
    [[nodiscard]] static QPoint centre(const QQuickItem *item);
    void click(const QQuickItem *item, Qt::MouseButton button = Qt::LeftButton);
    void doubleClick(const QQuickItem *item);
    /// A click at a place of the window and a time in milliseconds: two at one place may be a double click.
    void clickAt(const QPoint &place, quint64 time);
    void moveTo(const QQuickItem *item);
    /// Types text on the keyboard, one key after another.
    void type(const QString &text);
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Holds a key down until it has repeated so often. X11 tells repeats as releases and presses, and the
    /// toolkit knows only some of them for what they are: here the last half.
    void hold(Qt::Key key, int repeats = 5, const QString &text = {});
    /// Taps twice with a finger, as quickly as can be.
    void doubleTap(const QQuickItem *item);

private:
    void show(const QSize &size);
    void waitUntilActive();

    std::unique_ptr<QQuickView> m_ownView;
    QQuickView *m_view;
};

} // namespace randblatt
