#pragma once

#include "platform/notes/AppleScriptMemory.h"

#include <QDateTime>
#include <QString>

#include <memory>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

namespace randblatt {

/// An object of the scripted application. The key is an account's or folder's name, or a note's id.
struct AppleScriptObject
{
    enum class Kind { application, account, folder, note };

    Kind kind = Kind::application;
    QString key;

    friend bool operator==(const AppleScriptObject &, const AppleScriptObject &) = default;
};

enum class AppleScriptType { text, integer, real, number, boolean, list, record, date };

/// How large a value is when everything that it nests is unfolded.
struct AppleScriptExtent
{
    int depth = 0;
    /// In characters and items.
    qint64 weight = 1;
};

/// A value that a script computes with. Values never change, so copying one is cheap and lists can't contain
/// themselves.
class AppleScriptValue
{
public:
    using Field = std::pair<QString, AppleScriptValue>;
    using Items = std::vector<AppleScriptValue>;
    using Fields = std::vector<Field>;
    using Objects = std::vector<AppleScriptObject>;

    /// `missing value`, which also stands for a statement's lack of a result.
    AppleScriptValue() = default;
    explicit AppleScriptValue(bool boolean);
    /// An integer, or a real where AppleScript's integers do not reach.
    explicit AppleScriptValue(qint64 integer);
    explicit AppleScriptValue(double real);
    explicit AppleScriptValue(const QString &text);
    explicit AppleScriptValue(const QDateTime &date);
    explicit AppleScriptValue(const AppleScriptObject &object);
    /// A list. Throws AppleScriptError where lists are nested too deep, or hold too much with what they nest.
    explicit AppleScriptValue(Items items);
    /// A record; names are in lower case.
    explicit AppleScriptValue(Fields fields);
    /// Every object of some kind: as a list, but a property of it is the list of the objects' properties.
    explicit AppleScriptValue(Objects objects);

    [[nodiscard]] bool isMissing() const { return std::holds_alternative<std::monostate>(m_data); }
    [[nodiscard]] bool isNumber() const;
    [[nodiscard]] bool isInteger() const { return std::holds_alternative<qint64>(m_data); }
    [[nodiscard]] bool isList() const;
    [[nodiscard]] const QString *text() const { return std::get_if<QString>(&m_data); }
    [[nodiscard]] const AppleScriptObject *object() const { return std::get_if<AppleScriptObject>(&m_data); }
    [[nodiscard]] const Fields *fields() const;
    [[nodiscard]] const Objects *objects() const;

    /// This value, with a set of objects made the list of them.
    [[nodiscard]] AppleScriptValue settled() const;
    /// The items of a list or a set of objects, the characters of a text, the values of a record; none for
    /// any other value.
    [[nodiscard]] std::optional<Items> items() const;
    /// How many items() there are, without making them.
    [[nodiscard]] std::optional<qint64> length() const;

    /// The value as AppleScript coerces it; throws AppleScriptError where it can't.
    [[nodiscard]] AppleScriptValue coerced(AppleScriptType type) const;
    [[nodiscard]] QString asText() const;
    [[nodiscard]] qint64 asInteger() const;
    [[nodiscard]] double asReal() const;
    [[nodiscard]] bool asBoolean() const;
    /// The text that a script with this result gives; none for values without a text form.
    [[nodiscard]] std::optional<QString> resultText() const;
    /// How error messages call the value.
    [[nodiscard]] QString description() const;

    /// AppleScript's `=`: text without regard to case, numbers by value; different types are never equal.
    [[nodiscard]] bool equals(const AppleScriptValue &other) const;
    /// Below, at or above 0 as this value is less than, equal to or greater than `other`, which is coerced to
    /// this value's type. Throws AppleScriptError for values without an order.
    [[nodiscard]] int compare(const AppleScriptValue &other) const;
    /// AppleScript's `&`.
    [[nodiscard]] AppleScriptValue concatenated(const AppleScriptValue &other) const;

private:
    struct List;
    struct Record;
    struct ObjectSet;

    [[nodiscard]] AppleScriptExtent extent() const;
    [[noreturn]] void failToCoerce(const QString &type) const;

    std::variant<std::monostate, bool, qint64, double, QString, QDateTime, AppleScriptObject,
                 std::shared_ptr<const List>, std::shared_ptr<const Record>, std::shared_ptr<const ObjectSet>>
        m_data;
    AppleScriptMemory m_memory;
};

} // namespace randblatt
