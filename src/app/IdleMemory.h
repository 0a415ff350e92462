#pragma once

#include <QObject>
#include <QTimer>

namespace randblatt {

/// Gives the system back what the program has freed, some time after a window has gone, or when asked for.
/// The allocator would keep it, for each window's render thread apart, as long as the program runs.
class IdleMemory : public QObject
{
    Q_OBJECT

public:
    explicit IdleMemory(QObject *parent = nullptr);

    /// Does so once everything that begins now has settled.
    void returnLater() { m_settled.start(); }

private:
    bool eventFilter(QObject *watched, QEvent *event) override;

    QTimer m_settled;
};

} // namespace randblatt
