#include "platform/notes/NotesObjectModel.h"

#include "platform/notes/AppleScriptError.h"
#include "platform/notes/NotesLibrary.h"
#include "platform/notes/NotesLibraryError.h"

#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

using Object = AppleScriptObject;
using Kind = AppleScriptObject::Kind;

[[noreturn]] void fail(int number, const QString &message)
{
    throw AppleScriptError{message, number};
}

/// Whether an object has all folders and all notes.
bool isWhole(const Object &object)
{
    return object.kind == Kind::application || object.kind == Kind::account;
}

void requireWhole(const Object &object, const QString &what)
{
    if (!isWhole(object))
        fail(applescripterror::noSuchObject, u"%1 hat %2."_s.arg(germanName(object.kind), what));
}

} // namespace

template <typename Question>
auto NotesObjectModel::ask(Question question) const
{
    try {
        return question(m_library);
    } catch (const NotesLibraryError &error) {
        const bool isMissing = error.reason == NotesLibraryError::Reason::noSuchObject;
        fail(isMissing ? applescripterror::noSuchObject : applescripterror::handlerFailed, error.message);
    }
}

NotesObjectModel::NotesObjectModel(NotesLibrary &library)
    : m_library(library)
{
}

Object NotesObjectModel::application(const QString &name)
{
    if (name.compare("Notes"_L1, Qt::CaseInsensitive) != 0)
        fail(applescripterror::noSuchObject, u"Das Programm „%1“ ist nicht vorhanden."_s.arg(name));
    if (!m_isFresh)
        ask([](NotesLibrary &library) { library.refresh(); });
    m_isFresh = true;
    return {Kind::application, u"Notes"_s};
}

std::vector<Object> NotesObjectModel::elements(const Object &owner, Kind kind) const
{
    std::vector<Object> result;
    if (kind == Kind::folder) {
        requireWhole(owner, u"keine Ordner"_s);
        const QStringList folders = ask([](NotesLibrary &library) { return library.folders(); });
        for (const QString &folder : folders)
            result.push_back({Kind::folder, folder});
        return result;
    }
    if (owner.kind == Kind::note)
        fail(applescripterror::noSuchObject, u"Eine Notiz hat keine Notizen."_s);
    auto ids = ask([&](NotesLibrary &library) {
        return library.notes(isWhole(owner) ? std::nullopt : std::optional(owner.key));
    });
    result.reserve(ids.size());
    for (QString &id : ids)
        result.push_back({Kind::note, std::move(id)});
    return result;
}

Object NotesObjectModel::account(const Object &owner, qint64 number) const
{
    if (owner.kind != Kind::application || number != 1)
        fail(applescripterror::invalidIndex,
             u"Ein Account mit der Nummer %1 ist nicht vorhanden."_s.arg(number));
    return {Kind::account, u"Auf diesem Computer"_s};
}

Object NotesObjectModel::folder(const Object &owner, const QString &name) const
{
    const std::vector<Object> folders = elements(owner, Kind::folder);
    for (const auto sensitivity : {Qt::CaseSensitive, Qt::CaseInsensitive}) {
        for (const Object &candidate : folders) {
            if (candidate.key.compare(name, sensitivity) == 0)
                return candidate;
        }
    }
    fail(applescripterror::noSuchObject, u"Ein Ordner dieses Namens ist nicht vorhanden: „%1“"_s.arg(name));
}

Object NotesObjectModel::note(const Object &owner, const QString &id) const
{
    requireWhole(owner, u"keine Notizen mit Kennung"_s);
    ask([&](NotesLibrary &library) {
        if (!library.isDeleted(id))
            (void)library.folderOf(id);
    });
    return {Kind::note, id};
}

AppleScriptValue NotesObjectModel::property(const Object &object, const QString &name) const
{
    const bool isNote = object.kind == Kind::note;
    if (name == "id"_L1 || (name == "name"_L1 && !isNote))
        return AppleScriptValue(object.key);
    if (name == "default folder"_L1 && object.kind == Kind::account)
        return AppleScriptValue(Object{Kind::folder, NotesLibrary::defaultFolder()});
    if (name == "name"_L1)
        return AppleScriptValue(ask([&](NotesLibrary &library) { return library.name(object.key); }));
    if (name == "body"_L1 && isNote)
        return AppleScriptValue(ask([&](NotesLibrary &library) { return library.body(object.key); }));
    if (name == "container"_L1 && isNote)
        return AppleScriptValue(
            Object{Kind::folder, ask([&](NotesLibrary &library) { return library.folderOf(object.key); })});
    fail(applescripterror::noSuchObject,
         u"Diese Eigenschaft hat %1 nicht: %2"_s.arg(germanName(object.kind), name));
}

void NotesObjectModel::setProperty(const Object &object, const QString &name, const QString &value)
{
    if (object.kind != Kind::note || name != "body"_L1)
        fail(applescripterror::cannotSet, u"Diese Eigenschaft kann nicht gesetzt werden: %1"_s.arg(name));
    ask([&](NotesLibrary &library) { library.setBody(object.key, value); });
}

void NotesObjectModel::makeNote(const Object &owner, const std::optional<QString> &name, const QString &body)
{
    requireWhole(owner, u"keinen Platz für neue Notizen"_s);
    ask([&](NotesLibrary &library) { (void)library.createNote(NotesLibrary::defaultFolder(), name, body); });
}

void NotesObjectModel::remove(const Object &object)
{
    if (object.kind != Kind::note)
        fail(applescripterror::notUnderstood, u"Gelöscht werden können nur Notizen."_s);
    ask([&](NotesLibrary &library) { library.deleteNote(object.key); });
}

void NotesObjectModel::move(const Object &object, const Object &folder)
{
    if (object.kind != Kind::note || folder.kind != Kind::folder)
        fail(applescripterror::notUnderstood, u"Nur Notizen können bewegt werden, und nur in Ordner."_s);
    ask([&](NotesLibrary &library) { (void)library.moveNote(object.key, folder.key); });
}

} // namespace randblatt
