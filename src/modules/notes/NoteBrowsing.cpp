#include "modules/notes/NoteBrowsing.h"

#include "settings/UndoHistory.h"

#include <QJsonArray>
#include <QPointer>

#include <algorithm>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

/// How many notes are listed.
constexpr int listLimit = 80;

} // namespace

NoteBrowsing::NoteBrowsing(NotesService &service, Preferences &preferences, UndoHistory &history,
                           QObject *parent)
    : QObject(parent)
    , m_service(service)
    , m_environment{service, preferences, history, [this](const NoteSummary &note) { return editOf(note); }}
    , m_newNote(service, preferences, history, nullptr)
    , m_index(preferences, u"notes.edit"_s)
{
    const QJsonArray ids = m_index.value(u"ids"_s).toArray();
    const QString open = m_index.value(u"open"_s).toString();
    for (const QJsonValue &id : ids) {
        NoteEdit *edit = editOf({id.toString(), {}});
        if (!edit->isUnsaved())
            drop(edit);
        else if (edit->note().id == open)
            m_edit = edit;
    }
    followUnsaved();
    connect(&service, &NotesService::notesChanged, this, &NoteBrowsing::followList);
    connect(&service, &NotesService::isLoadingChanged, this, &NoteBrowsing::followList);
}

void NoteBrowsing::appear()
{
    if (m_hasAppeared)
        return;
    m_hasAppeared = true;
    loadNotes();
    m_service.loadFolders();
    if (m_edit)
        m_edit->read();
}

void NoteBrowsing::loadNotes()
{
    m_service.loadNotes(listLimit);
}

void NoteBrowsing::chooseFolder(const QString &name)
{
    m_service.setCurrentFolder(name.isEmpty() ? std::nullopt : std::optional(name));
    loadNotes();
    setEdit(nullptr);
}

void NoteBrowsing::open(const NoteSummary &note)
{
    NoteEdit *edit = editOf(note);
    edit->read();
    setEdit(edit);
}

void NoteBrowsing::back()
{
    if (m_newNote.isOpen())
        m_newNote.setOpen(false);
    else
        setEdit(nullptr);
}

void NoteBrowsing::deleteOpen()
{
    if (!m_edit || m_isDeleting)
        return;
    m_isDeleting = true;
    const NoteSummary note = m_edit->note();
    m_service.locateNote(
        note.id, NotesService::TextCompletion([browsing = QPointer(this), note](const QString &folder) {
            if (browsing)
                browsing->deleteNote(note, folder);
        }));
}

void NoteBrowsing::deleteNote(const NoteSummary &note, const QString &folder)
{
    m_service.deleteNote(
        note.id, NotesService::WriteCompletion([browsing = QPointer(this), note, folder](bool success) {
            if (browsing)
                browsing->finishDeleting(success, {note, folder, {}, {}});
        }));
}

void NoteBrowsing::finishDeleting(bool success, Deleted deleted)
{
    m_isDeleting = false;
    if (!success)
        return;
    if (NoteEdit *edit = m_edits.value(deleted.note.id)) {
        if (edit->isUnsaved())
            deleted.unsaved = edit->text()->text();
        deleted.base = edit->base();
        edit->forget();
        drop(edit);
    }
    offerBack(deleted);
}

void NoteBrowsing::offerBack(const Deleted &deleted)
{
    m_environment.history.push(u"Notiz gelöscht"_s, [this, deleted] {
        const auto folder = deleted.folder.isEmpty() ? std::nullopt : std::optional(deleted.folder);
        m_service.restoreNote(
            deleted.note.id, folder,
            NotesService::WriteCompletion([browsing = QPointer(this), deleted](bool success) {
                if (browsing)
                    browsing->finishRestoring(success, deleted);
            }));
    });
}

void NoteBrowsing::finishRestoring(bool success, const Deleted &deleted)
{
    if (!success)
        offerBack(deleted);
    else if (deleted.unsaved)
        editOf(deleted.note)->bringBack(*deleted.unsaved, deleted.base);
}

NoteEdit *NoteBrowsing::editOf(const NoteSummary &note)
{
    if (NoteEdit *edit = m_edits.value(note.id))
        return edit;
    auto *edit = new NoteEdit(note, m_environment, this);
    m_edits.insert(note.id, edit);
    connect(edit, &NoteEdit::unsavedChanged, this, &NoteBrowsing::followUnsaved);
    connect(edit, &NoteEdit::settled, this, [this, edit] {
        if (edit != m_edit && !edit->isUnsaved() && !edit->isInFlight())
            drop(edit);
    });
    connect(edit, &NoteEdit::moved, this, [this, edit] {
        edit->forget();
        drop(edit);
    });
    return edit;
}

void NoteBrowsing::setEdit(NoteEdit *edit)
{
    if (m_edit == edit)
        return;
    NoteEdit *former = m_edit;
    m_edit = edit;
    store();
    Q_EMIT editChanged();
    if (former && !former->isUnsaved() && !former->isInFlight())
        drop(former);
}

void NoteBrowsing::drop(NoteEdit *edit)
{
    if (edit == m_edit) {
        m_edit = nullptr;
        store();
        Q_EMIT editChanged();
    }
    if (m_edits.take(edit->note().id) == nullptr)
        return;
    edit->disconnect(this);
    edit->deleteLater();
    followUnsaved();
}

void NoteBrowsing::followUnsaved()
{
    QStringList ids;
    for (const NoteEdit *edit : qAsConst(m_edits)) {
        if (edit->isUnsaved())
            ids.append(edit->note().id);
    }
    ids.sort();
    if (ids == m_unsavedIds)
        return;
    m_unsavedIds = ids;
    store();
    Q_EMIT unsavedChanged();
    followList();
}

void NoteBrowsing::followList()
{
    // Before the list is there, nothing is known to be missing from it.
    if (!m_hasAppeared || m_service.isLoading())
        return;
    QVariantList unlisted;
    const auto &notes = m_service.notes();
    for (const QString &id : qAsConst(m_unsavedIds)) {
        if (std::none_of(notes.cbegin(), notes.cend(),
                         [&](const NoteSummary &note) { return note.id == id; }))
            unlisted.append(QVariant::fromValue(m_edits.value(id)->note()));
    }
    if (unlisted == m_unlisted)
        return;
    m_unlisted = unlisted;
    Q_EMIT unlistedChanged();
}

void NoteBrowsing::store()
{
    if (m_unsavedIds.isEmpty()) {
        m_index.clear();
        return;
    }
    QJsonObject values{{u"ids"_s, QJsonArray::fromStringList(m_unsavedIds)}};
    if (m_edit)
        values.insert(u"open"_s, m_edit->note().id);
    m_index.setValues(values);
}

} // namespace randblatt
