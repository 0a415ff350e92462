#pragma once

#include <QObject>
#include <QPointF>
#include <QTimer>

#include <optional>

class QWindow;

namespace randblatt {

/// Where the pointer is, as far as the windows that it enters tell: on a desktop that keeps it to itself
/// everywhere else.
class PointerTracker : public QObject
{
    Q_OBJECT

public:
    explicit PointerTracker(QObject *parent = nullptr);

    /// Follows the pointer over a window, until forget() or the window's end.
    void follow(QWindow &window);
    /// The window is gone from the screen, without the pointer having left it.
    void forget(const QWindow &window);

    /// The window that the pointer is over; null while it is elsewhere. Only to be compared.
    [[nodiscard]] const QWindow *window() const { return m_window; }
    /// In points from that window's upper left corner; beyond it while a button that was pressed there is
    /// held.
    [[nodiscard]] QPointF position() const { return m_position; }

    /// Whether a button that was pressed over one of the windows is held.
    [[nodiscard]] bool isButtonHeld() const { return m_isButtonHeld; }
    /// Whether the pointer came to the window with something that may be dropped.
    [[nodiscard]] bool isDragging() const { return m_isDragging && m_window != nullptr; }

Q_SIGNALS:
    /// The pointer moved, came or left.
    void moved();

private:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void enter(const QWindow &window, const QPointF &position);
    void leave();

    const QWindow *m_window = nullptr;
    QPointF m_position;
    bool m_isButtonHeld = false;
    bool m_isDragging = false;
    QTimer m_leaving;
};

} // namespace randblatt
