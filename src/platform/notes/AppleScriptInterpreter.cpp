#include "platform/notes/AppleScriptInterpreter.h"

#include "platform/notes/AppleScriptError.h"
#include "platform/notes/NotesObjectModel.h"

#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;
using namespace applescript;

namespace {

using Value = AppleScriptValue;

/// Addresses another object for as long as it lives.
class TargetScope
{
public:
    TargetScope(AppleScriptEvaluator &evaluator, Value target)
        : m_evaluator(evaluator)
        , m_outer(evaluator.setTarget(std::move(target)))
    {
    }
    ~TargetScope() { m_evaluator.setTarget(std::move(m_outer)); }
    TargetScope(const TargetScope &) = delete;
    TargetScope &operator=(const TargetScope &) = delete;

private:
    AppleScriptEvaluator &m_evaluator;
    Value m_outer;
};

} // namespace

AppleScriptInterpreter::AppleScriptInterpreter(NotesObjectModel &application, const AppleScriptLimits &limits)
    : m_application(application)
    , m_meter(limits)
    , m_evaluator(application, m_meter)
{
}

Value AppleScriptInterpreter::run(const Block &script)
{
    m_result = {};
    runBlock(script);
    return m_result.settled();
}

AppleScriptInterpreter::Flow AppleScriptInterpreter::runBlock(const Block &block)
{
    for (const Statement &statement : block) {
        m_meter.step();
        const Flow flow = std::visit([this](const auto &node) { return execute(node); }, statement.node);
        if (flow != Flow::next)
            return flow;
    }
    return Flow::next;
}

AppleScriptInterpreter::Flow AppleScriptInterpreter::runBody(const Block &body)
{
    // An empty body takes its step as well, so that no loop runs for ever.
    m_meter.step();
    return runBlock(body);
}

AppleScriptInterpreter::Flow AppleScriptInterpreter::execute(const Tell &tell)
{
    const TargetScope scope(m_evaluator, m_evaluator.evaluate(*tell.target));
    return runBlock(tell.body);
}

AppleScriptInterpreter::Flow AppleScriptInterpreter::execute(const Assign &assign)
{
    const Value value = m_evaluator.evaluate(*assign.value);
    m_evaluator.assign(*assign.target, value);
    // Setting an object's property gives nothing, as other commands to the application that have no reply.
    m_result = std::holds_alternative<Variable>(assign.target->node) ? value : Value();
    return Flow::next;
}

AppleScriptInterpreter::Flow AppleScriptInterpreter::execute(const RepeatForever &repeat)
{
    while (true) {
        const Flow flow = runBody(repeat.body);
        if (flow != Flow::next)
            return flow == Flow::exitRepeat ? Flow::next : flow;
    }
}

AppleScriptInterpreter::Flow AppleScriptInterpreter::execute(const RepeatTimes &repeat)
{
    const qint64 count = m_evaluator.evaluate(*repeat.count).asInteger();
    for (qint64 i = 0; i < count; ++i) {
        const Flow flow = runBody(repeat.body);
        if (flow != Flow::next)
            return flow == Flow::exitRepeat ? Flow::next : flow;
    }
    return Flow::next;
}

AppleScriptInterpreter::Flow AppleScriptInterpreter::execute(const RepeatWhile &repeat)
{
    while (m_evaluator.isTrue(*repeat.condition) == repeat.expected) {
        const Flow flow = runBody(repeat.body);
        if (flow != Flow::next)
            return flow == Flow::exitRepeat ? Flow::next : flow;
    }
    return Flow::next;
}

AppleScriptInterpreter::Flow AppleScriptInterpreter::execute(const RepeatIn &repeat)
{
    const Value items = m_evaluator.evaluate(*repeat.items);
    // A set of objects can be large, so its list is not made; any value but a list is repeated over once.
    const auto list = items.objects() != nullptr ? std::nullopt : items.items();
    const std::size_t count = items.objects() != nullptr ? items.objects()->size() : list ? list->size() : 1;
    for (std::size_t i = 0; i < count; ++i) {
        const Value item = items.objects() != nullptr ? Value(items.objects()->at(i))
                           : list                     ? list->at(i)
                                                      : items;
        m_evaluator.setVariable(repeat.variable, item);
        const Flow flow = runBody(repeat.body);
        if (flow != Flow::next)
            return flow == Flow::exitRepeat ? Flow::next : flow;
    }
    return Flow::next;
}

AppleScriptInterpreter::Flow AppleScriptInterpreter::execute(const RepeatRange &repeat)
{
    const qint64 first = m_evaluator.evaluate(*repeat.first).asInteger();
    const qint64 last = m_evaluator.evaluate(*repeat.last).asInteger();
    const qint64 step = repeat.step ? m_evaluator.evaluate(*repeat.step).asInteger() : 1;
    if (step == 0)
        throw AppleScriptError{u"Eine Schleife kann nicht in Schritten von 0 zählen."_s,
                               applescripterror::notUnderstood};
    for (qint64 i = first; step > 0 ? i <= last : i >= last; i += step) {
        m_evaluator.setVariable(repeat.variable, Value(i));
        const Flow flow = runBody(repeat.body);
        if (flow != Flow::next)
            return flow == Flow::exitRepeat ? Flow::next : flow;
    }
    return Flow::next;
}

AppleScriptInterpreter::Flow AppleScriptInterpreter::execute(const ExitRepeat &)
{
    return Flow::exitRepeat;
}

AppleScriptInterpreter::Flow AppleScriptInterpreter::execute(const If &conditional)
{
    for (const auto &[condition, branch] : conditional.branches) {
        if (m_evaluator.isTrue(*condition))
            return runBlock(branch);
    }
    return runBlock(conditional.otherwise);
}

AppleScriptInterpreter::Flow AppleScriptInterpreter::execute(const Try &attempt)
{
    try {
        return runBlock(attempt.body);
    } catch (const AppleScriptError &error) {
        if (!error.catchable)
            throw;
        if (!attempt.messageVariable.isEmpty())
            m_evaluator.setVariable(attempt.messageVariable, Value(error.message));
        if (!attempt.numberVariable.isEmpty())
            m_evaluator.setVariable(attempt.numberVariable, Value(static_cast<qint64>(error.number)));
    }
    return runBlock(attempt.handler);
}

AppleScriptInterpreter::Flow AppleScriptInterpreter::execute(const Return &result)
{
    m_result = result.value ? m_evaluator.evaluate(*result.value) : Value();
    return Flow::returned;
}

AppleScriptInterpreter::Flow AppleScriptInterpreter::execute(const Raise &raise)
{
    const QString message =
        raise.message ? m_evaluator.evaluate(*raise.message).asText() : u"Ein Fehler ist aufgetreten."_s;
    const qint64 number =
        raise.number ? m_evaluator.evaluate(*raise.number).asInteger() : applescripterror::raisedByScript;
    throw AppleScriptError{message, static_cast<int>(number)};
}

AppleScriptInterpreter::Flow AppleScriptInterpreter::execute(const Delete &deletion)
{
    for (const AppleScriptObject &doomed : objects(*deletion.target))
        m_application.remove(doomed);
    m_result = {};
    return Flow::next;
}

AppleScriptInterpreter::Flow AppleScriptInterpreter::execute(const Move &move)
{
    const Value::Objects moved = objects(*move.target);
    const Value location = m_evaluator.evaluate(*move.location);
    for (const AppleScriptObject &object : moved) {
        if (location.object() == nullptr) {
            throw AppleScriptError{
                u"An die Stelle %1 kann nichts bewegt werden."_s.arg(location.description()),
                applescripterror::notUnderstood};
        }
        m_application.move(object, *location.object());
    }
    m_result = {};
    return Flow::next;
}

Value::Objects AppleScriptInterpreter::objects(const Expression &expression)
{
    const Value value = m_evaluator.evaluate(expression).settled();
    Value::Objects result;
    for (const Value &item : value.isList() ? *value.items() : Value::Items{value}) {
        m_meter.step();
        if (item.object() == nullptr) {
            throw AppleScriptError{u"%1 ist kein Objekt eines Programms."_s.arg(item.description()),
                                   applescripterror::notUnderstood};
        }
        result.push_back(*item.object());
    }
    return result;
}

AppleScriptInterpreter::Flow AppleScriptInterpreter::execute(const Evaluate &evaluation)
{
    m_result = m_evaluator.evaluate(*evaluation.expression);
    return Flow::next;
}

} // namespace randblatt
