#include "platform/notes/NotesObjectModel.h"

#include "platform/html/HtmlText.h"
#include "platform/notes/AppleScriptError.h"
#include "platform/notes/NotesLibrary.h"
#include "platform/notes/NotesLibraryError.h"

#include <algorithm>
#include <array>
#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

using Object = AppleScriptObject;
using ObjectKind = AppleScriptObject::Kind;
using applescript::ElementClass;

QString applicationName()
{
    return u"Notes"_s;
}

QString accountName()
{
    return u"Auf diesem Computer"_s;
}

QString className(ElementClass elementClass)
{
    constexpr std::array<QStringView, 5> names{u"account", u"folder", u"note", u"item", u"character"};
    return names.at(static_cast<std::size_t>(elementClass)).toString();
}

QString className(ObjectKind kind)
{
    constexpr std::array<QStringView, 4> names{u"application", u"account", u"folder", u"note"};
    return names.at(static_cast<std::size_t>(kind)).toString();
}

QString germanName(ElementClass elementClass)
{
    switch (elementClass) {
    case ElementClass::account:
        return u"Ein Account"_s;
    case ElementClass::folder:
        return u"Ein Ordner"_s;
    default:
        return u"Eine Notiz"_s;
    }
}

[[noreturn]] void fail(int number, const QString &message)
{
    throw AppleScriptError{message, number};
}

std::optional<QString> textField(const AppleScriptValue::Fields &fields, const QString &name)
{
    const auto field =
        std::find_if(fields.cbegin(), fields.cend(),
                     [&](const AppleScriptValue::Field &candidate) { return candidate.first == name; });
    return field != fields.cend() ? std::optional(field->second.asText()) : std::nullopt;
}

} // namespace

template <typename Question>
auto ScriptedLibrary::ask(Question question) const
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
    if (name.compare(applicationName(), Qt::CaseInsensitive) != 0)
        fail(applescripterror::noSuchObject, u"Das Programm „%1“ ist nicht vorhanden."_s.arg(name));
    if (!m_isFresh)
        m_library.ask([](NotesLibrary &library) { library.refresh(); });
    m_isFresh = true;
    return {ObjectKind::application, applicationName()};
}

std::vector<Object> NotesObjectModel::elements(const Object &container, ElementClass elementClass) const
{
    const bool isWhole = container.kind == ObjectKind::application || container.kind == ObjectKind::account;
    std::vector<Object> result;
    if (elementClass == ElementClass::account && container.kind == ObjectKind::application) {
        result.push_back({ObjectKind::account, accountName()});
        return result;
    }
    if (elementClass == ElementClass::folder && isWhole) {
        const QStringList folders = m_library.ask([](NotesLibrary &library) { return library.folders(); });
        for (const QString &folder : folders)
            result.push_back({ObjectKind::folder, folder});
        return result;
    }
    if (elementClass == ElementClass::note && (isWhole || container.kind == ObjectKind::folder)) {
        auto ids = m_library.ask([&](NotesLibrary &library) {
            return library.notes(isWhole ? std::nullopt : std::optional(container.key));
        });
        result.reserve(ids.size());
        for (QString &id : ids)
            result.push_back({ObjectKind::note, std::move(id)});
        return result;
    }
    fail(applescripterror::noSuchObject,
         u"%1 hat keine Elemente der Art „%2“."_s.arg(AppleScriptValue(container).description(),
                                                      className(elementClass)));
}

Object NotesObjectModel::named(const Object &container, ElementClass elementClass, const QString &name) const
{
    const std::vector<Object> candidates = elements(container, elementClass);
    for (const auto sensitivity : {Qt::CaseSensitive, Qt::CaseInsensitive}) {
        for (const Object &candidate : candidates) {
            const QString key =
                candidate.kind == ObjectKind::note
                    ? m_library.ask([&](NotesLibrary &library) { return library.name(candidate.key); })
                    : candidate.key;
            if (key.compare(name, sensitivity) == 0)
                return candidate;
        }
    }
    fail(applescripterror::noSuchObject,
         u"%1 dieses Namens ist nicht vorhanden: „%2“"_s.arg(germanName(elementClass), name));
}

Object NotesObjectModel::identified(const Object &container, ElementClass elementClass,
                                    const QString &id) const
{
    if (elementClass != ElementClass::note)
        return named(container, elementClass, id);
    const bool isWhole = container.kind == ObjectKind::application || container.kind == ObjectKind::account;
    if (isWhole && m_library.ask([&](NotesLibrary &library) { return library.isDeleted(id); }))
        return {ObjectKind::note, id};
    const QString folder = m_library.ask([&](NotesLibrary &library) { return library.folderOf(id); });
    if (container.kind == ObjectKind::folder && container.key != folder) {
        fail(applescripterror::noSuchObject,
             u"Diese Notiz ist nicht in diesem Ordner vorhanden: „%1“, „%2“"_s.arg(id, container.key));
    }
    return {ObjectKind::note, id};
}

bool NotesObjectModel::exists(const Object &object) const
{
    return m_library.ask([&](NotesLibrary &library) {
        return object.kind == ObjectKind::note     ? library.contains(object.key)
               : object.kind == ObjectKind::folder ? library.folders().contains(object.key)
                                                   : true;
    });
}

AppleScriptValue NotesObjectModel::property(const Object &object, const QString &name) const
{
    if (name == "class"_L1)
        return AppleScriptValue(className(object.kind));
    if (object.kind == ObjectKind::note)
        return noteProperty(object.key, name);
    if (name == "name"_L1 || name == "id"_L1)
        return AppleScriptValue(object.key);
    if (name == "default account"_L1 && object.kind == ObjectKind::application)
        return AppleScriptValue(Object{ObjectKind::account, accountName()});
    if (name == "default folder"_L1 && object.kind == ObjectKind::account)
        return AppleScriptValue(Object{ObjectKind::folder, NotesLibrary::defaultFolder()});
    if (name == "container"_L1 && object.kind == ObjectKind::folder)
        return AppleScriptValue(Object{ObjectKind::account, accountName()});
    fail(applescripterror::noSuchObject,
         u"%1 hat keine Eigenschaft „%2“."_s.arg(AppleScriptValue(object).description(), name));
}

AppleScriptValue NotesObjectModel::noteProperty(const QString &id, const QString &name) const
{
    return m_library.ask([&](NotesLibrary &library) {
        if (name == "name"_L1)
            return AppleScriptValue(library.name(id));
        if (name == "id"_L1)
            return AppleScriptValue(id);
        if (name == "body"_L1)
            return AppleScriptValue(library.body(id));
        if (name == "plaintext"_L1)
            return AppleScriptValue(htmlToPlainText(library.body(id)));
        if (name == "modification date"_L1)
            return AppleScriptValue(library.modified(id));
        if (name == "container"_L1)
            return AppleScriptValue(Object{ObjectKind::folder, library.folderOf(id)});
        fail(applescripterror::noSuchObject, u"Eine Notiz hat keine Eigenschaft „%1“."_s.arg(name));
    });
}

void NotesObjectModel::setProperty(const Object &object, const QString &name, const AppleScriptValue &value)
{
    const bool isText = name == "name"_L1 || name == "body"_L1;
    if (object.kind != ObjectKind::note || !isText) {
        fail(applescripterror::cannotSet, u"Die Eigenschaft „%1“ von %2 kann nicht gesetzt werden."_s.arg(
                                              name, AppleScriptValue(object).description()));
    }
    const QString text = value.asText();
    m_library.ask([&](NotesLibrary &library) {
        if (name == "name"_L1)
            library.setName(object.key, text);
        else
            library.setBody(object.key, text);
    });
}

Object NotesObjectModel::make(const Object &container, ElementClass elementClass,
                              const AppleScriptValue::Fields &properties)
{
    if (elementClass == ElementClass::note)
        return makeNote(container, properties);
    if (elementClass == ElementClass::folder)
        return makeFolder(properties);
    fail(applescripterror::notUnderstood,
         u"Ein Objekt der Art „%1“ kann nicht erzeugt werden."_s.arg(className(elementClass)));
}

Object NotesObjectModel::makeNote(const Object &container, const AppleScriptValue::Fields &properties)
{
    if (container.kind == ObjectKind::note)
        fail(applescripterror::notUnderstood, u"In einer Notiz kann keine Notiz erzeugt werden."_s);
    const QString folder =
        container.kind == ObjectKind::folder ? container.key : NotesLibrary::defaultFolder();
    const auto name = textField(properties, u"name"_s);
    const QString body = textField(properties, u"body"_s).value_or(QString());
    const QString id =
        m_library.ask([&](NotesLibrary &library) { return library.createNote(folder, name, body); });
    return {ObjectKind::note, id};
}

Object NotesObjectModel::makeFolder(const AppleScriptValue::Fields &properties)
{
    const auto name = textField(properties, u"name"_s);
    if (!name)
        fail(applescripterror::missingParameter, u"Dem neuen Ordner fehlt ein Name."_s);
    m_library.ask([&](NotesLibrary &library) { library.createFolder(*name); });
    return {ObjectKind::folder, *name};
}

void NotesObjectModel::remove(const Object &object)
{
    if (object.kind != ObjectKind::note) {
        fail(applescripterror::notUnderstood,
             u"%1 kann nicht gelöscht werden."_s.arg(AppleScriptValue(object).description()));
    }
    m_library.ask([&](NotesLibrary &library) { library.deleteNote(object.key); });
}

void NotesObjectModel::move(const Object &object, const Object &folder)
{
    if (object.kind != ObjectKind::note || folder.kind != ObjectKind::folder) {
        fail(applescripterror::notUnderstood,
             u"%1 kann nicht an die Stelle %2 bewegt werden."_s.arg(AppleScriptValue(object).description(),
                                                                    AppleScriptValue(folder).description()));
    }
    m_library.ask([&](NotesLibrary &library) { (void)library.moveNote(object.key, folder.key); });
}

} // namespace randblatt
