#include "modules/todo/TodoItem.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

#include <numeric>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

void appendEscaped(QByteArray &json, char character)
{
    constexpr auto hexDigits = "0123456789abcdef";
    switch (character) {
    case '"':
    case '\\':
    case '/':
        json += '\\';
        json += character;
        return;
    case '\b':
        json += "\\b";
        return;
    case '\f':
        json += "\\f";
        return;
    case '\n':
        json += "\\n";
        return;
    case '\r':
        json += "\\r";
        return;
    case '\t':
        json += "\\t";
        return;
    default:
        break;
    }
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x20) {
        json += "\\u00";
        json += hexDigits[byte >> 4];
        json += hexDigits[byte & 0xf];
    } else {
        json += character;
    }
}

void appendString(QByteArray &json, const QByteArray &utf8)
{
    json += '"';
    for (const char character : utf8)
        appendEscaped(json, character);
    json += '"';
}

/// The UUID if the text is its canonical form of 36 characters, in either case.
std::optional<QUuid> uuid(const QJsonValue &value)
{
    const QString text = value.toString();
    const QUuid id = QUuid::fromString(text);
    if (id.toString(QUuid::WithoutBraces).compare(text, Qt::CaseInsensitive) != 0)
        return std::nullopt;
    return id;
}

std::optional<qint64> integer(const QJsonValue &value)
{
    // What is no integer comes back as the given default.
    const qint64 number = value.toInteger(0);
    if (number == 0 && value.toInteger(1) != 0)
        return std::nullopt;
    return number;
}

std::optional<TodoItem> decodeItem(const QJsonValue &value)
{
    const QJsonObject object = value.toObject();
    const auto id = uuid(object.value("id"_L1));
    const QJsonValue title = object.value("title"_L1);
    const auto status = fromRawString<TodoStatus>(object.value("status"_L1).toString());
    const QJsonValue createdAt = object.value("createdAt"_L1);
    const auto order = integer(object.value("order"_L1));
    if (!id || !title.isString() || !status || !createdAt.isDouble() || !order)
        return std::nullopt;
    return TodoItem{*id, title.toString(), *status, createdAt.toDouble(), *order};
}

} // namespace

QByteArray encodeItem(const TodoItem &item)
{
    const QByteArray title = item.title.toUtf8();
    QByteArray json;
    json.reserve(title.size() + 160);
    json += R"({"id":")" + item.id.toByteArray(QUuid::WithoutBraces).toUpper();
    json += R"(","title":)";
    appendString(json, title);
    json += R"(,"status":")" + rawString(item.status).toLatin1();
    json += R"(","createdAt":)" + QByteArray::number(item.createdAt, 'g', QLocale::FloatingPointShortest);
    json += R"(,"order":)" + QByteArray::number(item.order) + '}';
    return json;
}

QByteArray joinItems(const QList<QByteArray> &encoded)
{
    QByteArray json;
    json.reserve(
        std::accumulate(encoded.cbegin(), encoded.cend(), qsizetype(2),
                        [](qsizetype sum, const QByteArray &item) { return sum + item.size() + 1; }));
    json += '[';
    for (const QByteArray &item : encoded) {
        if (json.size() > 1)
            json += ',';
        json += item;
    }
    json += ']';
    return json;
}

std::optional<QList<TodoItem>> decodeItems(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isArray())
        return std::nullopt;
    const QJsonArray array = document.array();
    QList<TodoItem> items;
    items.reserve(array.size());
    for (const auto &value : array) {
        const auto item = decodeItem(value);
        if (!item)
            return std::nullopt;
        items.append(*item);
    }
    return items;
}

} // namespace randblatt
