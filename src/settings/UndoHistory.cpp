#include "settings/UndoHistory.h"

#include <utility>

namespace randblatt {

UndoHistory::UndoHistory(QObject *parent)
    : QObject(parent)
{
    m_offerTimer.setSingleShot(true);
    m_offerTimer.setInterval(offerDuration);
    connect(&m_offerTimer, &QTimer::timeout, this, &UndoHistory::endOffer);
}

void UndoHistory::push(const QString &message, Action undo)
{
    static int lastSerial = 0;
    m_entries.push_back({++lastSerial, std::move(undo)});
    setOffer(message);
    m_offerTimer.start();
    if (m_entries.size() == 1)
        Q_EMIT canUndoChanged();
}

bool UndoHistory::undo()
{
    if (m_entries.empty())
        return false;
    const Entry entry = std::move(m_entries.back());
    m_entries.pop_back();
    // Before the action, which may push.
    endOffer();
    if (m_entries.empty())
        Q_EMIT canUndoChanged();
    entry.undo();
    return true;
}

void UndoHistory::endOffer()
{
    m_offerTimer.stop();
    setOffer({});
}

void UndoHistory::holdOffer(bool hold)
{
    if (m_offer.isEmpty())
        return;
    if (hold)
        m_offerTimer.stop();
    else
        m_offerTimer.start();
}

int UndoHistory::latest() const
{
    return m_entries.empty() ? 0 : m_entries.back().serial;
}

void UndoHistory::setOffer(const QString &offer)
{
    if (m_offer == offer)
        return;
    m_offer = offer;
    Q_EMIT offerChanged();
}

} // namespace randblatt
