#include "platform/notes/AppleScriptParser.h"

#include "platform/notes/AppleScriptLexer.h"

#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;
using namespace applescript;

namespace {

using Kind = AppleScriptToken::Kind;

/// Whether the objects of the notes application are what `target` leads to.
bool isInApplication(const Expression *target)
{
    while (target != nullptr) {
        if (const auto *application = std::get_if<Application>(&target->node))
            return application->name.compare("Notes"_L1, Qt::CaseInsensitive) == 0;
        if (const auto *elements = std::get_if<Elements>(&target->node))
            target = elements->container.get();
        else if (const auto *property = std::get_if<Property>(&target->node))
            target = property->container.get();
        else
            target = nullptr;
    }
    return false;
}

bool isAssignable(const Expression &target)
{
    return std::holds_alternative<Variable>(target.node) || std::holds_alternative<Property>(target.node);
}

} // namespace

AppleScriptParser::AppleScriptParser(const QString &source)
    : m_tokens(AppleScriptLexer(source).tokens())
    , m_expressions(m_tokens)
{
}

Block AppleScriptParser::parse(const QString &source)
{
    AppleScriptParser parser(source);
    Block script = parser.block();
    if (!parser.m_tokens.atKind(Kind::end))
        parser.m_tokens.fail(u"eine Anweisung"_s);
    return script;
}

Block AppleScriptParser::block()
{
    const AppleScriptTokenStream::Level level(m_tokens);
    Block result;
    m_tokens.skipLineEnds();
    while (!atBlockEnd()) {
        result.push_back(statement());
        m_tokens.expectLineEnd();
    }
    return result;
}

bool AppleScriptParser::atBlockEnd() const
{
    return m_tokens.atKind(Kind::end) || m_tokens.atWord(u"end") || m_tokens.atWord(u"else") ||
           (m_tokens.atWord(u"on") && m_tokens.atWord(u"error", 1));
}

bool AppleScriptParser::atStatementEnd() const
{
    return m_tokens.atKind(Kind::lineEnd) || m_tokens.atKind(Kind::end) || m_tokens.atWord(u"else");
}

void AppleScriptParser::expectEnd(QStringView word)
{
    m_tokens.expectWord(u"end");
    if (!atStatementEnd())
        m_tokens.expectWord(word);
}

Statement AppleScriptParser::statement()
{
    const AppleScriptTokenStream::Level level(m_tokens);
    if (m_tokens.acceptWord(u"tell"))
        return tell();
    if (m_tokens.acceptWord(u"set"))
        return set();
    if (m_tokens.acceptWord(u"copy"))
        return copy();
    if (m_tokens.acceptWord(u"repeat"))
        return repeat();
    if (m_tokens.acceptWord(u"if"))
        return conditional();
    if (m_tokens.acceptWord(u"try"))
        return tryBlock();
    if (m_tokens.acceptWord(u"error"))
        return raise();
    if (m_tokens.acceptWord(u"exit")) {
        m_tokens.acceptWord(u"repeat");
        return {ExitRepeat{}};
    }
    if (m_tokens.acceptWord(u"return"))
        return {Return{atStatementEnd() ? ExpressionPtr() : m_expressions.expression()}};
    if (m_tokens.acceptWord(u"delete"))
        return {Delete{m_expressions.reference()}};
    // The application's word, not the language's.
    if (m_expressions.isInApplication() && m_tokens.acceptWord(u"move"))
        return move();
    return {Evaluate{m_expressions.expression()}};
}

Statement AppleScriptParser::tell()
{
    ExpressionPtr target = m_expressions.reference();
    const bool wasInside = m_expressions.isInApplication();
    // A tell to one of the application's objects, as an account, stays inside the application.
    const bool isApplication = std::holds_alternative<Application>(target->node);
    m_expressions.setInApplication(isInApplication(target.get()) || (wasInside && !isApplication));
    Block body;
    if (m_tokens.acceptWord(u"to")) {
        body.push_back(statement());
    } else {
        m_tokens.expectLineEnd();
        body = block();
        expectEnd(u"tell");
    }
    m_expressions.setInApplication(wasInside);
    return {Tell{std::move(target), std::move(body)}};
}

Statement AppleScriptParser::set()
{
    ExpressionPtr target = m_expressions.reference();
    if (!isAssignable(*target))
        m_tokens.fail(u"eine Variable oder eine Eigenschaft vor „to“"_s);
    m_tokens.expectWord(u"to");
    return {Assign{std::move(target), m_expressions.expression()}};
}

Statement AppleScriptParser::copy()
{
    ExpressionPtr value = m_expressions.expression();
    m_tokens.expectWord(u"to");
    ExpressionPtr target = m_expressions.reference();
    if (!isAssignable(*target))
        m_tokens.fail(u"eine Variable oder eine Eigenschaft hinter „to“"_s);
    return {Assign{std::move(target), std::move(value)}};
}

Statement AppleScriptParser::repeat()
{
    if (m_tokens.acceptWord(u"with"))
        return repeatWith();
    ExpressionPtr head;
    enum { forever, whileTrue, untilTrue, times } form = forever;
    if (m_tokens.acceptWord(u"while"))
        form = whileTrue;
    else if (m_tokens.acceptWord(u"until"))
        form = untilTrue;
    else if (!atStatementEnd())
        form = times;
    if (form != forever)
        head = m_expressions.expression();
    if (form == times)
        m_tokens.expectWord(u"times");
    m_tokens.expectLineEnd();
    Block body = block();
    expectEnd(u"repeat");
    if (form == forever)
        return {RepeatForever{std::move(body)}};
    if (form == times)
        return {RepeatTimes{std::move(head), std::move(body)}};
    return {RepeatWhile{std::move(head), form == whileTrue, std::move(body)}};
}

Statement AppleScriptParser::repeatWith()
{
    const QString variable = m_expressions.variableName();
    const bool isRange = m_tokens.acceptWord(u"from");
    if (!isRange)
        m_tokens.expectWord(u"in");
    ExpressionPtr first = m_expressions.expression();
    ExpressionPtr last;
    ExpressionPtr step;
    if (isRange) {
        m_tokens.expectWord(u"to");
        last = m_expressions.expression();
        if (m_tokens.acceptWord(u"by"))
            step = m_expressions.expression();
    }
    m_tokens.expectLineEnd();
    Block body = block();
    expectEnd(u"repeat");
    if (isRange)
        return {RepeatRange{variable, std::move(first), std::move(last), std::move(step), std::move(body)}};
    return {RepeatIn{variable, std::move(first), std::move(body)}};
}

Statement AppleScriptParser::conditional()
{
    If result;
    ExpressionPtr condition = m_expressions.expression();
    const bool hasThen = m_tokens.acceptWord(u"then");
    if (hasThen && !atStatementEnd()) {
        Block branch;
        branch.push_back(statement());
        result.branches.emplace_back(std::move(condition), std::move(branch));
        if (m_tokens.acceptWord(u"else"))
            result.otherwise.push_back(statement());
        return {std::move(result)};
    }
    m_tokens.expectLineEnd();
    result.branches.emplace_back(std::move(condition), block());
    while (m_tokens.acceptWord(u"else")) {
        if (!m_tokens.acceptWord(u"if")) {
            m_tokens.expectLineEnd();
            result.otherwise = block();
            break;
        }
        condition = m_expressions.expression();
        m_tokens.acceptWord(u"then");
        m_tokens.expectLineEnd();
        result.branches.emplace_back(std::move(condition), block());
    }
    expectEnd(u"if");
    return {std::move(result)};
}

Statement AppleScriptParser::tryBlock()
{
    Try result;
    m_tokens.expectLineEnd();
    result.body = block();
    if (m_tokens.acceptWord(u"on")) {
        m_tokens.expectWord(u"error");
        if (!atStatementEnd() && !m_tokens.atWord(u"number"))
            result.messageVariable = m_expressions.variableName();
        if (m_tokens.acceptWord(u"number"))
            result.numberVariable = m_expressions.variableName();
        m_tokens.expectLineEnd();
        result.handler = block();
    }
    // Both "end try" and "end error" are written.
    expectEnd(m_tokens.atWord(u"error", 1) ? u"error" : u"try");
    return {std::move(result)};
}

Statement AppleScriptParser::raise()
{
    Raise result;
    if (!atStatementEnd() && !m_tokens.atWord(u"number"))
        result.message = m_expressions.expression();
    if (m_tokens.acceptWord(u"number"))
        result.number = m_expressions.expression();
    return {std::move(result)};
}

Statement AppleScriptParser::move()
{
    ExpressionPtr target = m_expressions.reference();
    m_tokens.expectWord(u"to");
    return {Move{std::move(target), m_expressions.reference()}};
}

} // namespace randblatt
