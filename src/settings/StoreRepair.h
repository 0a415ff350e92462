#pragma once

#include "settings/PreferenceValue.h"
#include "settings/StoreResult.h"

#include <QList>

namespace randblatt {

/// Why a store is kept: it is damaged and about to be replaced, so that its bytes only get another name; or
/// it goes on being written to, so that they are copied, because of its log or of a value that nobody knew.
enum class Keeping { damagedFile, damagedLog, overwritten };

/// Keeps the store at `path` as it is, with its log, under a dated name beside it. The name, or none where
/// there is no room for it.
[[nodiscard]] QString keepAside(const QString &path, Keeping keeping);

/// Puts a new store with these rows in the place of the one at `path`, whose log goes. Until everything is on
/// the disk the old one stays.
[[nodiscard]] StoreResult replaceStore(const QString &path, const QList<StoredRow> &rows);

/// Puts the store at `source`, which goes, in the place of the one at `path`, whose log goes.
[[nodiscard]] StoreResult moveIntoPlace(const QString &source, const QString &path);

} // namespace randblatt
