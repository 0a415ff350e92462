#pragma once

#include "modules/notes/NewNote.h"
#include "modules/notes/NoteEdit.h"
#include "modules/notes/NotesService.h"

#include <QHash>
#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace randblatt {

/// What is open in the notes browser, and what was typed there and is not saved yet. It outlives the views,
/// and its drafts outlive the process: what was open with unsaved text is open again.
class NoteBrowsing : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The notes module has it.")
    Q_PROPERTY(randblatt::NotesService *service READ service CONSTANT FINAL)
    Q_PROPERTY(randblatt::NewNote *newNote READ newNote CONSTANT FINAL)
    Q_PROPERTY(randblatt::NoteEdit *edit READ edit NOTIFY editChanged FINAL)
    Q_PROPERTY(QStringList unsavedIds READ unsavedIds NOTIFY unsavedChanged FINAL)
    Q_PROPERTY(QVariantList unlisted READ unlisted NOTIFY unlistedChanged FINAL)

public:
    /// Everything is borrowed and must outlive the object.
    NoteBrowsing(NotesService &service, Preferences &preferences, UndoHistory &history, QObject *parent);

    /// A view is on the screen: loads what is shown, the first time.
    Q_INVOKABLE void appear();
    Q_INVOKABLE void loadNotes();
    /// Lists the notes of a folder, or of all where the name is empty.
    Q_INVOKABLE void chooseFolder(const QString &name);
    Q_INVOKABLE void open(const randblatt::NoteSummary &note);
    /// Closes the composer or the open note. What is not saved stays with them.
    Q_INVOKABLE void back();
    Q_INVOKABLE void deleteOpen();

    [[nodiscard]] NotesService *service() { return &m_service; }
    [[nodiscard]] NewNote *newNote() { return &m_newNote; }
    /// The note that is open; null while none is.
    [[nodiscard]] NoteEdit *edit() const { return m_edit; }
    /// The notes with unsaved text.
    [[nodiscard]] QStringList unsavedIds() const { return m_unsavedIds; }
    /// Those of them that are not in the list, as NoteSummary.
    [[nodiscard]] QVariantList unlisted() const { return m_unlisted; }

Q_SIGNALS:
    void editChanged();
    void unsavedChanged();
    void unlistedChanged();

private:
    /// What it takes to bring a note back.
    struct Deleted
    {
        NoteSummary note;
        QString folder;
        std::optional<QString> unsaved;
        QString base;
    };

    void deleteNote(const NoteSummary &note, const QString &folder);
    void finishDeleting(bool success, Deleted deleted);
    void offerBack(const Deleted &deleted);
    void finishRestoring(bool success, const Deleted &deleted);
    [[nodiscard]] NoteEdit *editOf(const NoteSummary &note);
    void setEdit(NoteEdit *edit);
    void drop(NoteEdit *edit);
    void followUnsaved();
    void followList();
    void store();

    NotesService &m_service;
    NoteEdit::Environment m_environment;
    NewNote m_newNote;
    /// Which notes have drafts, and which is open.
    Draft m_index;
    /// The open note's, and those with unsaved text or with something running; by id.
    QHash<QString, NoteEdit *> m_edits;
    NoteEdit *m_edit = nullptr;
    QStringList m_unsavedIds;
    QVariantList m_unlisted;
    bool m_hasAppeared = false;
    bool m_isDeleting = false;
};

} // namespace randblatt
