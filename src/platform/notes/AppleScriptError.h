#pragma once

#include <QString>

namespace randblatt {

/// The facility's numbers for the errors that the interpreter raises.
namespace applescripterror {
constexpr int noSuchObject = -1728;
constexpr int invalidIndex = -1719;
constexpr int cannotCoerce = -1700;
constexpr int notUnderstood = -1708;
constexpr int timedOut = -1712;
constexpr int outOfMemory = -108;
constexpr int syntax = -2741;
constexpr int undefinedVariable = -2753;
constexpr int cannotSet = -10006;
constexpr int handlerFailed = -10000;
} // namespace applescripterror

/// An error of a script: thrown where it happens, caught by whoever runs the script.
struct AppleScriptError
{
    /// For people, in German.
    QString message;
    int number;
};

} // namespace randblatt
