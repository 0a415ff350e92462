#include "platform/notes/AppleScriptOperators.h"

#include "platform/notes/AppleScriptError.h"

#include <algorithm>
#include <cmath>

namespace randblatt::applescript {

using namespace Qt::StringLiterals;

namespace {

using Value = AppleScriptValue;

/// Looking for a part can take as many comparisons as both lengths multiplied.
constexpr qint64 mostCharactersCompared = 10'000'000'000;
constexpr qint64 mostItemsCompared = 100'000'000;

void checkEffort(qint64 wholeLength, qint64 partLength, qint64 most)
{
    if (partLength > 0 && wholeLength / partLength > 0 && wholeLength > most / partLength)
        throw AppleScriptError{u"Für eine Suche ist das zu lang."_s, applescripterror::outOfMemory};
}

/// Whether the items of `part` stand in `whole` one after another, from `position` on.
bool standsAt(const Value::Items &whole, const Value::Items &part, std::size_t position)
{
    return position + part.size() <= whole.size() &&
           std::equal(part.cbegin(), part.cend(), whole.cbegin() + static_cast<std::ptrdiff_t>(position),
                      [](const Value &a, const Value &b) { return a.equals(b); });
}

enum class Place { anywhere, start, end };

bool contained(const Value &whole, const Value &part, Place place)
{
    if (whole.isList()) {
        const Value::Items items = *whole.items();
        const Value::Items parts = part.isList() ? *part.items() : Value::Items{part};
        if (place == Place::start)
            return standsAt(items, parts, 0);
        if (place == Place::end)
            return parts.size() <= items.size() && standsAt(items, parts, items.size() - parts.size());
        checkEffort(static_cast<qint64>(items.size()), static_cast<qint64>(parts.size()), mostItemsCompared);
        for (std::size_t position = 0; position + parts.size() <= items.size(); ++position) {
            if (standsAt(items, parts, position))
                return true;
        }
        return false;
    }
    if (const Value::Fields *fields = whole.fields(); fields != nullptr && part.fields() != nullptr) {
        return std::all_of(part.fields()->cbegin(), part.fields()->cend(), [&](const Value::Field &wanted) {
            return std::any_of(fields->cbegin(), fields->cend(), [&](const Value::Field &field) {
                return field.first == wanted.first && field.second.equals(wanted.second);
            });
        });
    }
    const QString text = whole.asText();
    const QString sought = part.asText();
    if (place == Place::start)
        return text.startsWith(sought, Qt::CaseInsensitive);
    if (place == Place::end)
        return text.endsWith(sought, Qt::CaseInsensitive);
    checkEffort(text.size(), sought.size(), mostCharactersCompared);
    return text.contains(sought, Qt::CaseInsensitive);
}

/// A number as an integer if it is one and `operands` were integers.
Value number(double result, bool integers)
{
    constexpr double exactlyRepresented = 9007199254740992.0;
    if (integers && std::abs(result) < exactlyRepresented)
        return Value(static_cast<qint64>(result));
    return Value(result);
}

Value calculated(BinaryOperator operation, const Value &leftValue, const Value &rightValue)
{
    const Value leftNumber = leftValue.coerced(AppleScriptType::number);
    const Value rightNumber = rightValue.coerced(AppleScriptType::number);
    const double left = leftNumber.asReal();
    const double right = rightNumber.asReal();
    const bool integers = leftNumber.isInteger() && rightNumber.isInteger();
    const bool divides = operation == BinaryOperator::divide || operation == BinaryOperator::integerDivide ||
                         operation == BinaryOperator::modulo;
    if (divides && right == 0.0)
        throw AppleScriptError{u"Durch null kann nicht geteilt werden."_s, applescripterror::divisionByZero};
    switch (operation) {
    case BinaryOperator::add:
        return number(left + right, integers);
    case BinaryOperator::subtract:
        return number(left - right, integers);
    case BinaryOperator::multiply:
        return number(left * right, integers);
    case BinaryOperator::divide:
        return Value(left / right);
    case BinaryOperator::integerDivide:
        return number(std::trunc(left / right), true);
    case BinaryOperator::modulo:
        return number(std::fmod(left, right), integers);
    default:
        return Value(std::pow(left, right));
    }
}

} // namespace

Value applied(BinaryOperator operation, const Value &left, const Value &right)
{
    using enum BinaryOperator;
    switch (operation) {
    case logicalOr:
        return Value(left.asBoolean() || right.asBoolean());
    case logicalAnd:
        return Value(left.asBoolean() && right.asBoolean());
    case equal:
        return Value(left.equals(right));
    case notEqual:
        return Value(!left.equals(right));
    case less:
        return Value(left.compare(right) < 0);
    case greater:
        return Value(left.compare(right) > 0);
    case lessOrEqual:
        return Value(left.compare(right) <= 0);
    case greaterOrEqual:
        return Value(left.compare(right) >= 0);
    case contains:
        return Value(contained(left, right, Place::anywhere));
    case doesNotContain:
        return Value(!contained(left, right, Place::anywhere));
    case isIn:
        return Value(contained(right, left, Place::anywhere));
    case isNotIn:
        return Value(!contained(right, left, Place::anywhere));
    case startsWith:
        return Value(contained(left, right, Place::start));
    case endsWith:
        return Value(contained(left, right, Place::end));
    case concatenate:
        return left.concatenated(right);
    case add:
    case subtract:
    case multiply:
    case divide:
    case integerDivide:
    case modulo:
    case power:
        return calculated(operation, left, right);
    }
    return {};
}

} // namespace randblatt::applescript
