#include "platform/notes/AppleScriptEvaluator.h"

#include "platform/notes/AppleScriptError.h"
#include "platform/notes/AppleScriptOperators.h"
#include "platform/notes/NotesObjectModel.h"

#include <algorithm>

namespace randblatt {

using namespace Qt::StringLiterals;
using namespace applescript;

namespace {

using Value = AppleScriptValue;

[[noreturn]] void fail(int number, const QString &message)
{
    throw AppleScriptError{message, number};
}

bool isOfApplication(ElementClass elementClass)
{
    return elementClass != ElementClass::item && elementClass != ElementClass::character;
}

/// The place in a list of `length` that a script's position means: from 1, or from -1 at the end.
qint64 place(const Value &position, qint64 length)
{
    const qint64 number = position.asInteger();
    const qint64 index = number < 0 ? length + number : number - 1;
    if (number == 0 || index < 0 || index >= length) {
        fail(applescripterror::invalidIndex,
             u"Ein Element mit der Nummer %1 ist nicht vorhanden."_s.arg(number));
    }
    return index;
}

Value itemAt(const Value &all, qint64 index)
{
    if (const Value::Objects *objects = all.objects())
        return Value(objects->at(static_cast<std::size_t>(index)));
    return all.items()->at(static_cast<std::size_t>(index));
}

} // namespace

AppleScriptEvaluator::AppleScriptEvaluator(NotesObjectModel &application, AppleScriptMeter &meter)
    : m_application(application)
    , m_meter(meter)
{
}

Value AppleScriptEvaluator::evaluate(const Expression &expression)
{
    m_meter.step();
    return std::visit([this](const auto &node) { return compute(node); }, expression.node);
}

bool AppleScriptEvaluator::isTrue(const Expression &condition)
{
    return evaluate(condition).asBoolean();
}

void AppleScriptEvaluator::assign(const Expression &target, const Value &value)
{
    if (const auto *variable = std::get_if<Variable>(&target.node)) {
        setVariable(variable->name, value);
        return;
    }
    const auto &property = std::get<Property>(target.node);
    const Value owner = container(property.container);
    if (const Value::Objects *objects = owner.objects()) {
        for (const AppleScriptObject &object : *objects) {
            m_meter.step();
            m_application.setProperty(object, property.name, value.settled());
        }
    } else if (const AppleScriptObject *object = owner.object()) {
        m_application.setProperty(*object, property.name, value.settled());
    } else {
        fail(applescripterror::cannotSet,
             u"„%1“ von %2 kann nicht gesetzt werden."_s.arg(property.name, owner.description()));
    }
}

void AppleScriptEvaluator::setVariable(const QString &name, const Value &value)
{
    m_variables.insert(name, value.settled());
}

Value AppleScriptEvaluator::compute(const Literal &literal)
{
    return literal.value;
}

Value AppleScriptEvaluator::compute(const Variable &variable)
{
    const auto it = m_variables.constFind(variable.name);
    if (it == m_variables.cend()) {
        fail(applescripterror::undefinedVariable,
             u"Die Variable „%1“ ist nicht definiert."_s.arg(variable.name));
    }
    return *it;
}

Value AppleScriptEvaluator::compute(const ListLiteral &list)
{
    Value::Items items;
    items.reserve(list.items.size());
    for (const ExpressionPtr &item : list.items)
        items.push_back(evaluate(*item).settled());
    return Value(std::move(items));
}

Value AppleScriptEvaluator::compute(const RecordLiteral &record)
{
    Value::Fields fields;
    fields.reserve(record.fields.size());
    for (const auto &[name, value] : record.fields)
        fields.emplace_back(name, evaluate(*value).settled());
    return Value(std::move(fields));
}

Value AppleScriptEvaluator::compute(const Unary &unary)
{
    const Value operand = evaluate(*unary.operand);
    if (unary.operation == UnaryOperator::logicalNot)
        return Value(!operand.asBoolean());
    Value number = operand.coerced(AppleScriptType::number);
    if (unary.operation == UnaryOperator::plus)
        return number;
    return number.isInteger() ? Value(-number.asInteger()) : Value(-number.asReal());
}

Value AppleScriptEvaluator::compute(const Binary &binary)
{
    const Value left = evaluate(*binary.left);
    // The right side is not computed where the left one decides.
    if (binary.operation == BinaryOperator::logicalOr && left.asBoolean())
        return Value(true);
    if (binary.operation == BinaryOperator::logicalAnd && !left.asBoolean())
        return Value(false);
    return applied(binary.operation, left, evaluate(*binary.right));
}

Value AppleScriptEvaluator::compute(const Coercion &coercion)
{
    return evaluate(*coercion.operand).coerced(coercion.type);
}

Value AppleScriptEvaluator::compute(const Target &)
{
    return m_target;
}

Value AppleScriptEvaluator::compute(const Application &application)
{
    return Value(m_application.application(application.name));
}

Value AppleScriptEvaluator::compute(const Property &property)
{
    return propertyOf(container(property.container), property.name);
}

Value AppleScriptEvaluator::compute(const Elements &elements)
{
    const Value owner = container(elements.container);
    const Selector &selector = elements.selector;
    switch (selector.kind) {
    case Selector::Kind::every:
        return allElements(owner, elements.elementClass);
    case Selector::Kind::key:
        return elementAt(owner, elements.elementClass, evaluate(*selector.first));
    case Selector::Kind::identifier:
        if (owner.object() == nullptr || !isOfApplication(elements.elementClass))
            break;
        return Value(m_application.identified(*owner.object(), elements.elementClass,
                                              evaluate(*selector.first).asText()));
    case Selector::Kind::range:
        return range(allElements(owner, elements.elementClass), evaluate(*selector.first),
                     evaluate(*selector.last));
    case Selector::Kind::filter:
        return filtered(allElements(owner, elements.elementClass), *selector.first);
    }
    fail(applescripterror::noSuchObject, u"%1 hat keine Elemente mit Kennung."_s.arg(owner.description()));
}

Value AppleScriptEvaluator::compute(const Count &count)
{
    const Value operand = evaluate(*count.operand);
    const auto length = operand.length();
    if (!length)
        fail(applescripterror::notUnderstood, u"%1 kann nicht gezählt werden."_s.arg(operand.description()));
    return Value(*length);
}

Value AppleScriptEvaluator::compute(const Exists &exists)
{
    try {
        const Value operand = evaluate(*exists.operand);
        return Value(operand.object() != nullptr && m_application.exists(*operand.object()));
    } catch (const AppleScriptError &error) {
        if (error.number != applescripterror::noSuchObject && error.number != applescripterror::invalidIndex)
            throw;
        return Value(false);
    }
}

Value AppleScriptEvaluator::compute(const Make &make)
{
    const Value location = make.location ? evaluate(*make.location) : m_target;
    const Value properties = make.properties ? evaluate(*make.properties) : Value(Value::Fields());
    if (location.object() == nullptr) {
        fail(applescripterror::notUnderstood,
             u"An der Stelle %1 kann nichts erzeugt werden."_s.arg(location.description()));
    }
    if (properties.fields() == nullptr)
        (void)properties.coerced(AppleScriptType::record);
    return Value(m_application.make(*location.object(), make.elementClass, *properties.fields()));
}

Value AppleScriptEvaluator::container(const ExpressionPtr &expression)
{
    return expression ? evaluate(*expression) : m_target;
}

Value AppleScriptEvaluator::propertyOf(const Value &owner, const QString &name)
{
    if (const AppleScriptObject *object = owner.object())
        return m_application.property(*object, name);
    if (const Value::Objects *objects = owner.objects()) {
        Value::Items values;
        values.reserve(objects->size());
        for (const AppleScriptObject &object : *objects) {
            m_meter.step();
            values.push_back(m_application.property(object, name));
        }
        return Value(std::move(values));
    }
    if (const Value::Fields *fields = owner.fields()) {
        const auto field = std::find_if(fields->cbegin(), fields->cend(), [&](const Value::Field &candidate) {
            return candidate.first == name;
        });
        if (field != fields->cend())
            return field->second;
    }
    fail(applescripterror::noSuchObject, u"%1 hat keine Eigenschaft „%2“."_s.arg(owner.description(), name));
}

Value AppleScriptEvaluator::allElements(const Value &owner, ElementClass elementClass)
{
    if (isOfApplication(elementClass) && owner.object() != nullptr)
        return Value(m_application.elements(*owner.object(), elementClass));
    // The elements of several objects are those of each, one after another.
    if (const Value::Objects *owners = owner.objects(); owners != nullptr && isOfApplication(elementClass)) {
        Value::Objects all;
        for (const AppleScriptObject &object : *owners) {
            m_meter.step();
            const Value::Objects part = m_application.elements(object, elementClass);
            all.insert(all.end(), part.cbegin(), part.cend());
        }
        return Value(std::move(all));
    }
    const bool hasItems = elementClass == ElementClass::character ? owner.text() != nullptr
                                                                  : elementClass == ElementClass::item;
    if (hasItems) {
        if (owner.isList())
            return owner;
        if (auto items = owner.items())
            return Value(std::move(*items));
    }
    fail(applescripterror::noSuchObject, u"%1 hat keine solchen Elemente."_s.arg(owner.description()));
}

Value AppleScriptEvaluator::elementAt(const Value &owner, ElementClass elementClass, const Value &key)
{
    if (key.text() != nullptr && owner.object() != nullptr && isOfApplication(elementClass))
        return Value(m_application.named(*owner.object(), elementClass, *key.text()));
    const Value all = allElements(owner, elementClass);
    return itemAt(all, place(key, all.length().value_or(0)));
}

Value AppleScriptEvaluator::range(const Value &all, const Value &first, const Value &last)
{
    const qint64 length = all.length().value_or(0);
    const qint64 start = place(first, length);
    const qint64 end = place(last, length);
    const auto [from, through] = std::minmax(start, end);
    const auto part = [from = from, through = through](const auto &elements) {
        return std::decay_t<decltype(elements)>(elements.cbegin() + from, elements.cbegin() + through + 1);
    };
    return all.objects() != nullptr ? Value(part(*all.objects())) : Value(part(*all.items()));
}

Value AppleScriptEvaluator::filtered(const Value &all, const Expression &condition)
{
    const Value::Objects *objects = all.objects();
    if (objects == nullptr)
        fail(applescripterror::notUnderstood,
             u"Eine Liste kann nicht nach einer Bedingung durchsucht werden."_s);
    // Inside the condition, "it" and its properties are those of the object in question.
    const Value outer = m_target;
    Value::Objects result;
    try {
        for (const AppleScriptObject &object : *objects) {
            m_target = Value(object);
            if (isTrue(condition))
                result.push_back(object);
        }
    } catch (...) {
        m_target = outer;
        throw;
    }
    m_target = outer;
    return Value(std::move(result));
}

} // namespace randblatt
