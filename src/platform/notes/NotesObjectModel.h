#pragma once

#include "platform/notes/AppleScriptSyntax.h"
#include "platform/notes/AppleScriptValue.h"

#include <QString>

#include <optional>
#include <vector>

namespace randblatt {

class NotesLibrary;

/// A library whose errors are those of the script that asks it. There is no other way to it.
class ScriptedLibrary
{
public:
    /// `library` is borrowed.
    explicit ScriptedLibrary(NotesLibrary &library)
        : m_library(library)
    {
    }

    /// What `question` makes of the library. Throws AppleScriptError.
    template <typename Question>
    auto ask(Question question) const;

private:
    NotesLibrary &m_library;
};

/// The notes application as scripts see it: one account with folders, each with notes. Throws
/// AppleScriptError for what an object does not have, can't do, or could not do on the disk.
class NotesObjectModel
{
public:
    using Object = AppleScriptObject;
    using ElementClass = applescript::ElementClass;

    /// `library` is borrowed.
    explicit NotesObjectModel(NotesLibrary &library);

    /// The application of this name. At its first use it takes in what changed on the disk.
    [[nodiscard]] Object application(const QString &name);

    /// All elements of a class, in the application's order.
    [[nodiscard]] std::vector<Object> elements(const Object &container, ElementClass elementClass) const;
    /// The element of a name, looked for by exact spelling first and then without regard to case.
    [[nodiscard]] Object named(const Object &container, ElementClass elementClass, const QString &name) const;
    [[nodiscard]] Object identified(const Object &container, ElementClass elementClass,
                                    const QString &id) const;
    [[nodiscard]] bool exists(const Object &object) const;

    [[nodiscard]] AppleScriptValue property(const Object &object, const QString &name) const;
    void setProperty(const Object &object, const QString &name, const AppleScriptValue &value);

    /// Makes an object in `container` or, where that is the application or the account, in the default place.
    Object make(const Object &container, ElementClass elementClass,
                const AppleScriptValue::Fields &properties);
    void remove(const Object &object);
    /// Moves a note into a folder. That is the way back for a deleted one, of which nothing else is left here
    /// than that its id leads to it.
    void move(const Object &object, const Object &folder);

private:
    Object makeNote(const Object &container, const AppleScriptValue::Fields &properties);
    Object makeFolder(const AppleScriptValue::Fields &properties);
    [[nodiscard]] AppleScriptValue noteProperty(const QString &id, const QString &name) const;

    ScriptedLibrary m_library;
    bool m_isFresh = false;
};

} // namespace randblatt
