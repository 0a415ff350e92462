#include "modules/notes/NoteEdit.h"

#include "modules/notes/NotesService.h"
#include "settings/UndoHistory.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;

NoteEdit::NoteEdit(NoteSummary note, const Environment &environment, QObject *parent)
    : QObject(parent)
    , m_note(std::move(note))
    , m_environment(environment)
    , m_draft(environment.preferences, u"notes.edit/"_s + m_note.id)
    , m_baseDraft(environment.preferences, u"notes.base/"_s + m_note.id)
{
    if (!m_draft.isEmpty()) {
        m_note.name = m_draft.value(u"name"_s).toString();
        m_base = m_baseDraft.text();
        m_text.load(m_draft.text());
        m_isUnsaved = m_text.text() != m_base;
        m_isLoaded = true;
    }
    connect(&m_text, &EditedText::edited, this, &NoteEdit::followEdit);
}

void NoteEdit::read()
{
    m_isLoading = !m_isUnsaved;
    const int reading = ++m_readings;
    readBody([this, reading](const QString &text, bool isLoaded) {
        if (reading == m_readings)
            takeRead(text, isLoaded);
    });
    Q_EMIT changed();
}

// While this object lives.
void NoteEdit::readBody(const std::function<void(const QString &, bool)> &completion)
{
    m_environment.service.loadBody(
        m_note.id,
        NotesService::BodyCompletion([edit = QPointer(this), completion](const QString &text, bool isLoaded) {
            if (edit)
                completion(EditedText::withLineFeeds(text), isLoaded);
        }));
}

void NoteEdit::takeRead(const QString &text, bool isLoaded)
{
    m_isLoading = false;
    m_isLoaded = true;
    m_failure = isLoaded ? QString() : text;
    if (!m_isUnsaved) {
        m_base = text;
        m_known = isLoaded ? std::optional(text) : std::nullopt;
        m_text.load(text);
    } else if (isLoaded && text == m_text.text()) {
        // It was written after all.
        m_base = text;
        m_known = text;
        followEdit();
    } else if (isLoaded && (text == m_base || text == m_known)) {
        m_known = text;
    } else if (isLoaded) {
        m_other = text;
    }
    Q_EMIT changed();
}

void NoteEdit::followEdit()
{
    const bool isUnsaved = m_text.text() != m_base;
    const bool turns = isUnsaved != m_isUnsaved;
    m_isUnsaved = isUnsaved;
    if (turns)
        Q_EMIT unsavedChanged();
    store();
    if (turns)
        Q_EMIT changed();
}

// The base first: without it the draft would be taken for what somebody else wrote.
void NoteEdit::store()
{
    if (!m_isUnsaved) {
        m_draft.clear();
        m_baseDraft.clear();
        return;
    }
    m_baseDraft.setText(m_base);
    m_draft.setValues({{u"id"_s, m_note.id}, {u"name"_s, name()}, {u"text"_s, m_text.text()}});
}

void NoteEdit::save()
{
    if (m_isLoading)
        return;
    if (m_isInFlight) {
        m_savesAgain = true;
        return;
    }
    if (!m_isUnsaved) {
        m_wasSaved = m_failure.isEmpty();
        Q_EMIT changed();
        return;
    }
    setInFlight(true);
    const bool reverts = std::exchange(m_reverts, false);
    readBody([this, reverts](const QString &now, bool isLoaded) {
        m_failure = isLoaded ? QString() : now;
        if (!isLoaded || now == m_known || now == m_base || now == m_other || now == m_text.text()) {
            write(isLoaded ? std::optional(now) : std::nullopt, reverts);
        } else {
            m_other = now;
            m_savesAgain = false;
            setInFlight(false);
        }
    });
}

void NoteEdit::write(const std::optional<QString> &former, bool reverts)
{
    const QString text = m_text.text();
    m_environment.service.saveBody(
        m_note.id, name(), text,
        NotesService::WriteCompletion([edit = QPointer(this), text, former, reverts](bool success) {
            if (edit)
                edit->finishWriting(success, text, former, reverts);
        }));
}

void NoteEdit::finishWriting(bool success, const QString &written, const std::optional<QString> &former,
                             bool reverts)
{
    const bool savesAgain = std::exchange(m_savesAgain, false);
    if (success) {
        const bool replacesOther = m_other.has_value();
        m_base = written;
        m_known = written;
        m_other.reset();
        m_failure.clear();
        m_wasSaved = true;
        followEdit();
        // Another application may give back another text than it was given.
        readBody([this, written](const QString &now, bool isLoaded) {
            if (isLoaded && m_base == written)
                m_known = now;
        });
        if (former && *former != written && !reverts) {
            m_environment.history.push(u"Andere Fassung ersetzt"_s,
                                       [find = m_environment.find, note = m_note, former = *former, written] {
                                           find(note)->revert(former, written);
                                       });
            // Of ordinary saving the buttons' row tells, which no bar is to push aside each time.
            if (!replacesOther)
                m_environment.history.endOffer();
        }
    }
    setInFlight(false);
    if (success && savesAgain)
        save();
}

// A way back of its own is needed only for what is not that saving's: what was typed or came since.
void NoteEdit::revert(const QString &former, const QString &written)
{
    const bool reverts = !m_isLoaded || m_base == written;
    bringBack(former, written);
    m_reverts = reverts;
    save();
}

void NoteEdit::bringBack(const QString &text, const QString &base)
{
    if (!m_isLoaded) {
        m_base = base;
        m_text.load(base);
    }
    // What was typed since stays one step back in the editor.
    if (m_isUnsaved)
        m_text.take(text);
    else
        m_text.stepBack(text);
    m_isLoaded = true;
    m_isLoading = false;
    ++m_readings;
    followEdit();
    Q_EMIT changed();
}

void NoteEdit::discard()
{
    if (!m_isUnsaved || m_isInFlight)
        return;
    const QString text = m_text.text();
    const QString base = m_base;
    m_text.take(m_other.value_or(m_base));
    m_base = m_text.text();
    m_known = m_failure.isEmpty() ? std::optional(m_base) : std::nullopt;
    m_other.reset();
    followEdit();
    Q_EMIT changed();
    m_environment.history.push(u"Änderung verworfen"_s, [find = m_environment.find, note = m_note, text,
                                                         base] { find(note)->bringBack(text, base); });
}

void NoteEdit::applyRemedy()
{
    if (m_other) {
        discard();
        return;
    }
    if (remedy().isEmpty() || m_isInFlight)
        return;
    setInFlight(true);
    m_environment.service.createNote(name(), m_text.text(),
                                     NotesService::WriteCompletion([edit = QPointer(this)](bool success) {
                                         if (!edit)
                                             return;
                                         edit->setInFlight(false);
                                         if (success)
                                             Q_EMIT edit->moved();
                                     }));
}

void NoteEdit::forget()
{
    ++m_readings;
    m_base = m_text.text();
    followEdit();
}

void NoteEdit::setInFlight(bool inFlight)
{
    m_isInFlight = inFlight;
    Q_EMIT changed();
    if (!inFlight)
        Q_EMIT settled();
}

// As the list has it: another program may have renamed the note.
QString NoteEdit::name() const
{
    const auto &notes = m_environment.service.notes();
    const auto it = std::find_if(notes.cbegin(), notes.cend(),
                                 [this](const NoteSummary &listed) { return listed.id == m_note.id; });
    return it != notes.cend() ? it->name : m_note.name;
}

QString NoteEdit::state() const
{
    if (m_isInFlight)
        return u"Wird gespeichert …"_s;
    if (m_isUnsaved)
        return u"Nicht gespeichert"_s;
    return m_wasSaved ? u"Gespeichert"_s : QString();
}

QString NoteEdit::notice() const
{
    if (m_other)
        return u"Die Notiz wurde inzwischen anderswo geändert. Speichern ersetzt die andere Fassung."_s;
    return m_isUnsaved ? m_failure : QString();
}

QString NoteEdit::remedy() const
{
    if (m_other)
        return u"Andere Fassung übernehmen"_s;
    return notice().isEmpty() ? QString() : u"Als neue Notiz"_s;
}

} // namespace randblatt
