#include "settings/RowCoding.h"

#include <QJsonDocument>
#include <QStringEncoder>

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace randblatt {

namespace {

constexpr std::array typeNames{"string", "boolean", "double", "array", "dictionary", "data"};
static_assert(typeNames.size() == std::variant_size_v<PreferenceValue>);

// Four lanes of eight bytes each, so that a scratch pad of 100 kB takes microseconds. The store keeps the
// sums: what they are made of must not change.
class Sum
{
public:
    void add(const char *data, qsizetype size)
    {
        addWord(static_cast<quint64>(size));
        qsizetype at = 0;
        for (; at + stripe <= size; at += stripe) {
            for (size_t lane = 0; lane < m_lanes.size(); ++lane)
                mix(m_lanes[lane], word(data + at + static_cast<qsizetype>(lane * sizeof(quint64))));
        }
        for (; at < size; at += static_cast<qsizetype>(sizeof(quint64))) {
            std::array<char, sizeof(quint64)> last{};
            std::copy_n(data + at, std::min<qsizetype>(size - at, sizeof(quint64)), last.begin());
            addWord(word(last.data()));
        }
    }

    /// Never 0.
    [[nodiscard]] qint64 result() const
    {
        quint64 sum = 0;
        for (const quint64 lane : m_lanes)
            mix(sum, lane);
        sum ^= sum >> 29U;
        return sum == 0 ? 1 : static_cast<qint64>(sum);
    }

private:
    static constexpr qsizetype stripe = 4 * sizeof(quint64);

    static quint64 word(const char *data)
    {
        quint64 value = 0;
        std::memcpy(&value, data, sizeof value);
        return value;
    }
    static void mix(quint64 &lane, quint64 value)
    {
        lane = std::rotl((lane ^ value) * 0x9e3779b97f4a7c15U, 31) + 0x2545f4914f6cdd1dU;
    }
    void addWord(quint64 value)
    {
        mix(m_lanes[m_next], value);
        m_next = (m_next + 1) % m_lanes.size();
    }

    std::array<quint64, 4> m_lanes{1, 2, 3, 4};
    size_t m_next = 0;
};

qint64 sumOf(const QByteArray &key, size_t type, const char *data, qsizetype size)
{
    Sum sum;
    sum.add(key.constData(), key.size());
    const char kind = static_cast<char>(type);
    sum.add(&kind, 1);
    sum.add(data, size);
    return sum.result();
}

QByteArray json(const QJsonDocument &document)
{
    return document.toJson(QJsonDocument::Compact);
}

template <typename Number>
QByteArray rawBytes(Number number)
{
    return {reinterpret_cast<const char *>(&number), sizeof number};
}

void encode(const PreferenceValue &value, QByteArray &buffer)
{
    if (const QString *text = std::get_if<QString>(&value)) {
        QStringEncoder encoder(QStringConverter::Utf8);
        buffer.resize(encoder.requiredSpace(text->size()));
        buffer.resize(encoder.appendToBuffer(buffer.data(), *text) - buffer.constData());
    } else if (const bool *boolean = std::get_if<bool>(&value)) {
        buffer = rawBytes<qint64>(*boolean ? 1 : 0);
    } else if (const double *number = std::get_if<double>(&value)) {
        buffer = rawBytes(*number);
    } else if (const QJsonArray *array = std::get_if<QJsonArray>(&value)) {
        buffer = json(QJsonDocument(*array));
    } else if (const QJsonObject *object = std::get_if<QJsonObject>(&value)) {
        buffer = json(QJsonDocument(*object));
    } else {
        buffer = std::get<QByteArray>(value);
    }
}

} // namespace

BoundValue::BoundValue(sqlite3_stmt *statement, int typeIndex, const PreferenceValue &value,
                       QByteArray &buffer)
    : m_type(value.index())
    , m_buffer(buffer)
{
    encode(value, m_buffer);
    sqlite3_bind_text(statement, typeIndex, typeNames.at(m_type), -1, SQLITE_STATIC);
    const int index = typeIndex + 1;
    // A null pointer would bind NULL instead of nothing.
    const char *data = m_buffer.isEmpty() ? "" : m_buffer.constData();
    const auto size = static_cast<int>(m_buffer.size());
    if (const bool *boolean = std::get_if<bool>(&value))
        sqlite3_bind_int(statement, index, *boolean ? 1 : 0);
    else if (const double *number = std::get_if<double>(&value))
        sqlite3_bind_double(statement, index, *number);
    else if (std::holds_alternative<QByteArray>(value))
        sqlite3_bind_blob(statement, index, data, size, SQLITE_STATIC);
    else
        sqlite3_bind_text(statement, index, data, size, SQLITE_STATIC);
}

qint64 BoundValue::sum(const QByteArray &key) const
{
    return sumOf(key, m_type, m_buffer.constData(), m_buffer.size());
}

QByteArray columnBytes(sqlite3_stmt *statement, int column)
{
    const auto *data = static_cast<const char *>(sqlite3_column_blob(statement, column));
    return {data, sqlite3_column_bytes(statement, column)};
}

std::optional<PreferenceValue> columnValue(sqlite3_stmt *statement, int column)
{
    const QByteArray type = columnBytes(statement, column);
    const int index = column + 1;
    const int storage = sqlite3_column_type(statement, index);
    if (type == "string" && storage == SQLITE_TEXT)
        return QString::fromUtf8(columnBytes(statement, index));
    if (type == "boolean" && storage == SQLITE_INTEGER)
        return sqlite3_column_int(statement, index) != 0;
    if (type == "double" && (storage == SQLITE_FLOAT || storage == SQLITE_INTEGER))
        return sqlite3_column_double(statement, index);
    if (type == "data" && storage == SQLITE_BLOB)
        return columnBytes(statement, index);
    if (storage == SQLITE_TEXT) {
        const QJsonDocument document = QJsonDocument::fromJson(columnBytes(statement, index));
        if (type == "array" && document.isArray())
            return document.array();
        if (type == "dictionary" && document.isObject())
            return document.object();
    }
    return std::nullopt;
}

qint64 columnSum(sqlite3_stmt *statement, int column, const QByteArray &key)
{
    const QByteArray name = columnBytes(statement, column);
    const auto type = std::find(typeNames.cbegin(), typeNames.cend(), name);
    if (type == typeNames.cend())
        return 0;
    const int index = column + 1;
    QByteArray bytes;
    if (name == "boolean")
        bytes = rawBytes<qint64>(sqlite3_column_int64(statement, index));
    else if (name == "double")
        bytes = rawBytes(sqlite3_column_double(statement, index));
    else
        bytes = columnBytes(statement, index);
    return sumOf(key, static_cast<size_t>(type - typeNames.cbegin()), bytes.constData(), bytes.size());
}

} // namespace randblatt
