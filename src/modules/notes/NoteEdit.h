#pragma once

#include "modules/notes/EditedText.h"
#include "modules/notes/NoteSummary.h"
#include "settings/Draft.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <optional>

namespace randblatt {

class NotesService;
class UndoHistory;

/// A note whose text is being edited. What was typed and is not saved is a draft from the first key on.
/// Saving replaces only a text that is known; another program's is told of and kept.
class NoteEdit : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Opening a note makes it.")
    Q_PROPERTY(QString name READ name NOTIFY changed FINAL)
    Q_PROPERTY(randblatt::EditedText *text READ text CONSTANT FINAL)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY changed FINAL)
    Q_PROPERTY(bool isUnsaved READ isUnsaved NOTIFY unsavedChanged FINAL)
    Q_PROPERTY(bool isInFlight READ isInFlight NOTIFY changed FINAL)
    Q_PROPERTY(QString state READ state NOTIFY changed FINAL)
    Q_PROPERTY(QString notice READ notice NOTIFY changed FINAL)
    Q_PROPERTY(QString remedy READ remedy NOTIFY changed FINAL)

public:
    /// Gives the edit of a note, which may have been closed meanwhile.
    using Finder = std::function<NoteEdit *(const NoteSummary &)>;

    /// Where edits work; everything is borrowed and must outlive them.
    struct Environment
    {
        NotesService &service;
        Preferences &preferences;
        UndoHistory &history;
        Finder find;
    };

    /// Takes up the note's draft, if there is one.
    NoteEdit(NoteSummary note, const Environment &environment, QObject *parent);

    /// Reads the note; what was typed stays, and is compared with it.
    void read();
    /// Writes the text, if it changed. While that runs, saving again waits for it.
    Q_INVOKABLE void save();
    /// Gives up what is not saved, with a way back.
    Q_INVOKABLE void discard();
    /// Does what `remedy` says.
    Q_INVOKABLE void applyRemedy();
    /// Makes `text` the text that is not saved. The note held `base` then.
    void bringBack(const QString &text, const QString &base);
    /// Forgets the draft; the note is gone.
    void forget();

    [[nodiscard]] const NoteSummary &note() const { return m_note; }
    [[nodiscard]] QString name() const;
    [[nodiscard]] EditedText *text() { return &m_text; }
    /// As the note was read or saved last.
    [[nodiscard]] QString base() const { return m_base; }
    /// While there is nothing to show.
    [[nodiscard]] bool isLoading() const { return m_isLoading; }
    [[nodiscard]] bool isUnsaved() const { return m_isUnsaved; }
    [[nodiscard]] bool isInFlight() const { return m_isInFlight; }
    /// Whether the text is on disk, for the person who typed it.
    [[nodiscard]] QString state() const;
    /// What the person has to know about the note; empty where nothing.
    [[nodiscard]] QString notice() const;
    /// What can be done about it.
    [[nodiscard]] QString remedy() const;

Q_SIGNALS:
    void changed();
    /// Comes before the draft is stored.
    void unsavedChanged();
    /// Nothing runs any more.
    void settled();
    /// The text became another note.
    void moved();

private:
    void readBody(const std::function<void(const QString &text, bool isLoaded)> &completion);
    void takeRead(const QString &text, bool isLoaded);
    void followEdit();
    void store();
    void write(const std::optional<QString> &former, bool reverts);
    void finishWriting(bool success, const QString &written, const std::optional<QString> &former,
                       bool reverts);
    void revert(const QString &former, const QString &written);
    void setInFlight(bool inFlight);

    NoteSummary m_note;
    Environment m_environment;
    EditedText m_text;
    /// The text that is not saved, and what the note held when it was begun.
    Draft m_draft;
    Draft m_baseDraft;
    QString m_base;
    /// What reading the note gives as far as is known. None if it could not be read, or not yet.
    std::optional<QString> m_known;
    /// What the note holds instead, and was told of.
    std::optional<QString> m_other;
    /// Why the note could not be read.
    QString m_failure;
    bool m_isLoaded = false;
    bool m_isLoading = false;
    bool m_isUnsaved = false;
    bool m_isInFlight = false;
    bool m_savesAgain = false;
    /// The next saving takes one back.
    bool m_reverts = false;
    bool m_wasSaved = false;
    int m_readings = 0;
};

} // namespace randblatt
