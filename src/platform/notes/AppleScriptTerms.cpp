#include "platform/notes/AppleScriptTerms.h"

#include <QSet>
#include <QStringList>

#include <array>

namespace randblatt::applescript {

using namespace Qt::StringLiterals;

namespace {

using enum BinaryOperator;

struct Operator
{
    QStringView words;
    BinaryOperator operation;
    int level;
};

// Where one spelling begins like another, the longer one stands first.
constexpr std::array operators{
    Operator{u"or", logicalOr, 1},
    Operator{u"and", logicalAnd, 2},
    Operator{u"=", equal, equalityLevel},
    Operator{u"≠", notEqual, equalityLevel},
    Operator{u"equals", equal, equalityLevel},
    Operator{u"equal to", equal, equalityLevel},
    Operator{u"does not equal", notEqual, equalityLevel},
    Operator{u"doesn't equal", notEqual, equalityLevel},
    Operator{u"<", less, comparisonLevel},
    Operator{u">", greater, comparisonLevel},
    Operator{u"≤", lessOrEqual, comparisonLevel},
    Operator{u"≥", greaterOrEqual, comparisonLevel},
    Operator{u"is greater than or equal to", greaterOrEqual, comparisonLevel},
    Operator{u"is less than or equal to", lessOrEqual, comparisonLevel},
    Operator{u"is not greater than or equal to", less, comparisonLevel},
    Operator{u"is not less than or equal to", greater, comparisonLevel},
    Operator{u"is greater than", greater, comparisonLevel},
    Operator{u"is less than", less, comparisonLevel},
    Operator{u"is not greater than", lessOrEqual, comparisonLevel},
    Operator{u"isn't greater than", lessOrEqual, comparisonLevel},
    Operator{u"is not less than", greaterOrEqual, comparisonLevel},
    Operator{u"isn't less than", greaterOrEqual, comparisonLevel},
    Operator{u"greater than or equal to", greaterOrEqual, comparisonLevel},
    Operator{u"less than or equal to", lessOrEqual, comparisonLevel},
    Operator{u"greater than", greater, comparisonLevel},
    Operator{u"less than", less, comparisonLevel},
    Operator{u"comes before", less, comparisonLevel},
    Operator{u"comes after", greater, comparisonLevel},
    Operator{u"does not come before", greaterOrEqual, comparisonLevel},
    Operator{u"doesn't come before", greaterOrEqual, comparisonLevel},
    Operator{u"does not come after", lessOrEqual, comparisonLevel},
    Operator{u"doesn't come after", lessOrEqual, comparisonLevel},
    Operator{u"contains", contains, comparisonLevel},
    Operator{u"does not contain", doesNotContain, comparisonLevel},
    Operator{u"doesn't contain", doesNotContain, comparisonLevel},
    Operator{u"is not in", isNotIn, comparisonLevel},
    Operator{u"isn't in", isNotIn, comparisonLevel},
    Operator{u"is not contained by", isNotIn, comparisonLevel},
    Operator{u"is in", isIn, comparisonLevel},
    Operator{u"is contained by", isIn, comparisonLevel},
    Operator{u"starts with", startsWith, comparisonLevel},
    Operator{u"start with", startsWith, comparisonLevel},
    Operator{u"begins with", startsWith, comparisonLevel},
    Operator{u"ends with", endsWith, comparisonLevel},
    Operator{u"end with", endsWith, comparisonLevel},
    Operator{u"is not equal to", notEqual, equalityLevel},
    Operator{u"isn't equal to", notEqual, equalityLevel},
    Operator{u"is equal to", equal, equalityLevel},
    Operator{u"is not", notEqual, equalityLevel},
    Operator{u"isn't", notEqual, equalityLevel},
    Operator{u"is", equal, equalityLevel},
    Operator{u"&", concatenate, 7},
    Operator{u"+", add, 8},
    Operator{u"-", subtract, 8},
    Operator{u"*", multiply, 9},
    Operator{u"/", divide, 9},
    Operator{u"div", integerDivide, 9},
    Operator{u"mod", modulo, 9},
    Operator{u"^", power, powerLevel},
};

struct ClassName
{
    QStringView singular;
    QStringView plural;
    ElementClass elementClass;
    bool ofApplication;
};

constexpr std::array classNames{
    ClassName{u"account", u"accounts", ElementClass::account, true},
    ClassName{u"folder", u"folders", ElementClass::folder, true},
    ClassName{u"note", u"notes", ElementClass::note, true},
    ClassName{u"item", u"items", ElementClass::item, false},
    ClassName{u"character", u"characters", ElementClass::character, false},
};

// Two words first.
constexpr std::array<QStringView, 9> propertyNames{
    u"modification date", u"default folder", u"default account", u"name", u"id", u"body",
    u"plaintext",         u"container",      u"class",
};

/// How many tokens the words of `phrase` are, if they stand `ahead` in `tokens`; 0 if they do not.
qsizetype matchLength(const AppleScriptTokenStream &tokens, QStringView phrase)
{
    qsizetype length = 0;
    for (const QStringView word : phrase.tokenize(u' ')) {
        if (!tokens.atWord(word, length) && !tokens.atSymbol(word, length))
            return 0;
        ++length;
    }
    return length;
}

} // namespace

std::optional<OperatorMatch> operatorAt(const AppleScriptTokenStream &tokens)
{
    for (const auto &[words, operation, level] : operators) {
        if (const qsizetype length = matchLength(tokens, words); length > 0)
            return OperatorMatch{operation, level, length};
    }
    return std::nullopt;
}

std::optional<ClassMatch> classAt(const AppleScriptTokenStream &tokens, bool inApplication, qsizetype ahead)
{
    for (const ClassName &name : classNames) {
        if (name.ofApplication && !inApplication)
            continue;
        if (tokens.atWord(name.singular, ahead))
            return ClassMatch{name.elementClass, false};
        if (tokens.atWord(name.plural, ahead))
            return ClassMatch{name.elementClass, true};
    }
    return std::nullopt;
}

std::optional<PropertyMatch> propertyAt(const AppleScriptTokenStream &tokens)
{
    for (const QStringView name : propertyNames) {
        if (const qsizetype length = matchLength(tokens, name); length > 0)
            return PropertyMatch{name.toString(), length};
    }
    return std::nullopt;
}

std::optional<AppleScriptType> typeNamed(const QString &word)
{
    using enum AppleScriptType;
    if (word == "text"_L1 || word == "string"_L1)
        return text;
    if (word == "integer"_L1)
        return integer;
    if (word == "real"_L1)
        return real;
    if (word == "number"_L1)
        return number;
    if (word == "boolean"_L1)
        return boolean;
    if (word == "list"_L1)
        return list;
    if (word == "record"_L1)
        return record;
    if (word == "date"_L1)
        return date;
    return std::nullopt;
}

bool isReserved(const QString &word)
{
    static const QSet<QString> words = [] {
        const QStringList list =
            u"about above after against and as at back before beginning behind below beneath "
            "beside between but by considering contain contains continue copy count delete div "
            "does doesn't eighth else end equal equals error every exists exit false fifth first "
            "for fourth from front get given global if ignoring in instead into is isn't it its "
            "last local make me middle mod my new ninth not of on onto or over prop property "
            "put ref reference repeat return returning script second set seventh since sixth some "
            "tell tenth that the then third through thru timeout times to transaction true try "
            "until where while whose with without"_s.split(u' ');
        return QSet<QString>(list.cbegin(), list.cend());
    }();
    return words.contains(word);
}

} // namespace randblatt::applescript
