#include "platform/notes/AppleScriptValue.h"

#include "platform/notes/AppleScriptError.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 largestInteger = 536870911;
constexpr int deepestNesting = 64;
/// Lists share what they nest, so a few lines can make one that would take ages to walk.
constexpr qint64 largestWeight = 64LL * 1024 * 1024;
/// What an item of a list counts as, in characters.
constexpr qint64 itemSize = 32;

QString realText(double real)
{
    if (!std::isfinite(real))
        return std::isnan(real) ? u"nan"_s : real < 0 ? u"-inf"_s : u"inf"_s;
    const double magnitude = std::abs(real);
    if (real != 0.0 && (magnitude >= 10000.0 || magnitude < 0.001)) {
        QString text = QString::number(real, 'E', 12);
        const qsizetype exponent = text.indexOf(u'E');
        QString mantissa = text.first(exponent);
        while (mantissa.endsWith(u'0') && !mantissa.endsWith(".0"_L1))
            mantissa.chop(1);
        const int power = text.sliced(exponent + 1).toInt();
        return mantissa + u'E' + (power < 0 ? u'-' : u'+') + QString::number(std::abs(power));
    }
    const QString text = QString::number(real, 'g', 12);
    return text.contains(u'.') ? text : text + ".0"_L1;
}

/// A number as AppleScript reads it from text: blanks around it do not matter, nothing else may be there.
std::optional<double> number(const QString &text)
{
    bool isNumber = false;
    const double real = text.trimmed().toDouble(&isNumber);
    if (!isNumber || !std::isfinite(real))
        return std::nullopt;
    return real;
}

/// Makes a container's extent that of a container which also has an item of extent `item`.
void extend(AppleScriptExtent &container, const AppleScriptExtent &item)
{
    container.depth = std::max(container.depth, item.depth + 1);
    container.weight += item.weight;
    if (container.depth > deepestNesting)
        throw AppleScriptError{u"Listen sind zu tief ineinander verschachtelt."_s,
                               applescripterror::nestedTooDeep};
    if (container.weight > largestWeight)
        throw AppleScriptError{u"Eine Liste wird zu lang."_s, applescripterror::outOfMemory};
}

} // namespace

struct AppleScriptValue::List
{
    Items items;
    AppleScriptExtent extent;
    AppleScriptMemory memory;
};

struct AppleScriptValue::Record
{
    Fields fields;
    AppleScriptExtent extent;
    AppleScriptMemory memory;
};

struct AppleScriptValue::ObjectSet
{
    Objects objects;
    AppleScriptMemory memory;
};

AppleScriptValue::AppleScriptValue(bool boolean)
    : m_data(boolean)
{
}

AppleScriptValue::AppleScriptValue(qint64 integer)
{
    if (std::abs(integer) <= largestInteger)
        m_data = integer;
    else
        m_data = static_cast<double>(integer);
}

AppleScriptValue::AppleScriptValue(double real)
    : m_data(real)
{
}

AppleScriptValue::AppleScriptValue(const QString &text)
    : m_data(text)
    , m_memory(text.size())
{
}

AppleScriptValue::AppleScriptValue(const QDateTime &date)
    : m_data(date)
{
}

AppleScriptValue::AppleScriptValue(const AppleScriptObject &object)
    : m_data(object)
{
}

AppleScriptValue::AppleScriptValue(Items items)
{
    AppleScriptExtent extent;
    for (const AppleScriptValue &item : items)
        extend(extent, item.extent());
    const auto size = static_cast<qint64>(items.size()) * itemSize;
    m_data = std::make_shared<const List>(List{std::move(items), extent, AppleScriptMemory(size)});
}

AppleScriptValue::AppleScriptValue(Fields fields)
{
    AppleScriptExtent extent;
    for (const auto &[name, value] : fields)
        extend(extent, value.extent());
    const auto size = static_cast<qint64>(fields.size()) * itemSize;
    m_data = std::make_shared<const Record>(Record{std::move(fields), extent, AppleScriptMemory(size)});
}

AppleScriptValue::AppleScriptValue(Objects objects)
{
    const auto size = static_cast<qint64>(objects.size()) * itemSize;
    m_data = std::make_shared<const ObjectSet>(ObjectSet{std::move(objects), AppleScriptMemory(size)});
}

bool AppleScriptValue::isNumber() const
{
    return std::holds_alternative<qint64>(m_data) || std::holds_alternative<double>(m_data);
}

bool AppleScriptValue::isList() const
{
    return std::holds_alternative<std::shared_ptr<const List>>(m_data) || objects() != nullptr;
}

const AppleScriptValue::Fields *AppleScriptValue::fields() const
{
    const auto *record = std::get_if<std::shared_ptr<const Record>>(&m_data);
    return record != nullptr ? &(*record)->fields : nullptr;
}

const AppleScriptValue::Objects *AppleScriptValue::objects() const
{
    const auto *set = std::get_if<std::shared_ptr<const ObjectSet>>(&m_data);
    return set != nullptr ? &(*set)->objects : nullptr;
}

AppleScriptValue AppleScriptValue::settled() const
{
    return objects() != nullptr ? AppleScriptValue(*items()) : *this;
}

std::optional<AppleScriptValue::Items> AppleScriptValue::items() const
{
    Items result;
    if (const auto *list = std::get_if<std::shared_ptr<const List>>(&m_data))
        return (*list)->items;
    if (const Objects *set = objects()) {
        result.reserve(set->size());
        for (const AppleScriptObject &object : *set)
            result.emplace_back(object);
        return result;
    }
    if (const Fields *record = fields()) {
        for (const auto &[name, value] : *record)
            result.push_back(value);
        return result;
    }
    if (const QString *characters = text()) {
        for (qsizetype i = 0; i < characters->size();) {
            const bool isPair = characters->at(i).isHighSurrogate() && i + 1 < characters->size() &&
                                characters->at(i + 1).isLowSurrogate();
            result.emplace_back(characters->sliced(i, isPair ? 2 : 1));
            i += isPair ? 2 : 1;
        }
        return result;
    }
    return std::nullopt;
}

std::optional<qint64> AppleScriptValue::length() const
{
    if (const auto *list = std::get_if<std::shared_ptr<const List>>(&m_data))
        return static_cast<qint64>((*list)->items.size());
    if (const Objects *set = objects())
        return static_cast<qint64>(set->size());
    if (const Fields *record = fields())
        return static_cast<qint64>(record->size());
    if (const QString *characters = text()) {
        return characters->size() - std::count_if(characters->cbegin(), characters->cend(),
                                                  [](QChar character) { return character.isLowSurrogate(); });
    }
    return std::nullopt;
}

AppleScriptValue AppleScriptValue::coerced(AppleScriptType type) const
{
    switch (type) {
    case AppleScriptType::text:
        return AppleScriptValue(asText());
    case AppleScriptType::integer:
        return AppleScriptValue(asInteger());
    case AppleScriptType::real:
        return AppleScriptValue(asReal());
    case AppleScriptType::number:
        if (const QString *characters = text(); characters != nullptr) {
            bool isInteger = false;
            const qint64 integer = characters->trimmed().toLongLong(&isInteger);
            return isInteger && std::abs(integer) <= largestInteger ? AppleScriptValue(integer)
                                                                    : AppleScriptValue(asReal());
        }
        return isNumber() ? *this : AppleScriptValue(asInteger());
    case AppleScriptType::boolean:
        return AppleScriptValue(asBoolean());
    case AppleScriptType::list:
        if (isList() || fields() != nullptr)
            return AppleScriptValue(*items());
        return AppleScriptValue(Items{*this});
    case AppleScriptType::record:
        return fields() != nullptr ? *this : (failToCoerce(u"record"_s), *this);
    case AppleScriptType::date:
        return std::holds_alternative<QDateTime>(m_data) ? *this : (failToCoerce(u"date"_s), *this);
    }
    return *this;
}

QString AppleScriptValue::asText() const
{
    if (const auto form = resultText())
        return *form;
    if (isMissing())
        return u"missing value"_s;
    if (!isList())
        failToCoerce(u"text"_s);
    // The delimiter between items is AppleScript's initial one, which is empty.
    const Items parts = *items();
    QString joined;
    for (const AppleScriptValue &item : parts)
        joined += item.asText();
    return joined;
}

qint64 AppleScriptValue::asInteger() const
{
    if (const auto *integer = std::get_if<qint64>(&m_data))
        return *integer;
    if (const auto *boolean = std::get_if<bool>(&m_data))
        return *boolean ? 1 : 0;
    const double real = std::round(asReal());
    if (std::abs(real) > static_cast<double>(largestInteger))
        failToCoerce(u"integer"_s);
    return static_cast<qint64>(real);
}

double AppleScriptValue::asReal() const
{
    if (const auto *integer = std::get_if<qint64>(&m_data))
        return static_cast<double>(*integer);
    if (const auto *real = std::get_if<double>(&m_data))
        return *real;
    const QString *characters = text();
    const auto read = characters != nullptr ? number(*characters) : std::nullopt;
    if (!read)
        failToCoerce(u"number"_s);
    return *read;
}

bool AppleScriptValue::asBoolean() const
{
    if (const auto *boolean = std::get_if<bool>(&m_data))
        return *boolean;
    const QString *characters = text();
    if (characters != nullptr && characters->compare("true"_L1, Qt::CaseInsensitive) == 0)
        return true;
    if (characters != nullptr && characters->compare("false"_L1, Qt::CaseInsensitive) == 0)
        return false;
    if (const auto *integer = std::get_if<qint64>(&m_data);
        integer != nullptr && (*integer == 0 || *integer == 1))
        return *integer == 1;
    failToCoerce(u"boolean"_s);
}

std::optional<QString> AppleScriptValue::resultText() const
{
    if (const QString *characters = text())
        return *characters;
    if (const auto *boolean = std::get_if<bool>(&m_data))
        return *boolean ? u"true"_s : u"false"_s;
    if (const auto *integer = std::get_if<qint64>(&m_data))
        return QString::number(*integer);
    if (const auto *real = std::get_if<double>(&m_data))
        return realText(*real);
    if (const auto *date = std::get_if<QDateTime>(&m_data))
        return QLocale(QLocale::German).toString(*date, u"dddd, d. MMMM yyyy 'um' HH:mm:ss"_s);
    return std::nullopt;
}

QString AppleScriptValue::description() const
{
    constexpr qsizetype longest = 40;
    if (const QString *characters = text())
        return u'"' + (characters->size() > longest ? characters->first(longest) + u'…' : *characters) + u'"';
    if (const auto form = resultText())
        return *form;
    if (const AppleScriptObject *reference = object()) {
        switch (reference->kind) {
        case AppleScriptObject::Kind::application:
            return u"application \"%1\""_s.arg(reference->key);
        case AppleScriptObject::Kind::account:
            return u"account \"%1\""_s.arg(reference->key);
        case AppleScriptObject::Kind::folder:
            return u"folder \"%1\""_s.arg(reference->key);
        case AppleScriptObject::Kind::note:
            return u"note id \"%1\""_s.arg(reference->key);
        }
    }
    return isMissing() ? u"missing value"_s : fields() != nullptr ? u"ein Datensatz"_s : u"eine Liste"_s;
}

bool AppleScriptValue::equals(const AppleScriptValue &other) const
{
    if (isNumber() && other.isNumber())
        return asReal() == other.asReal();
    if (text() != nullptr && other.text() != nullptr)
        return text()->compare(*other.text(), Qt::CaseInsensitive) == 0;
    if ((isList() && other.isList()) || (fields() != nullptr && other.fields() != nullptr)) {
        const Items mine = *items();
        const Items others = *other.items();
        if (fields() != nullptr && !std::equal(fields()->cbegin(), fields()->cend(), other.fields()->cbegin(),
                                               other.fields()->cend(), [](const Field &a, const Field &b) {
                                                   return a.first == b.first;
                                               }))
            return false;
        return std::equal(mine.cbegin(), mine.cend(), others.cbegin(), others.cend(),
                          [](const AppleScriptValue &a, const AppleScriptValue &b) { return a.equals(b); });
    }
    if (m_data.index() != other.m_data.index())
        return false;
    if (const auto *boolean = std::get_if<bool>(&m_data))
        return *boolean == other.asBoolean();
    if (const auto *date = std::get_if<QDateTime>(&m_data))
        return *date == std::get<QDateTime>(other.m_data);
    if (const AppleScriptObject *reference = object())
        return *reference == *other.object();
    return isMissing();
}

int AppleScriptValue::compare(const AppleScriptValue &other) const
{
    if (isNumber()) {
        const double difference = asReal() - other.asReal();
        return difference < 0 ? -1 : difference > 0 ? 1 : 0;
    }
    if (const QString *characters = text())
        return characters->compare(other.asText(), Qt::CaseInsensitive);
    const auto *date = std::get_if<QDateTime>(&m_data);
    const auto *otherDate = std::get_if<QDateTime>(&other.m_data);
    if (date != nullptr && otherDate != nullptr)
        return *date < *otherDate ? -1 : *date > *otherDate ? 1 : 0;
    failToCoerce(u"number"_s);
}

AppleScriptValue AppleScriptValue::concatenated(const AppleScriptValue &other) const
{
    if (const QString *characters = text())
        return AppleScriptValue(*characters + other.asText());
    if (fields() != nullptr && other.fields() != nullptr) {
        Fields merged = *fields();
        for (const Field &field : *other.fields()) {
            if (std::none_of(merged.cbegin(), merged.cend(),
                             [&](const Field &present) { return present.first == field.first; }))
                merged.push_back(field);
        }
        return AppleScriptValue(std::move(merged));
    }
    const auto parts = [](const AppleScriptValue &value) {
        return value.isList() || value.fields() != nullptr ? *value.items() : Items{value};
    };
    Items joined = parts(*this);
    const Items rest = parts(other);
    joined.insert(joined.end(), rest.cbegin(), rest.cend());
    return AppleScriptValue(std::move(joined));
}

AppleScriptExtent AppleScriptValue::extent() const
{
    if (const auto *list = std::get_if<std::shared_ptr<const List>>(&m_data))
        return (*list)->extent;
    if (const auto *record = std::get_if<std::shared_ptr<const Record>>(&m_data))
        return (*record)->extent;
    const auto size = text() != nullptr ? text()->size()
                                        : static_cast<qint64>(objects() != nullptr ? objects()->size() : 0);
    return {.depth = 0, .weight = size + 1};
}

void AppleScriptValue::failToCoerce(const QString &type) const
{
    throw AppleScriptError{u"%1 kann nicht in den Typ „%2“ umgewandelt werden."_s.arg(description(), type),
                           applescripterror::cannotCoerce};
}

} // namespace randblatt
