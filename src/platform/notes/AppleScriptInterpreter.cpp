#include "platform/notes/AppleScriptInterpreter.h"

#include "platform/notes/AppleScriptError.h"
#include "platform/notes/NotesObjectModel.h"

#include <QScopedValueRollback>

namespace randblatt {

using namespace Qt::StringLiterals;
using namespace applescript;

using Value = AppleScriptValue;

AppleScriptInterpreter::AppleScriptInterpreter(NotesObjectModel &application, const AppleScriptLimits &limits)
    : m_application(application)
    , m_limits(limits)
    , m_deadline(limits.time)
{
}

Value AppleScriptInterpreter::run(const Block &script)
{
    runBlock(script);
    return m_result;
}

auto AppleScriptInterpreter::runBlock(const Block &block) -> Flow
{
    for (const Statement &statement : block) {
        checkTime();
        const Flow flow = std::visit([this](const auto &node) { return execute(node); }, statement.node);
        if (flow != Flow::next)
            return flow;
    }
    return Flow::next;
}

auto AppleScriptInterpreter::execute(const Tell &tell) -> Flow
{
    const QScopedValueRollback scope(m_target, Value(object(tell.target)));
    return runBlock(tell.body);
}

auto AppleScriptInterpreter::execute(const Set &set) -> Flow
{
    const Value value = evaluate(*set.value);
    if (const auto *variable = std::get_if<Variable>(&set.target->node)) {
        m_variables.insert(variable->name, value);
    } else {
        const auto &property = std::get<Property>(set.target->node);
        m_application.setProperty(object(property.owner), property.name, value.toText());
    }
    return Flow::next;
}

auto AppleScriptInterpreter::execute(const Repeat &repeat) -> Flow
{
    const Value items = evaluate(*repeat.items);
    for (const AppleScriptObject &item : items.toObjects()) {
        m_variables.insert(repeat.variable, Value(item));
        const Flow flow = runBlock(repeat.body);
        if (flow != Flow::next)
            return flow == Flow::exitRepeat ? Flow::next : flow;
    }
    return Flow::next;
}

auto AppleScriptInterpreter::execute(const ExitRepeat &) -> Flow
{
    return Flow::exitRepeat;
}

auto AppleScriptInterpreter::execute(const If &conditional) -> Flow
{
    return evaluate(*conditional.condition).toBoolean() ? runBlock(conditional.then) : Flow::next;
}

auto AppleScriptInterpreter::execute(const Return &result) -> Flow
{
    m_result = evaluate(*result.value);
    return Flow::returned;
}

auto AppleScriptInterpreter::execute(const MakeNote &make) -> Flow
{
    const auto name = make.name ? std::optional(evaluate(*make.name).toText()) : std::nullopt;
    const QString body = make.body ? evaluate(*make.body).toText() : QString();
    m_application.makeNote(object({}), name, body);
    return Flow::next;
}

auto AppleScriptInterpreter::execute(const Delete &deletion) -> Flow
{
    m_application.remove(object(deletion.note));
    return Flow::next;
}

auto AppleScriptInterpreter::execute(const Move &move) -> Flow
{
    const AppleScriptObject note = object(move.note);
    m_application.move(note, object(move.folder));
    return Flow::next;
}

Value AppleScriptInterpreter::evaluate(const Expression &expression)
{
    return std::visit([this](const auto &node) { return compute(node); }, expression.node);
}

Value AppleScriptInterpreter::compute(const Literal &literal)
{
    return literal.value;
}

Value AppleScriptInterpreter::compute(const Variable &variable)
{
    const auto it = m_variables.constFind(variable.name);
    if (it == m_variables.cend())
        throw AppleScriptError{u"Die Variable „%1“ ist nicht definiert."_s.arg(variable.name),
                               applescripterror::undefinedVariable};
    return *it;
}

Value AppleScriptInterpreter::compute(const Application &application)
{
    return Value(m_application.application(application.name));
}

Value AppleScriptInterpreter::compute(const Property &property)
{
    return m_application.property(object(property.owner), property.name);
}

Value AppleScriptInterpreter::compute(const Element &element)
{
    const AppleScriptObject owner = object(element.owner);
    const Value key = evaluate(*element.key);
    if (element.kind == AppleScriptObject::Kind::account)
        return Value(m_application.account(owner, key.toInteger()));
    return Value(element.kind == AppleScriptObject::Kind::folder ? m_application.folder(owner, key.toText())
                                                                 : m_application.note(owner, key.toText()));
}

Value AppleScriptInterpreter::compute(const Elements &elements)
{
    Value::Objects all = m_application.elements(object(elements.owner), elements.kind);
    if (elements.condition) {
        const QScopedValueRollback scope(m_target);
        std::erase_if(all, [&](const AppleScriptObject &candidate) {
            checkTime();
            m_target = Value(candidate);
            return !evaluate(*elements.condition).toBoolean();
        });
    }
    return Value(std::move(all));
}

Value AppleScriptInterpreter::compute(const Binary &binary)
{
    const Value left = evaluate(*binary.left);
    // The right side is not computed where the left one decides.
    if (binary.operation == Operator::logicalOr && left.toBoolean())
        return Value(true);
    const Value right = evaluate(*binary.right);
    switch (binary.operation) {
    case Operator::logicalOr:
        return Value(right.toBoolean());
    case Operator::isAtLeast:
        return Value(left.toInteger() >= right.toInteger());
    case Operator::contains:
        return Value(left.toText().contains(right.toText(), Qt::CaseInsensitive));
    case Operator::join:
        return Value(joined(left.toText(), right.toText()));
    case Operator::add:
        break;
    }
    qint64 sum = 0;
    if (qAddOverflow(left.toInteger(), right.toInteger(), &sum))
        throw AppleScriptError{u"Eine Zahl wird zu groß."_s, applescripterror::cannotCoerce};
    return Value(sum);
}

AppleScriptObject AppleScriptInterpreter::object(const ExpressionPtr &expression)
{
    return expression ? evaluate(*expression).toObject() : m_target.toObject();
}

QString AppleScriptInterpreter::joined(const QString &left, const QString &right) const
{
    if (left.size() + right.size() > m_limits.longestText)
        throw AppleScriptError{u"Das Skript wurde beendet, weil es zu viel Speicher brauchte."_s,
                               applescripterror::outOfMemory};
    return left + right;
}

void AppleScriptInterpreter::checkTime() const
{
    if (m_deadline.hasExpired())
        throw AppleScriptError{u"Das Skript wurde beendet, weil es zu lange lief."_s,
                               applescripterror::timedOut};
}

} // namespace randblatt
