#include "platform/notes/AppleScriptExpressionParser.h"

#include "platform/notes/AppleScriptError.h"
#include "platform/notes/AppleScriptTerms.h"

#include <algorithm>
#include <array>
#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;
using namespace applescript;

namespace {

using Kind = AppleScriptToken::Kind;

// A chain of operators is a tree as high as the chain is long, so this also bounds the parts of one "&"
// chain.
constexpr int greatestHeight = 1000;

struct Ordinal
{
    QStringView word;
    qint64 position;
};
constexpr std::array ordinals{Ordinal{u"first", 1},  Ordinal{u"second", 2}, Ordinal{u"third", 3},
                              Ordinal{u"fourth", 4}, Ordinal{u"fifth", 5},  Ordinal{u"last", -1}};

int height(const ExpressionPtr &expression)
{
    return expression ? expression->height : 0;
}

} // namespace

AppleScriptExpressionParser::AppleScriptExpressionParser(AppleScriptTokenStream &tokens)
    : m_tokens(tokens)
{
}

template <typename Node>
ExpressionPtr AppleScriptExpressionParser::build(Node node, std::initializer_list<int> heights) const
{
    const int highest = heights.size() > 0 ? std::max(heights) : 0;
    if (highest >= greatestHeight)
        m_tokens.failTooDeep();
    return std::make_unique<const Expression>(Expression{std::move(node), highest + 1});
}

ExpressionPtr AppleScriptExpressionParser::expression()
{
    return operation(1);
}

ExpressionPtr AppleScriptExpressionParser::operation(int lowestLevel)
{
    const AppleScriptTokenStream::Level level(m_tokens);
    ExpressionPtr left;
    if (lowestLevel <= negationLevel && m_tokens.acceptWord(u"not")) {
        ExpressionPtr operand = operation(negationLevel);
        const int operandHeight = height(operand);
        left = build(Unary{UnaryOperator::logicalNot, std::move(operand)}, {operandHeight});
    } else {
        left = unary();
    }
    // Comparisons do not associate: one may not follow another of its level.
    int highestLevel = powerLevel;
    while (true) {
        if (lowestLevel <= coercionLevel && coercionLevel <= highestLevel && m_tokens.acceptWord(u"as")) {
            left = coercion(std::move(left));
            continue;
        }
        const auto match = operatorAt(m_tokens);
        if (!match || match->level < lowestLevel || match->level > highestLevel)
            return left;
        m_tokens.skip(match->length);
        const bool isComparison = match->level == comparisonLevel || match->level == equalityLevel;
        const bool isRightAssociative = match->level == powerLevel;
        ExpressionPtr right = operation(isRightAssociative ? match->level : match->level + 1);
        const int leftHeight = height(left);
        const int rightHeight = height(right);
        left = build(Binary{match->operation, std::move(left), std::move(right)}, {leftHeight, rightHeight});
        highestLevel = isComparison ? match->level - 1 : match->level;
    }
}

ExpressionPtr AppleScriptExpressionParser::unary()
{
    for (const auto &[symbol, operation] :
         {std::pair(u"-", UnaryOperator::negate), std::pair(u"+", UnaryOperator::plus)}) {
        if (m_tokens.acceptSymbol(symbol)) {
            const AppleScriptTokenStream::Level level(m_tokens);
            ExpressionPtr operand = unary();
            const int operandHeight = height(operand);
            return build(Unary{operation, std::move(operand)}, {operandHeight});
        }
    }
    return reference();
}

ExpressionPtr AppleScriptExpressionParser::coercion(ExpressionPtr operand)
{
    m_tokens.acceptWord(u"unicode");
    const auto type = m_tokens.atKind(Kind::word) ? typeNamed(m_tokens.peek().text) : std::nullopt;
    if (!type)
        m_tokens.fail(u"ein Typ wie „text“"_s);
    m_tokens.skip(1);
    const int operandHeight = height(operand);
    return build(Coercion{std::move(operand), *type}, {operandHeight});
}

ExpressionPtr AppleScriptExpressionParser::reference()
{
    const AppleScriptTokenStream::Level level(m_tokens);
    ExpressionPtr result = term();
    while (m_tokens.acceptSymbol(u"'s"))
        result = possessive(std::move(result));
    return result;
}

ExpressionPtr AppleScriptExpressionParser::term()
{
    m_tokens.acceptWord(u"the");
    if (m_tokens.acceptSymbol(u"(")) {
        ExpressionPtr inner = expression();
        m_tokens.expectSymbol(u")");
        return inner;
    }
    if (m_tokens.atSymbol(u"{"))
        return atRecord() ? record() : list();
    if (auto result = command())
        return std::move(*result);
    if (auto result = elements())
        return std::move(*result);
    if (auto result = property())
        return std::move(*result);
    if (m_tokens.atKind(Kind::name) || (m_tokens.atKind(Kind::word) && !isReserved(m_tokens.peek().text) &&
                                        !m_tokens.atWord(u"missing") && !m_tokens.atWord(u"application"))) {
        const QString name = m_tokens.take().text;
        // A name before "of" is a field of a record.
        if (ExpressionPtr owner = container()) {
            const int ownerHeight = height(owner);
            return build(Property{name, std::move(owner)}, {ownerHeight});
        }
        return build(Variable{name});
    }
    return literal();
}

std::optional<ExpressionPtr> AppleScriptExpressionParser::command()
{
    if (m_tokens.acceptWord(u"make"))
        return make();
    if (m_tokens.acceptWord(u"get"))
        return expression();
    if (m_tokens.acceptWord(u"exists")) {
        ExpressionPtr operand = reference();
        const int operandHeight = height(operand);
        return build(Exists{std::move(operand)}, {operandHeight});
    }
    const bool isNumberOf = m_tokens.atWord(u"number") && m_tokens.atWord(u"of", 1);
    const bool isLengthOf = m_tokens.atWord(u"length") && m_tokens.atWord(u"of", 1);
    if (isNumberOf || isLengthOf || m_tokens.atWord(u"count")) {
        m_tokens.skip(1);
        m_tokens.acceptWord(u"of");
        ExpressionPtr operand = reference();
        const int operandHeight = height(operand);
        return build(Count{std::move(operand)}, {operandHeight});
    }
    return std::nullopt;
}

ExpressionPtr AppleScriptExpressionParser::make()
{
    m_tokens.acceptWord(u"new");
    const auto match = classAt(m_tokens, m_inApplication);
    if (!match || match->isPlural)
        m_tokens.fail(u"die Art des neuen Objekts"_s);
    m_tokens.skip(1);
    ExpressionPtr location;
    ExpressionPtr properties;
    while (true) {
        if (!location && m_tokens.acceptAnyWord({u"at", u"in"})) {
            location = reference();
        } else if (!properties && m_tokens.atWord(u"with") && m_tokens.atWord(u"properties", 1)) {
            m_tokens.skip(2);
            properties = reference();
        } else {
            const int locationHeight = height(location);
            const int propertiesHeight = height(properties);
            return build(Make{match->elementClass, std::move(location), std::move(properties)},
                         {locationHeight, propertiesHeight});
        }
    }
}

ExpressionPtr AppleScriptExpressionParser::literal()
{
    const AppleScriptToken &token = m_tokens.peek();
    if (token.kind == Kind::text)
        return build(Literal{AppleScriptValue(m_tokens.take().text)});
    if (token.kind == Kind::integer || token.kind == Kind::real) {
        bool isInteger = token.kind == Kind::integer;
        const qint64 integer = isInteger ? token.text.toLongLong(&isInteger) : 0;
        const double real = token.text.toDouble();
        m_tokens.skip(1);
        return build(Literal{isInteger ? AppleScriptValue(integer) : AppleScriptValue(real)});
    }
    if (m_tokens.acceptWord(u"true"))
        return build(Literal{AppleScriptValue(true)});
    if (m_tokens.acceptWord(u"false"))
        return build(Literal{AppleScriptValue(false)});
    if (m_tokens.acceptWord(u"it"))
        return build(Target{});
    if (m_tokens.atWord(u"missing") && m_tokens.atWord(u"value", 1)) {
        m_tokens.skip(2);
        return build(Literal{});
    }
    if (m_tokens.acceptWord(u"application")) {
        if (!m_tokens.atKind(Kind::text))
            m_tokens.fail(u"der Name eines Programms"_s);
        return build(Application{m_tokens.take().text});
    }
    m_tokens.fail(u"ein Ausdruck"_s);
}

ExpressionPtr AppleScriptExpressionParser::list()
{
    m_tokens.expectSymbol(u"{");
    ListLiteral result;
    int highest = 0;
    if (!m_tokens.atSymbol(u"}")) {
        do {
            result.items.push_back(expression());
            highest = std::max(highest, height(result.items.back()));
        } while (m_tokens.acceptSymbol(u","));
    }
    m_tokens.expectSymbol(u"}");
    return build(std::move(result), {highest});
}

bool AppleScriptExpressionParser::atRecord() const
{
    const bool isName = m_tokens.peek(1).kind == Kind::word || m_tokens.peek(1).kind == Kind::name;
    // The name of a property may be two words.
    return isName && (m_tokens.atSymbol(u":", 2) ||
                      (m_tokens.peek(2).kind == Kind::word && m_tokens.atSymbol(u":", 3)));
}

ExpressionPtr AppleScriptExpressionParser::record()
{
    m_tokens.expectSymbol(u"{");
    RecordLiteral result;
    int highest = 0;
    do {
        const QString name = fieldName();
        m_tokens.expectSymbol(u":");
        result.fields.emplace_back(name, expression());
        highest = std::max(highest, height(result.fields.back().second));
    } while (m_tokens.acceptSymbol(u","));
    m_tokens.expectSymbol(u"}");
    return build(std::move(result), {highest});
}

QString AppleScriptExpressionParser::fieldName()
{
    if (const auto match = propertyAt(m_tokens)) {
        m_tokens.skip(match->length);
        return match->name;
    }
    if (!m_tokens.atKind(Kind::word) && !m_tokens.atKind(Kind::name))
        m_tokens.fail(u"der Name einer Eigenschaft"_s);
    return m_tokens.take().text;
}

std::optional<ExpressionPtr> AppleScriptExpressionParser::property()
{
    if (!m_inApplication || m_tokens.atKind(Kind::name))
        return std::nullopt;
    const auto match = propertyAt(m_tokens);
    if (!match)
        return std::nullopt;
    m_tokens.skip(match->length);
    ExpressionPtr owner = container();
    const int ownerHeight = height(owner);
    return build(Property{match->name, std::move(owner)}, {ownerHeight});
}

std::optional<ExpressionPtr> AppleScriptExpressionParser::elements()
{
    const auto ordinal = std::find_if(ordinals.cbegin(), ordinals.cend(), [this](const Ordinal &candidate) {
        return m_tokens.atWord(candidate.word) && classAt(m_tokens, m_inApplication, 1).has_value();
    });
    const bool isEvery = m_tokens.atWord(u"every");
    if (ordinal != ordinals.cend() || isEvery)
        m_tokens.skip(1);
    const auto match = classAt(m_tokens, m_inApplication);
    if (!match) {
        if (isEvery)
            m_tokens.fail(u"die Art der Elemente"_s);
        return std::nullopt;
    }
    m_tokens.skip(1);
    Selector which;
    if (ordinal != ordinals.cend())
        which = {Selector::Kind::key, build(Literal{AppleScriptValue(ordinal->position)}), {}};
    else
        which = selector(match->isPlural || isEvery);
    ExpressionPtr owner = container();
    // "every note of folder 1 whose name is …": the condition stands behind the container.
    if (which.kind == Selector::Kind::every && m_tokens.acceptAnyWord({u"whose", u"where"}))
        which = {Selector::Kind::filter, expression(), {}};
    const int highest = std::max({height(which.first), height(which.last), height(owner)});
    return build(Elements{match->elementClass, std::move(which), std::move(owner)}, {highest});
}

Selector AppleScriptExpressionParser::selector(bool isPlural)
{
    if (!isPlural && m_tokens.acceptWord(u"id"))
        return {Selector::Kind::identifier, key(), {}};
    const bool isNamed = !isPlural && m_tokens.acceptAnyWord({u"named", u"index"});
    if (isNamed || atKey()) {
        ExpressionPtr first = key();
        if (!m_tokens.acceptAnyWord({u"thru", u"through"}))
            return {Selector::Kind::key, std::move(first), {}};
        return {Selector::Kind::range, std::move(first), key()};
    }
    if (isPlural && m_tokens.acceptAnyWord({u"whose", u"where"}))
        return {Selector::Kind::filter, expression(), {}};
    if (!isPlural)
        m_tokens.fail(u"eine Nummer, ein Name oder „id“"_s);
    return {};
}

bool AppleScriptExpressionParser::atKey() const
{
    switch (m_tokens.peek().kind) {
    case Kind::text:
    case Kind::integer:
    case Kind::real:
    case Kind::name:
        return true;
    case Kind::symbol:
        return m_tokens.atSymbol(u"(") ||
               (m_tokens.atSymbol(u"-") &&
                (m_tokens.peek(1).kind == Kind::integer || m_tokens.peek(1).kind == Kind::real));
    case Kind::word:
        return !isReserved(m_tokens.peek().text) && !operatorAt(m_tokens) &&
               !classAt(m_tokens, m_inApplication) && !(m_inApplication && propertyAt(m_tokens));
    default:
        return false;
    }
}

ExpressionPtr AppleScriptExpressionParser::key()
{
    if (!atKey())
        m_tokens.fail(u"eine Nummer oder ein Name"_s);
    if (m_tokens.acceptSymbol(u"(")) {
        ExpressionPtr inner = expression();
        m_tokens.expectSymbol(u")");
        return inner;
    }
    if (m_tokens.acceptSymbol(u"-"))
        return build(Unary{UnaryOperator::negate, literal()}, {1});
    // Without "of", which belongs to the element and not to its key.
    if (m_tokens.atKind(Kind::word) || m_tokens.atKind(Kind::name))
        return build(Variable{m_tokens.take().text});
    return literal();
}

ExpressionPtr AppleScriptExpressionParser::container()
{
    if (!m_tokens.acceptAnyWord({u"of", u"in"}))
        return {};
    return reference();
}

ExpressionPtr AppleScriptExpressionParser::possessive(ExpressionPtr owner)
{
    const int ownerHeight = height(owner);
    if (const auto match = classAt(m_tokens, m_inApplication)) {
        m_tokens.skip(1);
        Selector which = selector(match->isPlural);
        const int highest = std::max({height(which.first), height(which.last), ownerHeight});
        return build(Elements{match->elementClass, std::move(which), std::move(owner)}, {highest});
    }
    if (m_tokens.acceptWord(u"length"))
        return build(Count{std::move(owner)}, {ownerHeight});
    return build(Property{fieldName(), std::move(owner)}, {ownerHeight});
}

QString AppleScriptExpressionParser::variableName()
{
    const bool isName =
        m_tokens.atKind(Kind::name) || (m_tokens.atKind(Kind::word) && !isReserved(m_tokens.peek().text) &&
                                        !classAt(m_tokens, m_inApplication));
    if (!isName)
        m_tokens.fail(u"der Name einer Variablen"_s);
    return m_tokens.take().text;
}

} // namespace randblatt
