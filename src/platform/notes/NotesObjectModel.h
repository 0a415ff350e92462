#pragma once

#include "platform/notes/AppleScriptValue.h"

#include <QString>

#include <optional>
#include <vector>

namespace randblatt {

class NotesLibrary;

/// The notes application as scripts see it: one account with folders, each with notes. Throws
/// AppleScriptError for what an object does not have, can't do, or could not do on the disk.
class NotesObjectModel
{
public:
    using Object = AppleScriptObject;

    /// `library` is borrowed.
    explicit NotesObjectModel(NotesLibrary &library);

    /// The application of this name. At its first use it takes in what changed on the disk.
    [[nodiscard]] Object application(const QString &name);

    /// All folders or notes of an object, in the application's order.
    [[nodiscard]] std::vector<Object> elements(const Object &owner, Object::Kind kind) const;
    /// The account of a number, from 1.
    [[nodiscard]] Object account(const Object &owner, qint64 number) const;
    /// The folder of a name, looked for by exact spelling first and then without regard to case.
    [[nodiscard]] Object folder(const Object &owner, const QString &name) const;
    /// The note of an id, also a deleted one.
    [[nodiscard]] Object note(const Object &owner, const QString &id) const;

    [[nodiscard]] AppleScriptValue property(const Object &object, const QString &name) const;
    void setProperty(const Object &object, const QString &name, const QString &value);

    /// Makes a note in the default folder of the application or the account.
    void makeNote(const Object &owner, const std::optional<QString> &name, const QString &body);
    void remove(const Object &object);
    /// Moves a note into a folder. That is the way back for a deleted one, of which nothing else is left here
    /// than that its id leads to it.
    void move(const Object &object, const Object &folder);

private:
    /// What `question` makes of the library, whose errors become those of the script.
    template <typename Question>
    auto ask(Question question) const;

    NotesLibrary &m_library;
    bool m_isFresh = false;
};

} // namespace randblatt
