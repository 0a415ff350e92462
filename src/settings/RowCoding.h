#pragma once

#include "settings/PreferenceValue.h"

struct sqlite3_stmt;

namespace randblatt {

/// A value's stored form, bound to a statement that must run before the object goes.
class BoundValue
{
public:
    /// Binds type and value to the parameters `typeIndex` and `typeIndex` + 1. `buffer` is borrowed for as
    /// long as the object lives; used again it spares the making of a new one for each write of a long text.
    BoundValue(sqlite3_stmt *statement, int typeIndex, const PreferenceValue &value, QByteArray &buffer);

    /// A check sum of the stored form under a key, as UTF-8.
    [[nodiscard]] qint64 sum(const QByteArray &key) const;

private:
    size_t m_type;
    QByteArray &m_buffer;
};

/// The columns of a statement's current row: type and value, from `column` on. None where they contradict
/// each other.
[[nodiscard]] std::optional<PreferenceValue> columnValue(sqlite3_stmt *statement, int column);
/// The check sum that BoundValue::sum() gives for the same row; 0 where it is none of the store's.
[[nodiscard]] qint64 columnSum(sqlite3_stmt *statement, int column, const QByteArray &key);
[[nodiscard]] QByteArray columnBytes(sqlite3_stmt *statement, int column);

} // namespace randblatt
