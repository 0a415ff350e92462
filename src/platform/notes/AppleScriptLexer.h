#pragma once

#include <QList>
#include <QString>
#include <QStringView>

namespace randblatt {

/// One word, literal or sign of a script.
struct AppleScriptToken
{
    enum class Kind {
        word,    ///< a keyword or a name, in lower case
        text,    ///< a text literal without its quotes, escapes resolved
        integer, ///< digits
        symbol,
        lineEnd,
        end,
    };

    Kind kind = Kind::end;
    QString text;
    int line = 1;

    /// How error messages call the token.
    [[nodiscard]] QString description() const;
};

/// The tokens of a script; the last one is of kind `end`. Throws AppleScriptError for a text without its end,
/// an unknown escape, and a sign that scripts here do not have.
[[nodiscard]] QList<AppleScriptToken> appleScriptTokens(QStringView source);

/// A syntax error in a line, to be thrown.
struct AppleScriptError;
[[nodiscard]] AppleScriptError appleScriptSyntaxError(int line, const QString &message);

} // namespace randblatt
