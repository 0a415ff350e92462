#include "modules/todo/TodoStore.h"

#include <QDateTime>
#include <QLoggingCategory>

#include <algorithm>
#include <limits>
#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcTodo, "quillbar.todo")

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
    StoreHealth &health = preferences.health();
    connect(&health, &StoreHealth::valueArrived, this,
            [this](const QString &arrived, const PreferenceValue &stored) {
                if (arrived == key())
                    join(stored);
            });
    connect(&health, &StoreHealth::changed, this, [this] {
        if (m_hasUnsaved)
            save();
    });
}

TodoStore::~TodoStore()
{
    if (m_hasUnsaved)
        save();
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

const TodoItem *TodoStore::find(const QUuid &id) const
{
    const int position = positionOf(id);
    return position < 0 ? nullptr : &m_items.at(position);
}

void TodoStore::load()
{
    auto stored = m_preferences.value(key());
    if (!stored)
        return;
    const auto *json = std::get_if<QByteArray>(&*stored);
    auto items = json != nullptr ? decodeItems(*json) : std::nullopt;
    if (!items) {
        m_undecodable = std::move(stored);
        return;
    }
    replaceAll(*items);
}

void TodoStore::join(const PreferenceValue &stored)
{
    if (m_preferences.value(key()) == stored) {
        load();
        return;
    }
    const auto *json = std::get_if<QByteArray>(&stored);
    auto items = json != nullptr ? decodeItems(*json) : std::nullopt;
    if (!items) {
        m_undecodable = stored;
    } else {
        qint64 order = 0;
        for (const TodoItem &item : std::as_const(*items))
            order = std::max(order, item.order);
        for (TodoItem own : std::as_const(m_items)) {
            const auto same = std::find_if(items->begin(), items->end(),
                                           [&](const TodoItem &item) { return item.id == own.id; });
            if (same != items->end()) {
                *same = own;
                continue;
            }
            if (order < std::numeric_limits<qint64>::max())
                own.order = ++order;
            items->append(own);
        }
        replaceAll(*items);
    }
    save();
}

void TodoStore::replaceAll(const QList<TodoItem> &items)
{
    m_items = items;
    m_encoded.clear();
    m_encoded.reserve(m_items.size());
    std::transform(m_items.cbegin(), m_items.cend(), std::back_inserter(m_encoded), encodeItem);
    Q_EMIT loaded();
}

void TodoStore::save()
{
    m_hasUnsaved = m_undecodable && !keepUndecodable();
    if (m_hasUnsaved)
        return;
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
    if (!trimmed.isEmpty())
        setTitle(id, trimmed);
}

void TodoStore::restoreTitle(const QUuid &id, const QString &title)
{
    setTitle(id, title);
}

void TodoStore::setTitle(const QUuid &id, const QString &title)
{
    const int position = positionOf(id);
    if (position < 0)
        return;
    TodoItem item = m_items.at(position);
    item.title = title;
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
    const TodoItem *item = find(id);
    if (item != nullptr)
        setStatus(id, item->status == TodoStatus::done ? TodoStatus::backlog : TodoStatus::done);
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

void TodoStore::restore(const QList<PlacedItem> &items)
{
    QList<int> restored;
    QList<TodoItem> all;
    QList<QByteArray> allJson;
    const qsizetype count = m_items.size() + items.size();
    all.reserve(count);
    allJson.reserve(count);
    auto next = items.cbegin();
    for (qsizetype old = 0; all.size() < count;) {
        if (next != items.cend() && (next->position <= all.size() || old == m_items.size())) {
            restored.append(static_cast<int>(all.size()));
            all.append(next->item);
            allJson.append(encodeItem(next->item));
            ++next;
        } else {
            all.append(m_items.at(old));
            allJson.append(m_encoded.at(old));
            ++old;
        }
    }
    m_items = all;
    m_encoded = allJson;
    save();
    if (!restored.isEmpty())
        Q_EMIT itemsRestored(restored);
}

bool TodoStore::keepUndecodable()
{
    if (m_undecodableKey.isEmpty()) {
        const auto time = static_cast<qint64>((m_clock() + referenceDate) * 1000.0);
        const QString name =
            key() + u".unlesbar-"_s + QDateTime::fromMSecsSinceEpoch(time).toString(u"yyyy-MM-dd'T'HHmmss"_s);
        m_undecodableKey = name;
        for (int copy = 2; m_preferences.value(m_undecodableKey); ++copy)
            m_undecodableKey = name + u'-' + QString::number(copy);
    }
    if (!m_preferences.setValue(m_undecodableKey, *m_undecodable))
        return false;
    qCWarning(lcTodo, "Aufgaben unlesbar, aufgehoben als Einstellung „%ls“",
              qUtf16Printable(m_undecodableKey));
    m_undecodable.reset();
    m_undecodableKey.clear();
    return true;
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
