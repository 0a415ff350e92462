#pragma once

#include "modules/notes/EditedText.h"
#include "settings/Draft.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

class NotesService;
class UndoHistory;

/// The note that is being written in the composer. It is a draft from the first key on, also while the
/// composer is closed, until it was created or discarded.
class NewNote : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The notes module has it.")
    Q_PROPERTY(bool isOpen READ isOpen WRITE setOpen NOTIFY changed FINAL)
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY changed FINAL)
    Q_PROPERTY(randblatt::EditedText *body READ body CONSTANT FINAL)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed FINAL)
    Q_PROPERTY(bool canCreate READ canCreate NOTIFY changed FINAL)
    Q_PROPERTY(QString notice READ notice NOTIFY changed FINAL)

public:
    /// Takes up the draft. Everything is borrowed and must outlive the object.
    NewNote(NotesService &service, Preferences &preferences, UndoHistory &history, QObject *parent);

    /// Creates the note, and closes the composer. What was typed since stays, and keeps it open.
    Q_INVOKABLE void create();
    /// Gives up what was typed, with a way back.
    Q_INVOKABLE void discard();

    [[nodiscard]] bool isOpen() const { return m_isOpen; }
    void setOpen(bool open);
    [[nodiscard]] QString title() const { return m_title; }
    void setTitle(const QString &title);
    [[nodiscard]] EditedText *body() { return &m_body; }
    [[nodiscard]] bool isEmpty() const { return m_title.isEmpty() && m_body.text().isEmpty(); }
    /// Blanks are no title, and one creation runs at a time.
    [[nodiscard]] bool canCreate() const;
    /// What the person has to know about the note; empty where nothing.
    [[nodiscard]] QString notice() const { return m_notice; }

Q_SIGNALS:
    void changed();

private:
    void store();
    void set(const QString &title, const QString &body);
    void finishCreating(bool success, const QString &title, const QString &body);

    NotesService &m_service;
    UndoHistory &m_history;
    Draft m_draft;
    QString m_title;
    EditedText m_body;
    QString m_notice;
    bool m_isOpen = false;
    bool m_isCreating = false;
};

} // namespace randblatt
