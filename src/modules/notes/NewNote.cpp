#include "modules/notes/NewNote.h"

#include "modules/notes/NotesService.h"
#include "settings/UndoHistory.h"

#include <QPointer>

#include <algorithm>

namespace randblatt {

using namespace Qt::StringLiterals;

NewNote::NewNote(NotesService &service, Preferences &preferences, UndoHistory &history, QObject *parent)
    : QObject(parent)
    , m_service(service)
    , m_history(history)
    , m_draft(preferences, u"notes.composer"_s)
    , m_title(m_draft.value(u"title"_s).toString())
    , m_isOpen(m_draft.value(u"open"_s).toBool())
{
    m_body.load(m_draft.value(u"body"_s).toString());
    // The program ended before it heard what became of it.
    if (m_draft.value(u"creating"_s).toBool() && !isEmpty())
        m_notice = u"Diese Notiz ist vielleicht schon angelegt."_s;
    connect(&m_body, &EditedText::edited, this, [this] {
        store();
        Q_EMIT changed();
    });
}

void NewNote::create()
{
    if (!canCreate())
        return;
    m_isCreating = true;
    m_notice.clear();
    store();
    Q_EMIT changed();
    const QString title = m_title;
    const QString body = m_body.text();
    m_service.createNote(title, body,
                         NotesService::WriteCompletion([note = QPointer(this), title, body](bool success) {
                             if (note)
                                 note->finishCreating(success, title, body);
                         }));
}

void NewNote::finishCreating(bool success, const QString &title, const QString &body)
{
    m_isCreating = false;
    if (!success) {
        store();
        Q_EMIT changed();
        return;
    }
    const QString newer = EditedText::difference(body, m_body.text()).inserted;
    m_body.setCursor(newer.size());
    set(m_title == title ? QString() : m_title, newer);
    if (isEmpty())
        setOpen(false);
    else
        m_notice = u"Die Notiz ist angelegt. Hier steht, was seither getippt wurde."_s;
    Q_EMIT changed();
}

void NewNote::discard()
{
    if (isEmpty() || m_isCreating)
        return;
    const QString title = m_title;
    const QString body = m_body.text();
    m_notice.clear();
    set({}, {});
    setOpen(false);
    m_history.push(u"Entwurf verworfen"_s, [this, title, body] {
        // What was begun since comes after it.
        const QStringList bodies{body, m_body.text()};
        const QString both = bodies.join(m_body.text().isEmpty() ? u""_s : u"\n"_s);
        const QString newer = m_title.isEmpty() || title.isEmpty() ? QString() : u"\n"_s + m_title;
        set(title.isEmpty() ? m_title : title, both + newer);
        setOpen(true);
    });
}

void NewNote::setOpen(bool open)
{
    if (m_isOpen == open)
        return;
    m_isOpen = open;
    store();
    Q_EMIT changed();
}

void NewNote::setTitle(const QString &title)
{
    if (m_title == title)
        return;
    m_title = title;
    store();
    Q_EMIT changed();
}

void NewNote::set(const QString &title, const QString &body)
{
    m_title = title;
    m_body.load(body);
    store();
    Q_EMIT changed();
}

bool NewNote::canCreate() const
{
    return !m_isCreating && std::any_of(m_title.cbegin(), m_title.cend(), [](QChar character) {
        return character != u' ' && character != u'\t';
    });
}

void NewNote::store()
{
    QJsonObject values;
    if (m_isOpen)
        values.insert(u"open"_s, true);
    if (!m_title.isEmpty())
        values.insert(u"title"_s, m_title);
    if (!m_body.text().isEmpty())
        values.insert(u"body"_s, m_body.text());
    if (m_isCreating)
        values.insert(u"creating"_s, true);
    m_draft.setValues(values);
}

} // namespace randblatt
