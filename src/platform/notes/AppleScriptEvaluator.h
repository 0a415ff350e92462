#pragma once

#include "platform/notes/AppleScriptLimits.h"
#include "platform/notes/AppleScriptSyntax.h"
#include "platform/notes/AppleScriptValue.h"

#include <QHash>
#include <QString>

#include <optional>
#include <utility>

namespace randblatt {

class NotesObjectModel;

/// Computes the expressions of a script. Throws AppleScriptError.
class AppleScriptEvaluator
{
public:
    /// Both are borrowed.
    AppleScriptEvaluator(NotesObjectModel &application, AppleScriptMeter &meter);

    /// The value of an expression. A set of objects is not yet made a list.
    [[nodiscard]] AppleScriptValue evaluate(const applescript::Expression &expression);
    [[nodiscard]] bool isTrue(const applescript::Expression &condition);

    /// Gives a variable or a property of an object a value.
    void assign(const applescript::Expression &target, const AppleScriptValue &value);
    void setVariable(const QString &name, const AppleScriptValue &value);

    /// Makes `target` the object that is addressed, and gives the one that was before.
    AppleScriptValue setTarget(AppleScriptValue target) { return std::exchange(m_target, std::move(target)); }

private:
    [[nodiscard]] AppleScriptValue compute(const applescript::Literal &literal);
    [[nodiscard]] AppleScriptValue compute(const applescript::Variable &variable);
    [[nodiscard]] AppleScriptValue compute(const applescript::ListLiteral &list);
    [[nodiscard]] AppleScriptValue compute(const applescript::RecordLiteral &record);
    [[nodiscard]] AppleScriptValue compute(const applescript::Unary &unary);
    [[nodiscard]] AppleScriptValue compute(const applescript::Binary &binary);
    [[nodiscard]] AppleScriptValue compute(const applescript::Coercion &coercion);
    [[nodiscard]] AppleScriptValue compute(const applescript::Target &target);
    [[nodiscard]] AppleScriptValue compute(const applescript::Application &application);
    [[nodiscard]] AppleScriptValue compute(const applescript::Property &property);
    [[nodiscard]] AppleScriptValue compute(const applescript::Elements &elements);
    [[nodiscard]] AppleScriptValue compute(const applescript::Count &count);
    [[nodiscard]] AppleScriptValue compute(const applescript::Exists &exists);
    [[nodiscard]] AppleScriptValue compute(const applescript::Make &make);

    [[nodiscard]] AppleScriptValue container(const applescript::ExpressionPtr &expression);
    [[nodiscard]] AppleScriptValue propertyOf(const AppleScriptValue &owner, const QString &name);
    [[nodiscard]] AppleScriptValue allElements(const AppleScriptValue &owner,
                                               applescript::ElementClass elementClass);
    [[nodiscard]] AppleScriptValue elementAt(const AppleScriptValue &owner,
                                             applescript::ElementClass elementClass,
                                             const AppleScriptValue &key);
    [[nodiscard]] AppleScriptValue range(const AppleScriptValue &all, const AppleScriptValue &first,
                                         const AppleScriptValue &last);
    [[nodiscard]] AppleScriptValue filtered(const AppleScriptValue &all,
                                            const applescript::Expression &condition);

    NotesObjectModel &m_application;
    AppleScriptMeter &m_meter;
    QHash<QString, AppleScriptValue> m_variables;
    AppleScriptValue m_target;
};

} // namespace randblatt
