#include "platform/notes/AppleScriptParser.h"

#include "platform/notes/AppleScriptError.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <array>
#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;
using namespace applescript;

namespace {

using Kind = AppleScriptObject::Kind;
using TokenKind = AppleScriptToken::Kind;

// These bound the recursion of all who walk the tree, its own destruction among them.
constexpr int deepestNesting = 200;
constexpr int highestTree = 2000;

struct Sign
{
    QStringView text;
    Operator operation;
    /// Operators of a higher level bind more tightly.
    std::size_t level;
};
constexpr std::array signs{
    Sign{u"or", Operator::logicalOr, 0},
    Sign{u"≥", Operator::isAtLeast, 1},
    Sign{u"contains", Operator::contains, 1},
    Sign{u"&", Operator::join, 2},
    Sign{u"+", Operator::add, 3},
};
constexpr std::size_t levels = 4;

constexpr std::array<QStringView, 30> keywords{
    u"account", u"application", u"body",    u"container", u"contains", u"default", u"delete", u"end",
    u"exit",    u"folder",      u"folders", u"id",        u"if",       u"in",      u"make",   u"move",
    u"name",    u"new",         u"note",    u"notes",     u"of",       u"or",      u"repeat", u"return",
    u"set",     u"tell",        u"then",    u"to",        u"whose",    u"with"};

int heightOf(const ExpressionPtr &expression)
{
    return expression ? expression->height : 0;
}

template <typename Node>
ExpressionPtr made(Node node, int heightBelow = 0)
{
    return std::make_unique<Expression>(Expression{std::move(node), heightBelow + 1});
}

} // namespace

AppleScriptParser::AppleScriptParser(QList<Token> tokens)
    : m_tokens(std::move(tokens))
{
}

Block AppleScriptParser::parse(QStringView source)
{
    return AppleScriptParser(appleScriptTokens(source)).block({});
}

// Up to the `end` of what opened it; the script itself has none and ends with its text.
Block AppleScriptParser::block(QStringView opener)
{
    Block statements;
    while (true) {
        while (next().kind == TokenKind::lineEnd)
            ++m_position;
        if (opener.isEmpty() && next().kind == TokenKind::end)
            return statements;
        if (!opener.isEmpty() && take(u"end")) {
            expect(opener);
            return statements;
        }
        statements.push_back(statement());
        if (next().kind != TokenKind::lineEnd)
            fail(u"Erwartet wird das Ende der Zeile, gefunden wurde %1"_s.arg(next().description()));
    }
}

Statement AppleScriptParser::statement()
{
    const QScopedValueRollback depth(m_depth, m_depth + 1);
    if (m_depth > deepestNesting)
        fail(u"Das Skript ist zu tief verschachtelt"_s);
    if (take(u"tell"))
        return tell();
    if (take(u"set"))
        return set();
    if (take(u"repeat"))
        return repeat();
    if (take(u"exit")) {
        expect(u"repeat");
        return {ExitRepeat{}};
    }
    if (take(u"if"))
        return conditional();
    if (take(u"return"))
        return {Return{expression()}};
    if (take(u"make"))
        return makeNote();
    if (take(u"delete"))
        return {Delete{operand()}};
    if (take(u"move")) {
        ExpressionPtr note = operand();
        expect(u"to");
        return {Move{std::move(note), operand()}};
    }
    fail(u"%1 ist hier keine Anweisung"_s.arg(next().description()));
}

Statement AppleScriptParser::tell()
{
    ExpressionPtr target = operand();
    return {Tell{std::move(target), block(u"tell")}};
}

Statement AppleScriptParser::set()
{
    const bool isProperty = next().kind != TokenKind::word ||
                            std::find(keywords.begin(), keywords.end(), next().text) != keywords.end();
    ExpressionPtr target = isProperty ? operand() : made(Variable{takeNewName()});
    if (isProperty && !std::holds_alternative<Property>(target->node))
        fail(u"Gesetzt werden können nur Variablen und Eigenschaften"_s);
    expect(u"to");
    return {Set{std::move(target), expression()}};
}

Statement AppleScriptParser::repeat()
{
    expect(u"with");
    const QString variable = takeNewName();
    expect(u"in");
    ExpressionPtr items = operand();
    return {Repeat{variable, std::move(items), block(u"repeat")}};
}

Statement AppleScriptParser::conditional()
{
    ExpressionPtr condition = expression();
    expect(u"then");
    Block then;
    then.push_back(statement());
    return {If{std::move(condition), std::move(then)}};
}

Statement AppleScriptParser::makeNote()
{
    for (const QStringView word : {u"new", u"note", u"with", u"properties", u"{"})
        expect(word);
    MakeNote note;
    do {
        const bool isName = take(u"name");
        if (!isName)
            expect(u"body");
        expect(u":");
        (isName ? note.name : note.body) = expression();
    } while (take(u","));
    expect(u"}");
    return {std::move(note)};
}

ExpressionPtr AppleScriptParser::expression(std::size_t level)
{
    if (level == levels)
        return operand();
    ExpressionPtr left = expression(level + 1);
    while (true) {
        const auto sign = std::find_if(signs.begin(), signs.end(), [&](const Sign &candidate) {
            return candidate.level == level && take(candidate.text);
        });
        if (sign == signs.end())
            return left;
        ExpressionPtr right = expression(level + 1);
        const int height = std::max(left->height, right->height);
        if (height > highestTree)
            fail(u"Ein Ausdruck ist zu lang"_s);
        left = made(Binary{sign->operation, std::move(left), std::move(right)}, height);
    }
}

ExpressionPtr AppleScriptParser::operand()
{
    const QScopedValueRollback depth(m_depth, m_depth + 1);
    if (m_depth > deepestNesting)
        fail(u"Das Skript ist zu tief verschachtelt"_s);
    if (take(u"(")) {
        ExpressionPtr inner = expression();
        expect(u")");
        return inner;
    }
    if (next().kind == TokenKind::text)
        return made(Literal{AppleScriptValue(takeToken(TokenKind::text, {}))});
    if (next().kind == TokenKind::integer) {
        bool isInRange = false;
        const qint64 integer = next().text.toLongLong(&isInRange);
        if (!isInRange)
            fail(u"Die Zahl %1 ist zu groß"_s.arg(next().description()));
        ++m_position;
        return made(Literal{AppleScriptValue(integer)});
    }
    return word();
}

ExpressionPtr AppleScriptParser::word()
{
    if (take(u"application"))
        return made(Application{takeToken(TokenKind::text, u"der Name eines Programms"_s)});
    if (take(u"account"))
        return element(Kind::account);
    if (take(u"folder"))
        return element(Kind::folder);
    if (take(u"note")) {
        expect(u"id");
        return element(Kind::note);
    }
    if (take(u"folders"))
        return elements(Kind::folder);
    if (take(u"notes"))
        return elements(Kind::note);
    if (take(u"default")) {
        expect(u"folder");
        return property(u"default folder"_s);
    }
    for (const QStringView name : {u"name", u"id", u"body", u"container"}) {
        if (take(name))
            return property(name.toString());
    }
    if (next().kind != TokenKind::word || !m_variables.contains(next().text))
        fail(u"%1 ist hier nicht bekannt"_s.arg(next().description()));
    return made(Variable{takeToken(TokenKind::word, {})});
}

ExpressionPtr AppleScriptParser::element(Kind kind)
{
    ExpressionPtr key = operand();
    ExpressionPtr of = owner();
    const int height = std::max(heightOf(key), heightOf(of));
    return made(Element{kind, std::move(key), std::move(of)}, height);
}

ExpressionPtr AppleScriptParser::elements(Kind kind)
{
    ExpressionPtr of = owner();
    ExpressionPtr condition = take(u"whose") ? expression() : nullptr;
    const int height = std::max(heightOf(of), heightOf(condition));
    return made(Elements{kind, std::move(of), std::move(condition)}, height);
}

ExpressionPtr AppleScriptParser::property(const QString &name)
{
    ExpressionPtr of = owner();
    const int height = heightOf(of);
    return made(Property{name, std::move(of)}, height);
}

ExpressionPtr AppleScriptParser::owner()
{
    return take(u"of") ? operand() : nullptr;
}

bool AppleScriptParser::take(QStringView wordOrSymbol)
{
    const bool isThere =
        (next().kind == TokenKind::word || next().kind == TokenKind::symbol) && next().text == wordOrSymbol;
    m_position += isThere ? 1 : 0;
    return isThere;
}

void AppleScriptParser::expect(QStringView wordOrSymbol)
{
    if (!take(wordOrSymbol))
        fail(u"Erwartet wird „%1“, gefunden wurde %2"_s.arg(wordOrSymbol, next().description()));
}

QString AppleScriptParser::takeToken(TokenKind kind, const QString &description)
{
    if (next().kind != kind)
        fail(u"Erwartet wird %1, gefunden wurde %2"_s.arg(description, next().description()));
    return m_tokens[m_position++].text;
}

QString AppleScriptParser::takeNewName()
{
    if (std::find(keywords.begin(), keywords.end(), next().text) != keywords.end())
        fail(u"%1 kann keine Variable sein"_s.arg(next().description()));
    const QString name = takeToken(TokenKind::word, u"der Name einer Variablen"_s);
    m_variables.insert(name);
    return name;
}

void AppleScriptParser::fail(const QString &message) const
{
    throw appleScriptSyntaxError(next().line, message);
}

} // namespace randblatt
