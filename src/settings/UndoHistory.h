#pragma once

#include <QObject>
#include <QString>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <chrono>
#include <functional>
#include <vector>

namespace randblatt {

/// The ways back of one card: what was deleted or overwritten there, the latest last. The latest is offered
/// for a while, to be shown in the card; undo() works for as long as the history lives. To be used on the
/// main thread.
class UndoHistory : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Modules have it.")
    Q_PROPERTY(QString offer READ offer NOTIFY offerChanged FINAL)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY canUndoChanged FINAL)

public:
    /// Takes one change back. What changed since must not be lost by it.
    using Action = std::function<void()>;

    static constexpr std::chrono::milliseconds offerDuration{8000};

    explicit UndoHistory(QObject *parent = nullptr);

    /// Remembers how to take the latest change back, and offers it. `message` says what happened, as in
    /// "Gelöscht". The action must guard itself against what it needs being gone.
    void push(const QString &message, Action undo);
    /// Takes the latest change back; whether there was one.
    Q_INVOKABLE bool undo();
    /// Ends the offer; the change can still be taken back.
    Q_INVOKABLE void endOffer();
    /// While it is held the offer does not end by itself: somebody is about to take it.
    Q_INVOKABLE void holdOffer(bool hold);

    /// What the change that is offered did; empty while none is.
    [[nodiscard]] QString offer() const { return m_offer; }
    [[nodiscard]] bool canUndo() const { return !m_entries.empty(); }
    /// Grows from push to push over all histories, so that the latest of several is known; 0 where there is
    /// nothing to undo.
    [[nodiscard]] Q_INVOKABLE int latest() const;

Q_SIGNALS:
    void offerChanged();
    void canUndoChanged();

private:
    struct Entry
    {
        int serial;
        Action undo;
    };

    void setOffer(const QString &offer);

    std::vector<Entry> m_entries;
    QString m_offer;
    QTimer m_offerTimer;
};

} // namespace randblatt
