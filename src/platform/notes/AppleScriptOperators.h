#pragma once

#include "platform/notes/AppleScriptSyntax.h"
#include "platform/notes/AppleScriptValue.h"

namespace randblatt::applescript {

/// The value of an operator with a value on either side; `and` and `or` take both sides as computed. Throws
/// AppleScriptError where the values do not suit the operator.
[[nodiscard]] AppleScriptValue applied(BinaryOperator operation, const AppleScriptValue &left,
                                       const AppleScriptValue &right);

} // namespace randblatt::applescript
