#pragma once

#include "modules/todo/TodoActions.h"
#include "modules/todo/TodoStore.h"
#include "modules/todo/TodoTaskModel.h"
#include "settings/SidebarModule.h"

#include <QVariantList>

namespace randblatt {

class AppSettings;

/// The to-do list: tasks in three states, shown as a list or as a board.
class TodoModule : public SidebarModule
{
    Q_OBJECT

public:
    /// Loads the stored tasks. `settings` and `preferences` are borrowed and must outlive the module.
    TodoModule(AppSettings &settings, Preferences &preferences, QObject *parent = nullptr);

    [[nodiscard]] QString id() const override;
    [[nodiscard]] QString title() const override;
    [[nodiscard]] QString systemImage() const override;
    [[nodiscard]] ViewDescription makeView() const override;
    [[nodiscard]] ViewDescription makeQuickMenu() const override;

    [[nodiscard]] QString dropOffer(bool hasText, const QList<QUrl> &urls) const override;
    bool takeDrop(const QString &text, const QList<QUrl> &urls) override;

    [[nodiscard]] TodoStore &store() { return *m_store; }

private:
    AppSettings &m_settings;
    TodoStore *m_store;
    TodoActions *m_actions;
    TodoTaskModel *m_tasks;
    QVariantList m_columns;
};

} // namespace randblatt
