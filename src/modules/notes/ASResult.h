#pragma once

#include <QString>

namespace randblatt {

struct ScriptOutcome;

/// The outcome of one script run, as the notes module looks at it.
struct ASResult
{
    enum class Kind { success, failure };

    Kind kind = Kind::success;
    /// The script's result, empty where it gave nothing; or the message of the error, shortened to what a
    /// card can show.
    QString text;

    /// What a script runner's outcome comes to.
    [[nodiscard]] static ASResult fromOutcome(const ScriptOutcome &outcome);

    [[nodiscard]] bool isSuccess() const { return kind == Kind::success; }
};

} // namespace randblatt
