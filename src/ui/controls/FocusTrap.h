#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

/// Keeps the keyboard in what lies over the other views: from its last control the Tab key leads to its
/// first.
class FocusTrap : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickItem *scope READ scope WRITE setScope NOTIFY scopeChanged FINAL)

public:
    using QObject::QObject;

    /// Within this item the keyboard is kept while it is there. Borrowed; null keeps nothing.
    [[nodiscard]] QQuickItem *scope() const { return m_scope; }
    void setScope(QQuickItem *scope);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void scopeChanged();

private:
    void follow(QQuickWindow *window);
    [[nodiscard]] bool holds(const QQuickItem *item) const;

    QPointer<QQuickItem> m_scope;
    QPointer<QQuickWindow> m_window;
};

} // namespace randblatt
