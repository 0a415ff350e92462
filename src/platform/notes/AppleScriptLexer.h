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
        name,    ///< a name between bars, which is no keyword, in lower case
        text,    ///< a text literal without its quotes, escapes resolved
        integer, ///< digits
        real,    ///< digits with a decimal point or an exponent
        symbol,  ///< a sign; the several spellings of one operator are made one
        lineEnd,
        end,
    };

    Kind kind = Kind::end;
    QString text;
    int line = 1;

    /// How error messages call the token.
    [[nodiscard]] QString description() const;
};

/// Splits AppleScript source into tokens. Comments and continued line ends are left out.
class AppleScriptLexer
{
public:
    /// `source` is borrowed for as long as the lexer lives.
    explicit AppleScriptLexer(QStringView source);

    /// All tokens; the last one is of kind `end`. Throws AppleScriptError for a text or comment without its
    /// end, an unknown escape or a sign that AppleScript does not have.
    [[nodiscard]] QList<AppleScriptToken> tokens();

private:
    [[nodiscard]] QChar at(qsizetype offset = 0) const;
    [[nodiscard]] char32_t codePoint() const;
    void skipLine();
    void skipBlockComment();
    bool skipContinuation();
    void readLineEnd();
    void readText();
    void readBarredName();
    void readNumber();
    void readWord();
    void readSymbol();
    void append(AppleScriptToken::Kind kind, const QString &text, int line);
    [[noreturn]] void fail(const QString &message) const;

    QStringView m_source;
    qsizetype m_position = 0;
    int m_line = 1;
    QList<AppleScriptToken> m_tokens;
};

} // namespace randblatt
