#pragma once

#include "platform/notes/AppleScriptValue.h"

#include <QString>

#include <memory>
#include <utility>
#include <variant>
#include <vector>

/// The syntax tree of a script. A parser bounds its depth, so that it can be walked and destroyed by
/// recursion.
namespace randblatt::applescript {

struct Expression;
using ExpressionPtr = std::unique_ptr<const Expression>;

enum class ElementClass { account, folder, note, item, character };

enum class UnaryOperator { negate, plus, logicalNot };

enum class BinaryOperator {
    logicalOr,
    logicalAnd,
    equal,
    notEqual,
    less,
    greater,
    lessOrEqual,
    greaterOrEqual,
    contains,
    doesNotContain,
    isIn,
    isNotIn,
    startsWith,
    endsWith,
    concatenate,
    add,
    subtract,
    multiply,
    divide,
    integerDivide,
    modulo,
    power,
};

/// Which of a container's elements are meant.
struct Selector
{
    enum class Kind {
        every,
        key,        ///< by position if the value is a number, by name if it is a text
        identifier, ///< by id
        range,      ///< from one position through another
        filter,     ///< those of which an expression about them is true
    };

    Kind kind = Kind::every;
    ExpressionPtr first;
    ExpressionPtr last;
};

struct Literal
{
    AppleScriptValue value;
};
struct Variable
{
    QString name;
};
struct ListLiteral
{
    std::vector<ExpressionPtr> items;
};
struct RecordLiteral
{
    std::vector<std::pair<QString, ExpressionPtr>> fields;
};
struct Unary
{
    UnaryOperator operation;
    ExpressionPtr operand;
};
struct Binary
{
    BinaryOperator operation;
    ExpressionPtr left;
    ExpressionPtr right;
};
struct Coercion
{
    ExpressionPtr operand;
    AppleScriptType type;
};
/// The object that `tell` addresses.
struct Target
{
};
struct Application
{
    QString name;
};
/// Without a container: of the object that `tell` addresses.
struct Property
{
    QString name;
    ExpressionPtr container;
};
struct Elements
{
    ElementClass elementClass;
    Selector selector;
    ExpressionPtr container;
};
struct Count
{
    ExpressionPtr operand;
};
struct Exists
{
    ExpressionPtr operand;
};
struct Make
{
    ElementClass elementClass;
    ExpressionPtr location;
    ExpressionPtr properties;
};

struct Expression
{
    std::variant<Literal, Variable, ListLiteral, RecordLiteral, Unary, Binary, Coercion, Target, Application,
                 Property, Elements, Count, Exists, Make>
        node;
    /// The height of the tree under this node, itself included.
    int height = 1;
};

struct Statement;
using Block = std::vector<Statement>;

struct Tell
{
    ExpressionPtr target;
    Block body;
};
struct Assign
{
    ExpressionPtr target;
    ExpressionPtr value;
};
struct RepeatForever
{
    Block body;
};
struct RepeatTimes
{
    ExpressionPtr count;
    Block body;
};
struct RepeatWhile
{
    ExpressionPtr condition;
    /// The value of the condition with which the loop goes on.
    bool expected;
    Block body;
};
struct RepeatIn
{
    QString variable;
    ExpressionPtr items;
    Block body;
};
struct RepeatRange
{
    QString variable;
    ExpressionPtr first;
    ExpressionPtr last;
    ExpressionPtr step;
    Block body;
};
struct ExitRepeat
{
};
struct If
{
    std::vector<std::pair<ExpressionPtr, Block>> branches;
    Block otherwise;
};
struct Try
{
    Block body;
    QString messageVariable;
    QString numberVariable;
    Block handler;
};
struct Return
{
    ExpressionPtr value;
};
struct Raise
{
    ExpressionPtr message;
    ExpressionPtr number;
};
struct Delete
{
    ExpressionPtr target;
};
struct Move
{
    ExpressionPtr target;
    ExpressionPtr location;
};
struct Evaluate
{
    ExpressionPtr expression;
};

struct Statement
{
    std::variant<Tell, Assign, RepeatForever, RepeatTimes, RepeatWhile, RepeatIn, RepeatRange, ExitRepeat, If,
                 Try, Return, Raise, Delete, Move, Evaluate>
        node;
};

} // namespace randblatt::applescript
