#include "modules/todo/TodoModule.h"

#include "modules/todo/TodoColumn.h"
#include "settings/AppSettings.h"
#include "settings/DroppedLines.h"

namespace randblatt {

using namespace Qt::StringLiterals;

TodoModule::TodoModule(AppSettings &settings, Preferences &preferences, QObject *parent)
    : SidebarModule(parent)
    , m_settings(settings)
    , m_store(new TodoStore(preferences, this))
    , m_actions(new TodoActions(*m_store, *undoHistory(), preferences, this))
    , m_tasks(
          new TodoTaskModel(*m_store, {{TodoStatus::backlog, TodoStatus::doing}, {TodoStatus::done}}, this))
{
    for (const TodoStatusCase &status : rawValues<TodoStatus>)
        m_columns.append(QVariant::fromValue(new TodoColumn(*m_store, status, this)));
}

QString TodoModule::id() const
{
    return u"todo"_s;
}

QString TodoModule::title() const
{
    return u"To-Do"_s;
}

QString TodoModule::systemImage() const
{
    return u"checklist"_s;
}

ViewDescription TodoModule::makeView() const
{
    return {QUrl(u"qrc:/qt/qml/Randblatt/Todo/TodoRootView.qml"_s),
            {{u"actions"_s, QVariant::fromValue(m_actions)},
             {u"settings"_s, QVariant::fromValue(&m_settings)},
             {u"tasks"_s, QVariant::fromValue(m_tasks)},
             {u"columns"_s, m_columns}}};
}

ViewDescription TodoModule::makeQuickMenu() const
{
    return {QUrl(u"qrc:/qt/qml/Randblatt/Todo/TodoQuickMenu.qml"_s),
            {{u"settings"_s, QVariant::fromValue(&m_settings)}}};
}

QString TodoModule::dropOffer(bool hasText, const QList<QUrl> &urls) const
{
    return !holdsFiles(urls) && (hasText || !urls.isEmpty()) ? u"Als Aufgabe hinzufügen"_s : QString();
}

bool TodoModule::takeDrop(const QString &text, const QList<QUrl> &urls)
{
    return !holdsFiles(urls) && m_actions->addAll(droppedLines(text, urls));
}

} // namespace randblatt
