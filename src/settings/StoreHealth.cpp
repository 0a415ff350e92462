#include "settings/StoreHealth.h"

#include <QFileInfo>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

QString reasonText(StoreResult reason)
{
    return QString::fromUtf8(describe(reason));
}

QString unsavedSentence(StoreResult reason)
{
    return reasonText(reason) + u": Änderungen sind noch nicht gespeichert."_s;
}

QString unreadSentence(StoreResult reason)
{
    return reasonText(reason) + u": Das Gespeicherte ist noch nicht gelesen."_s;
}

} // namespace

QString StoreHealth::sentence() const
{
    if (!m_unsaved.isEmpty())
        return unsavedSentence(*m_unsaved.cbegin());
    return m_unread == StoreResult::ok ? QString() : unreadSentence(m_unread);
}

QString StoreHealth::sentenceFor(const QString &moduleID) const
{
    for (auto it = m_unsaved.cbegin(); it != m_unsaved.cend(); ++it) {
        if (moduleOf(it.key()) == moduleID)
            return unsavedSentence(it.value());
    }
    return m_unread == StoreResult::ok ? QString() : unreadSentence(m_unread);
}

QString StoreHealth::asideSentence() const
{
    if (m_asidePath.isEmpty())
        return {};
    if (m_asidePath.contains(".aufgehoben-"_L1))
        return u"Gespeichertes ist durch anderes ersetzt. Der frühere Stand: „"_s +
               QFileInfo(m_asidePath).fileName() + u"“."_s;
    return u"Gespeichertes war beschädigt. Übernommen ist, was lesbar oder gesichert war. Die alte Datei: „"_s +
           QFileInfo(m_asidePath).fileName() + u"“."_s;
}

void StoreHealth::openAsideFolder()
{
    Q_EMIT folderRequested(QFileInfo(m_asidePath).absolutePath());
}

QString StoreHealth::moduleOf(const StorePlace &place)
{
    if (place.table == StoreTable::drafts)
        return place.key.section(u'.', 0, 0);
    for (const auto module : {"todo"_L1, "notes"_L1, "spotify"_L1}) {
        // Which of them is shown, and how, belongs to the settings.
        if (place.key.startsWith(module) && !place.key.endsWith("Mode"_L1))
            return module;
    }
    return {};
}

void StoreHealth::setUnsaved(const Unsaved &unsaved, StoreResult unread)
{
    if (m_unsaved == unsaved && m_unread == unread)
        return;
    m_unsaved = unsaved;
    m_unread = unread;
    Q_EMIT changed();
}

void StoreHealth::setAsidePath(const QString &path)
{
    if (m_asidePath == path)
        return;
    m_asidePath = path;
    Q_EMIT asideChanged();
}

} // namespace randblatt
