#pragma once

#include "modules/todo/TodoStatus.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUuid>

#include <optional>

namespace randblatt {

/// One task.
struct TodoItem
{
    QUuid id;
    /// Without white space at its ends.
    QString title;
    TodoStatus status = TodoStatus::backlog;
    /// Seconds since 2001-01-01 00:00:00 UTC; a double, so that a stored date comes back bit by bit.
    double createdAt = 0.0;
    /// Sort key within a status; given at creation, never changed.
    qint64 order = 0;

    friend bool operator==(const TodoItem &, const TodoItem &) = default;
};

/// The task as a JSON object in UTF-8.
[[nodiscard]] QByteArray encodeItem(const TodoItem &item);
/// The JSON array of encoded tasks.
[[nodiscard]] QByteArray joinItems(const QList<QByteArray> &encoded);
/// The tasks of a JSON array. Every task must have its five members in their types; other members are
/// ignored. None where anything is amiss.
[[nodiscard]] std::optional<QList<TodoItem>> decodeItems(const QByteArray &json);

} // namespace randblatt
