#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickWindow>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

/// Catches the key for undoing in a window, for what no text field undoes. The field that has the keyboard
/// comes first, as long as it has something to undo; fields keep the key for themselves even where they have
/// not, so that no key handler of a view would hear of it.
class UndoKey : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickWindow *window READ window WRITE setWindow NOTIFY windowChanged FINAL)

public:
    using QObject::QObject;

    /// Borrowed; null catches nothing.
    [[nodiscard]] QQuickWindow *window() const { return m_window; }
    void setWindow(QQuickWindow *window);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void windowChanged();
    void pressed();

private:
    QPointer<QQuickWindow> m_window;
};

} // namespace randblatt
