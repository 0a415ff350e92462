#pragma once

#include "settings/PreferenceValue.h"
#include "settings/StoreResult.h"

#include <QList>

#include <memory>

struct sqlite3;

namespace randblatt {

/// Copies the store at `path`, with what is in its log, to a single file at `target`, whose folder is made
/// for the user alone; nothing is there before all of it is, and has been read again. `exclusive` is the only
/// connection there can be, where it is so.
[[nodiscard]] StoreResult copyStore(const QString &path, const std::shared_ptr<sqlite3> &exclusive,
                                    const QString &target);

/// The folder of the copies that are made every day of the store at `path`.
[[nodiscard]] QString copiesFolder(const QString &path);

/// What the latest of them holds of the user's values; nothing where there is none.
[[nodiscard]] QList<StoredRow> latestCopy(const QString &path);

/// Where a store waits to take the place of the one at `path` at the next start.
[[nodiscard]] QString chosenStore(const QString &path);

/// Has it take that place. The name under which the one before is kept; none where nothing changed.
[[nodiscard]] QString takeChosenStore(const QString &path);

} // namespace randblatt
