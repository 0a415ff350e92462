#pragma once

#include <QByteArray>
#include <QHashFunctions>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <optional>
#include <variant>

namespace randblatt {

/// What a preference can hold. The alternatives are the stored types string, boolean, double, array,
/// dictionary and data, in this order; a number that was stored as a string is a string.
using PreferenceValue = std::variant<QString, bool, double, QJsonArray, QJsonObject, QByteArray>;

enum class StoreTable { preferences, drafts };

/// A row's table and key.
struct StorePlace
{
    StoreTable table = StoreTable::preferences;
    QString key;

    friend bool operator==(const StorePlace &, const StorePlace &) = default;
    friend size_t qHash(const StorePlace &place, size_t seed)
    {
        return qHashMulti(seed, static_cast<int>(place.table), place.key);
    }
};

/// What a row of the store holds.
struct StoredRow
{
    StorePlace place;
    /// None where what is stored contradicts its type.
    std::optional<PreferenceValue> value;
    /// Whether it is what was written, as far as can be told.
    bool isIntact = true;
};

} // namespace randblatt
