#include "platform/notes/AppleScriptValue.h"

#include "platform/notes/AppleScriptError.h"

namespace randblatt {

using namespace Qt::StringLiterals;

QString germanName(AppleScriptObject::Kind kind)
{
    switch (kind) {
    case AppleScriptObject::Kind::application:
        return u"das Programm"_s;
    case AppleScriptObject::Kind::account:
        return u"der Account"_s;
    case AppleScriptObject::Kind::folder:
        return u"der Ordner"_s;
    case AppleScriptObject::Kind::note:
        break;
    }
    return u"die Notiz"_s;
}

std::optional<QString> AppleScriptValue::text() const
{
    if (const auto *text = as<QString>())
        return *text;
    if (const auto *integer = as<qint64>())
        return QString::number(*integer);
    if (const auto *boolean = as<bool>())
        return *boolean ? u"true"_s : u"false"_s;
    return std::nullopt;
}

QString AppleScriptValue::toText() const
{
    if (auto form = text())
        return *std::move(form);
    fail(u"ein Text"_s);
}

qint64 AppleScriptValue::toInteger() const
{
    if (const auto *integer = as<qint64>())
        return *integer;
    fail(u"eine Zahl"_s);
}

bool AppleScriptValue::toBoolean() const
{
    if (const auto *boolean = as<bool>())
        return *boolean;
    fail(u"ein Wahrheitswert"_s);
}

const AppleScriptObject &AppleScriptValue::toObject() const
{
    if (const auto *object = as<AppleScriptObject>())
        return *object;
    fail(u"ein Objekt eines Programms"_s);
}

const AppleScriptValue::Objects &AppleScriptValue::toObjects() const
{
    if (const auto *objects = as<Objects>())
        return *objects;
    fail(u"eine Liste von Objekten"_s);
}

void AppleScriptValue::fail(const QString &wanted) const
{
    QString found = u"Nichts"_s;
    if (const auto *object = as<AppleScriptObject>())
        found = germanName(object->kind) + u" „"_s + object->key + u'“';
    else if (as<Objects>() != nullptr)
        found = u"eine Liste von Objekten"_s;
    else if (const auto form = text())
        found = u'„' + form->left(40) + u'“';
    throw AppleScriptError{u"Erwartet wird %1, gefunden wurde: %2"_s.arg(wanted, found),
                           applescripterror::cannotCoerce};
}

} // namespace randblatt
