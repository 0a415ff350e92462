#pragma once

#include "platform/notes/AppleScriptSyntax.h"
#include "platform/notes/AppleScriptTokenStream.h"

#include <QString>

#include <optional>

/// The words of the language and of the notes application's dictionary.
namespace randblatt::applescript {

/// A binary operator as it stands at the front of a token stream.
struct OperatorMatch
{
    BinaryOperator operation;
    /// How tightly it binds; higher binds tighter.
    int level;
    /// How many tokens it is written with.
    qsizetype length;
};

constexpr int negationLevel = 3;
constexpr int coercionLevel = 6;
constexpr int comparisonLevel = 5;
constexpr int equalityLevel = 4;
constexpr int powerLevel = 10;

/// The operator at the front of `tokens`, the longest one where several begin alike; none for other tokens.
[[nodiscard]] std::optional<OperatorMatch> operatorAt(const AppleScriptTokenStream &tokens);

/// A class of elements, as its singular or its plural.
struct ClassMatch
{
    ElementClass elementClass;
    bool isPlural;
};

/// The class that the next token names. Classes of the application exist only inside a `tell` to it.
[[nodiscard]] std::optional<ClassMatch> classAt(const AppleScriptTokenStream &tokens, bool inApplication,
                                                qsizetype ahead = 0);

/// A property of an application's object, as it stands at the front of a token stream.
struct PropertyMatch
{
    QString name;
    qsizetype length;
};
[[nodiscard]] std::optional<PropertyMatch> propertyAt(const AppleScriptTokenStream &tokens);

[[nodiscard]] std::optional<AppleScriptType> typeNamed(const QString &word);

/// Whether `word` has a meaning in the language, so that it can't name a variable.
[[nodiscard]] bool isReserved(const QString &word);

} // namespace randblatt::applescript
