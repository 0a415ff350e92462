#include "modules/todo/TodoStore.h"

#include "settings/Preferences.h"

#include <QDateTime>
#include <QTimeZone>

#include <algorithm>
#include <limits>
#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

constexpr double referenceDate = 978307200.0; // 2001-01-01 00:00:00 UTC in seconds since 1970

double now()
{
    return static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000.0 - referenceDate;
}

bool hasLowerOrder(const TodoItem &a, const TodoItem &b)
{
    return a.order < b.order;
}

} // namespace

TodoStore::TodoStore(Preferences &preferences, QObject *parent)
    : TodoStore(preferences, now, parent)
{
}

TodoStore::TodoStore(Preferences &preferences, Clock clock, QObject *parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_clock(std::move(clock))
{
    load();
}

QString TodoStore::key()
{
    return u"todoItems.v1"_s;
}

QList<TodoItem> TodoStore::items(TodoStatus status) const
{
    QList<TodoItem> found;
    std::copy_if(m_items.cbegin(), m_items.cend(), std::back_inserter(found),
                 [&](const TodoItem &item) { return item.status == status; });
    std::stable_sort(found.begin(), found.end(), hasLowerOrder);
    return found;
}

void TodoStore::load()
{
    const auto json = m_preferences.get<QByteArray>(key());
    if (!json)
        return;
    auto items = decodeItems(*json);
    if (!items)
        return;
    m_items = std::move(*items);
    m_encoded.clear();
    m_encoded.reserve(m_items.size());
    std::transform(m_items.cbegin(), m_items.cend(), std::back_inserter(m_encoded), encodeItem);
    Q_EMIT loaded();
}

void TodoStore::save()
{
    m_preferences.setValue(key(), joinItems(m_encoded));
}

void TodoStore::add(const QString &title, TodoStatus status)
{
    const QString trimmed = title.trimmed();
    if (trimmed.isEmpty())
        return;
    m_items.append({QUuid::createUuid(), trimmed, status, m_clock(), nextOrder()});
    m_encoded.append(encodeItem(m_items.last()));
    save();
    Q_EMIT itemAdded(static_cast<int>(m_items.size()) - 1);
}

void TodoStore::rename(const QUuid &id, const QString &title)
{
    const QString trimmed = title.trimmed();
    const int position = positionOf(id);
    if (trimmed.isEmpty() || position < 0)
        return;
    TodoItem item = m_items.at(position);
    item.title = trimmed;
    replace(position, item);
}

void TodoStore::setStatus(const QUuid &id, TodoStatus status)
{
    const int position = positionOf(id);
    if (position < 0)
        return;
    TodoItem item = m_items.at(position);
    item.status = status;
    replace(position, item);
}

void TodoStore::setStatusName(const QUuid &id, const QString &name)
{
    if (const auto status = fromRawString<TodoStatus>(name))
        setStatus(id, *status);
}

void TodoStore::toggleDone(const QUuid &id)
{
    const int position = positionOf(id);
    if (position < 0)
        return;
    const bool isDone = m_items.at(position).status == TodoStatus::done;
    setStatus(id, isDone ? TodoStatus::backlog : TodoStatus::done);
}

void TodoStore::removeDone()
{
    removeIf([](const TodoItem &item) { return item.status == TodoStatus::done; });
}

void TodoStore::deleteItem(const QUuid &id)
{
    // A copy: the caller's id may be that of a task that goes away.
    removeIf([id = id](const TodoItem &item) { return item.id == id; });
}

int TodoStore::positionOf(const QUuid &id) const
{
    const auto it =
        std::find_if(m_items.cbegin(), m_items.cend(), [&](const TodoItem &item) { return item.id == id; });
    return it == m_items.cend() ? -1 : static_cast<int>(it - m_items.cbegin());
}

qint64 TodoStore::nextOrder() const
{
    if (m_items.isEmpty())
        return 1;
    const qint64 largest = std::max_element(m_items.cbegin(), m_items.cend(), hasLowerOrder)->order;
    // Only data edited by hand gets there.
    return largest == std::numeric_limits<qint64>::max() ? largest : largest + 1;
}

void TodoStore::replace(int position, const TodoItem &item)
{
    const bool changed = m_items.at(position) != item;
    if (changed) {
        m_items[position] = item;
        m_encoded[position] = encodeItem(item);
    }
    save();
    if (changed)
        Q_EMIT itemChanged(position);
}

template <typename Predicate>
void TodoStore::removeIf(Predicate isRemoved)
{
    QList<int> removed;
    QList<TodoItem> kept;
    QList<QByteArray> keptJson;
    for (int position = 0; position < m_items.size(); ++position) {
        if (isRemoved(m_items.at(position))) {
            removed.append(position);
        } else {
            kept.append(m_items.at(position));
            keptJson.append(m_encoded.at(position));
        }
    }
    m_items = kept;
    m_encoded = keptJson;
    save();
    if (!removed.isEmpty())
        Q_EMIT itemsRemoved(removed);
}

} // namespace randblatt
