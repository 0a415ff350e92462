#pragma once

#include <QString>

#include <optional>

namespace randblatt {

/// Why a script did not come to its end.
struct ScriptFailure
{
    /// What happened, for people; none where the facility gives a number alone.
    std::optional<QString> message;
    /// The facility's error number, 0 where it is not known.
    int number = 0;
};

/// How a script ended.
struct ScriptOutcome
{
    /// The script's result as text; none where it gave nothing, or a value that has no text form.
    std::optional<QString> text;
    /// Set when the script could not be compiled or was ended by an error; `text` is then none.
    std::optional<ScriptFailure> failure;
};

/// Runs AppleScript for this application.
class ScriptRunner
{
public:
    ScriptRunner() = default;
    virtual ~ScriptRunner() = default;
    ScriptRunner(const ScriptRunner &) = delete;
    ScriptRunner &operator=(const ScriptRunner &) = delete;

    /// Compiles and runs `source`, and returns when it has ended, which may take seconds. Every source, also
    /// one that is no AppleScript, gives an outcome; nothing is thrown. May be called on any thread, but on
    /// one at a time. A facility that has only a printed form for a value without text may return that.
    virtual ScriptOutcome run(const QString &source) = 0;
};

} // namespace randblatt
