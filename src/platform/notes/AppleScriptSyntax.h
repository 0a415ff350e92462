#pragma once

#include "platform/notes/AppleScriptValue.h"

#include <memory>
#include <utility>
#include <variant>
#include <vector>

/// A script as a tree: what AppleScriptParser makes and AppleScriptInterpreter runs.
namespace randblatt::applescript {

struct Expression;
using ExpressionPtr = std::unique_ptr<Expression>;

struct Literal
{
    AppleScriptValue value;
};
struct Variable
{
    QString name;
};
struct Application
{
    QString name;
};
/// A property of an object; without an owner, of the one that is addressed.
struct Property
{
    QString name;
    ExpressionPtr owner;
};
/// One element of an object: the account of a number, the folder of a name or the note of an id.
struct Element
{
    AppleScriptObject::Kind kind;
    ExpressionPtr key;
    ExpressionPtr owner;
};
/// All elements of a kind, or those that fulfil a condition in which they are addressed.
struct Elements
{
    AppleScriptObject::Kind kind;
    ExpressionPtr owner;
    ExpressionPtr condition;
};
enum class Operator { logicalOr, isAtLeast, contains, join, add };
struct Binary
{
    Operator operation;
    ExpressionPtr left;
    ExpressionPtr right;
};

struct Expression
{
    std::variant<Literal, Variable, Application, Property, Element, Elements, Binary> node;
    /// Of the tree below it.
    int height = 0;
};

struct Statement;
using Block = std::vector<Statement>;

struct Tell
{
    ExpressionPtr target;
    Block body;
};
/// `target` is a Variable or a Property.
struct Set
{
    ExpressionPtr target;
    ExpressionPtr value;
};
struct Repeat
{
    QString variable;
    ExpressionPtr items;
    Block body;
};
struct ExitRepeat
{
};
struct If
{
    ExpressionPtr condition;
    Block then;
};
struct Return
{
    ExpressionPtr value;
};
struct MakeNote
{
    ExpressionPtr name;
    ExpressionPtr body;
};
struct Delete
{
    ExpressionPtr note;
};
struct Move
{
    ExpressionPtr note;
    ExpressionPtr folder;
};

struct Statement
{
    std::variant<Tell, Set, Repeat, ExitRepeat, If, Return, MakeNote, Delete, Move> node;
};

} // namespace randblatt::applescript
