#pragma once

#include <QString>

#include <optional>
#include <variant>
#include <vector>

namespace randblatt {

/// An object of the scripted application. The key is an account's or folder's name, or a note's id.
struct AppleScriptObject
{
    enum class Kind { application, account, folder, note };

    Kind kind = Kind::application;
    QString key;
};

/// How error messages call a kind of object.
[[nodiscard]] QString germanName(AppleScriptObject::Kind kind);

/// What a script computes with: an integer, a text, a truth value, an object of the application or several of
/// one kind. None is what an expression without a value has.
class AppleScriptValue
{
public:
    using Objects = std::vector<AppleScriptObject>;
    using Data = std::variant<std::monostate, bool, qint64, QString, AppleScriptObject, Objects>;

    AppleScriptValue() = default;
    explicit AppleScriptValue(Data data)
        : m_data(std::move(data))
    {
    }

    /// What it is, if it is a T.
    template <typename T>
    [[nodiscard]] const T *as() const
    {
        return std::get_if<T>(&m_data);
    }
    /// The text that a script with this result gives; none for objects and for no value.
    [[nodiscard]] std::optional<QString> text() const;

    // These throw AppleScriptError where the value is nothing of the kind.
    [[nodiscard]] QString toText() const;
    [[nodiscard]] qint64 toInteger() const;
    [[nodiscard]] bool toBoolean() const;
    [[nodiscard]] const AppleScriptObject &toObject() const;
    [[nodiscard]] const Objects &toObjects() const;

private:
    [[noreturn]] void fail(const QString &wanted) const;

    Data m_data;
};

} // namespace randblatt
