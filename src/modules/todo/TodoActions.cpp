#include "modules/todo/TodoActions.h"

#include "settings/UndoHistory.h"

#include <QPointer>

#include <algorithm>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

/// What happened to a task, for the offer to undo it. The verb comes first: of a long title the end is cut.
QString message(const QString &what, const QString &title)
{
    constexpr int longest = 80;
    QString shown = title.left(2 * longest).simplified();
    if (shown.size() > longest)
        shown = shown.left(longest - 1) + u'…';
    return shown.isEmpty() ? what : u"%1: „%2“"_s.arg(what, shown);
}

QString statusMessage(TodoStatus from, const TodoItem &item)
{
    if (item.status == TodoStatus::backlog && from == TodoStatus::done)
        return message(u"Wieder offen"_s, item.title);
    const auto &cases = rawValues<TodoStatus>;
    const auto *status = std::find_if(
        cases.begin(), cases.end(), [&](const TodoStatusCase &known) { return known.value == item.status; });
    return message(status->label.toString(), item.title);
}

} // namespace

TodoActions::TodoActions(TodoStore &store, UndoHistory &history, Preferences &preferences, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_history(history)
    , m_newTitle(preferences, u"todo.add"_s)
    , m_edit(preferences, u"todo.edit"_s)
{
    rescueEdit();
    connect(&m_store, &TodoStore::itemsRemoved, this, &TodoActions::rescueEdit);
}

void TodoActions::add()
{
    m_store.add(m_newTitle.text());
    m_newTitle.clear();
}

bool TodoActions::addAll(const QStringList &titles)
{
    constexpr qsizetype most = 500;
    if (titles.isEmpty() || titles.size() > most)
        return false;
    QList<TodoItem> added;
    for (const QString &title : titles) {
        const auto before = m_store.items().size();
        m_store.add(title);
        if (m_store.items().size() > before)
            added.append(m_store.items().constLast());
    }
    if (added.isEmpty())
        return false;
    offer(added.size() == 1 ? message(u"Hinzugefügt"_s, added.first().title)
                            : u"%1 Aufgaben hinzugefügt"_s.arg(added.size()),
          [this, added] {
              for (const TodoItem &item : added) {
                  const TodoItem *present = m_store.find(item.id);
                  if (present && present->title == item.title && present->status == item.status)
                      m_store.deleteItem(item.id);
              }
          });
    return true;
}

void TodoActions::toggleDone(const QUuid &id)
{
    changeStatus(id, [&] { m_store.toggleDone(id); });
}

void TodoActions::setStatusName(const QUuid &id, const QString &name)
{
    changeStatus(id, [&] { m_store.setStatusName(id, name); });
}

void TodoActions::changeStatus(const QUuid &id, const std::function<void()> &change)
{
    const TodoItem *item = m_store.find(id);
    if (item == nullptr)
        return;
    const TodoItem before = *item;
    change();
    const TodoItem after = *m_store.find(before.id);
    if (after.status == before.status)
        return;
    offer(statusMessage(before.status, after), [this, before, status = after.status] {
        const TodoItem *now = m_store.find(before.id);
        if (now == nullptr || now->status != status)
            return;
        m_store.setStatus(before.id, before.status);
        Q_EMIT returned(before.id);
    });
}

void TodoActions::rename(const QUuid &id, const QString &title)
{
    const TodoItem *item = m_store.find(id);
    if (item == nullptr)
        return;
    const TodoItem before = *item;
    m_store.rename(id, title);
    const QString given = m_store.find(before.id)->title;
    if (given == before.title)
        return;
    offer(message(u"Umbenannt"_s, given), [this, before, given] {
        const TodoItem *now = m_store.find(before.id);
        if (now == nullptr || now->title != given)
            return;
        m_store.restoreTitle(before.id, before.title);
        Q_EMIT returned(before.id);
    });
}

void TodoActions::deleteTask(const QUuid &id)
{
    // A copy: the caller's id may be that of a task that goes away.
    const auto isDeleted = [id = id](const TodoItem &item) { return item.id == id; };
    commitEditOf(placed(isDeleted));
    const QList<PlacedItem> deleted = placed(isDeleted);
    m_store.deleteItem(id);
    if (!deleted.isEmpty())
        offerRestoring(message(u"Gelöscht"_s, deleted.first().item.title), deleted);
}

void TodoActions::removeDone()
{
    const auto isDone = [](const TodoItem &item) { return item.status == TodoStatus::done; };
    commitEditOf(placed(isDone));
    const QList<PlacedItem> deleted = placed(isDone);
    m_store.removeDone();
    if (deleted.size() == 1)
        offerRestoring(message(u"Gelöscht"_s, deleted.first().item.title), deleted);
    else if (!deleted.isEmpty())
        offerRestoring(u"%1 Aufgaben gelöscht"_s.arg(deleted.size()), deleted);
}

template <typename Predicate>
QList<PlacedItem> TodoActions::placed(Predicate predicate) const
{
    QList<PlacedItem> found;
    const QList<TodoItem> &items = m_store.items();
    for (int position = 0; position < items.size(); ++position) {
        if (predicate(items.at(position)))
            found.append({position, items.at(position)});
    }
    return found;
}

// What is being typed for a task that is to be deleted comes back with it.
void TodoActions::commitEditOf(const QList<PlacedItem> &items)
{
    const QUuid edited = editedTask();
    const auto isEdited = [&](const PlacedItem &placed) { return placed.item.id == edited; };
    if (std::any_of(items.cbegin(), items.cend(), isEdited))
        commitEdit();
}

void TodoActions::offerRestoring(const QString &message, const QList<PlacedItem> &items)
{
    // Whatever else changed positions has been taken back by then.
    offer(message, [this, items] {
        m_store.restore(items);
        Q_EMIT returned(items.first().item.id);
    });
}

void TodoActions::offer(const QString &message, const std::function<void()> &undo)
{
    m_history.push(message, [self = QPointer<TodoActions>(this), undo] {
        if (self)
            undo();
    });
}

QUuid TodoActions::editedTask() const
{
    return QUuid::fromString(m_edit.value(u"task"_s).toString());
}

QString TodoActions::editText() const
{
    return m_edit.text();
}

void TodoActions::setEditText(const QString &text)
{
    if (const QUuid id = editedTask(); !id.isNull())
        setEdit(id, text);
}

void TodoActions::beginEdit(const QUuid &id)
{
    const TodoItem *item = m_store.find(id);
    if (item == nullptr || id == editedTask())
        return;
    const QUuid task = item->id;
    commitEdit();
    setEdit(task, m_store.find(task)->title);
}

void TodoActions::commitEdit()
{
    const QUuid id = editedTask();
    if (id.isNull())
        return;
    rename(id, editText());
    setEdit({}, {});
}

void TodoActions::dropEdit()
{
    const QUuid id = editedTask();
    const QString text = editText();
    setEdit({}, {});
    const TodoItem *item = m_store.find(id);
    if (item == nullptr || text.trimmed().isEmpty() || text.trimmed() == item->title)
        return;
    offer(u"Änderung verworfen"_s, [this, id, text] { resumeEdit(id, text); });
}

void TodoActions::resumeEdit(const QUuid &id, const QString &text)
{
    if (m_store.find(id) == nullptr) {
        keepText(text);
        return;
    }
    commitEdit();
    setEdit(id, text);
    Q_EMIT returned(id);
}

/// The task that was being edited may be gone, with what was stored for it.
void TodoActions::rescueEdit()
{
    if (m_edit.isEmpty() || m_store.find(editedTask()) != nullptr)
        return;
    keepText(editText());
    setEdit({}, {});
}

/// For a text whose task is gone: it is at hand in the field for new tasks.
void TodoActions::keepText(const QString &text)
{
    const QString there = m_newTitle.text();
    const QLatin1StringView between(there.isEmpty() || text.isEmpty() ? "" : " ");
    m_newTitle.setText(there + between + text);
}

void TodoActions::setEdit(const QUuid &id, const QString &text)
{
    const bool isOther = id != editedTask();
    const bool isOtherText = text != editText();
    m_edit.setValues(id.isNull()
                         ? QJsonObject()
                         : QJsonObject{{u"task"_s, id.toString(QUuid::WithoutBraces)}, {u"text"_s, text}});
    // The text first: the editor of a task comes with it.
    if (isOtherText)
        Q_EMIT editTextChanged();
    if (isOther)
        Q_EMIT editedTaskChanged();
}

} // namespace randblatt
