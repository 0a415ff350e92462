#pragma once

#include "modules/todo/TodoTaskModel.h"

namespace randblatt {

/// One column of the board: a status and its tasks.
class TodoColumn : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The to-do module makes its columns.")
    Q_PROPERTY(QString status READ status CONSTANT FINAL)
    Q_PROPERTY(QString label READ label CONSTANT FINAL)
    Q_PROPERTY(QString symbol READ symbol CONSTANT FINAL)
    Q_PROPERTY(randblatt::TodoTaskModel *tasks READ tasks CONSTANT FINAL)

public:
    /// `store` is borrowed and must outlive the column.
    TodoColumn(const TodoStore &store, const TodoStatusCase &status, QObject *parent = nullptr)
        : QObject(parent)
        , m_status(status)
        , m_tasks(new TodoTaskModel(store, {{status.value}}, this))
    {
    }

    [[nodiscard]] QString status() const { return m_status.name; }
    [[nodiscard]] QString label() const { return m_status.label.toString(); }
    [[nodiscard]] QString symbol() const { return m_status.symbol.toString(); }
    [[nodiscard]] TodoTaskModel *tasks() const { return m_tasks; }

private:
    TodoStatusCase m_status;
    TodoTaskModel *m_tasks;
};

} // namespace randblatt
