#pragma once

namespace randblatt {

/// How an operation on the store's file ended.
enum class StoreResult {
    ok,
    /// Somebody else has it locked.
    busy,
    /// There is no space left, or no more of it for this user.
    full,
    /// Nothing may be written there.
    readOnly,
    /// There is no such place, or no right to it.
    unavailable,
    /// The disk reports an error.
    ioError,
    /// What is there is not what was written.
    damaged,
    /// The value itself cannot be stored.
    refused,
};

/// The result for SQLite's code; `systemError` is the errno that went with it, or 0.
[[nodiscard]] StoreResult storeResult(int code, int systemError);
/// Why, as the beginning of a German sentence, as in "Kein Platz auf dem Datenträger".
[[nodiscard]] const char *describe(StoreResult result);

} // namespace randblatt
