#include "settings/CardNotice.h"

#include "settings/StoreHealth.h"

namespace randblatt {

using namespace Qt::StringLiterals;

CardNotice::CardNotice(QObject *parent)
    : QObject(parent)
{
}

void CardNotice::follow(StoreHealth &health, const QString &moduleID)
{
    m_health = &health;
    m_moduleID = moduleID;
    connect(&health, &StoreHealth::changed, this, &CardNotice::update);
    connect(&health, &StoreHealth::asideChanged, this, &CardNotice::update);
    update();
}

void CardNotice::setNamesAside(bool names)
{
    m_namesAside = names;
    update();
}

QString CardNotice::action() const
{
    return m_isAside ? u"Ordner öffnen"_s : u"Erneut versuchen"_s;
}

void CardNotice::act()
{
    if (!m_health)
        return;
    if (m_isAside)
        m_health->openAsideFolder();
    else
        m_health->retry();
}

void CardNotice::dismiss()
{
    if (m_health && m_isAside)
        m_health->dismissAside();
}

void CardNotice::update()
{
    QString text = m_health ? m_health->sentenceFor(m_moduleID) : QString();
    const bool isAside = text.isEmpty() && m_namesAside && m_health && !m_health->asidePath().isEmpty();
    if (isAside)
        text = m_health->asideSentence();
    if (m_text == text && m_isAside == isAside)
        return;
    m_text = text;
    m_isAside = isAside;
    Q_EMIT changed();
}

} // namespace randblatt
