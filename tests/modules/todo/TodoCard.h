#pragma once

#include "modules/todo/TodoModule.h"
#include "settings/AppSettings.h"
#include "settings/Preferences.h"
#include "support/Fakes.h"
#include "support/ViewTest.h"

#include <QTest>

namespace randblatt {

/// What the module is handed: a card with the module's view above, its quick menu below, and an ear for the
/// right clicks that the view leaves to the card.
inline QUrl cardSource()
{
    static const QByteArray qml = R"(
        import QtQuick
        import Randblatt.Controls
        FocusScope {
            id: root
            required property var view
            required property url viewSource
            required property var menu
            required property url menuSource
            required property real textScale
            property int rightClicks: 0
            readonly property CardAppearance look: CardAppearance { textScale: root.textScale }
            MouseArea { anchors.fill: parent; acceptedButtons: Qt.RightButton; onPressed: ++root.rightClicks }
            Loader {
                objectName: "content"
                width: parent.width
                height: parent.height - 80
                focus: true
                Component.onCompleted: setSource(root.viewSource, Object.assign({ appearance: root.look }, root.view))
            }
            Loader {
                width: parent.width
                anchors.bottom: parent.bottom
                Component.onCompleted: setSource(root.menuSource, root.menu)
            }
        })";
    return QUrl(QStringLiteral("data:text/plain;base64,") + QString::fromLatin1(qml.toBase64()));
}

/// The to-do card in a window.
struct TodoCard
{
    struct Task
    {
        QString title;
        TodoStatus status = TodoStatus::backlog;
    };

    Preferences preferences{Preferences::inMemory()};
    FakeLoginItem loginItem;
    AppSettings settings{preferences, loginItem};
    TodoModule module{settings, preferences};
    TodoStore *store = &module.store();
    std::unique_ptr<ViewTest> view;

    explicit TodoCard(const QList<Task> &tasks, TodoViewMode mode = TodoViewMode::list,
                      const QSize &size = QSize(392, 360), double textScale = 1.0)
    {
        settings.setTodoViewMode(mode);
        for (const Task &task : tasks)
            store->add(task.title, task.status);
        show(size, textScale);
    }

    /// Makes the view, or makes it anew, as the panel does.
    void show(const QSize &size, double textScale = 1.0)
    {
        view.reset();
        const ViewDescription content = module.makeView();
        const ViewDescription menu = module.makeQuickMenu();
        view = std::make_unique<ViewTest>(cardSource(),
                                          QVariantMap{{QStringLiteral("view"), content.properties},
                                                      {QStringLiteral("viewSource"), content.source},
                                                      {QStringLiteral("menu"), menu.properties},
                                                      {QStringLiteral("menuSource"), menu.source},
                                                      {QStringLiteral("textScale"), textScale}},
                                          QSize(size.width(), size.height() + 80));
    }

    /// The items of that name which are seen in the window, top to bottom.
    [[nodiscard]] QList<QQuickItem *> seen(const QString &name) const
    {
        QList<QQuickItem *> items = view->findAll(name);
        items.removeIf([&](const QQuickItem *item) {
            const int x = ViewTest::centre(item).x();
            return x < 0 || x >= view->window().width();
        });
        return items;
    }
    [[nodiscard]] QStringList texts(const QString &name) const
    {
        QStringList texts;
        for (const QQuickItem *item : seen(name))
            texts.append(item->property(item->property("title").isValid() ? "title" : "text").toString());
        return texts;
    }
    [[nodiscard]] bool isInSight(const QQuickItem *item) const
    {
        const QQuickItem *list = view->find(QStringLiteral("todoList"));
        return list->mapRectToScene(list->boundingRect()).contains(ViewTest::centre(item));
    }
    /// Opens the title of a row for editing, by keyboard.
    void edit(int row)
    {
        view->click(seen(QStringLiteral("rowTitle")).first());
        view->press(Qt::Key_Home);
        for (int step = 0; step < row; ++step)
            view->press(Qt::Key_Down);
        view->press(Qt::Key_F2);
    }
    [[nodiscard]] QString focused() const
    {
        const QQuickItem *item = view->window().activeFocusItem();
        return item == nullptr ? QString() : item->objectName();
    }
    [[nodiscard]] QStringList titles(TodoStatus status) const
    {
        QStringList titles;
        for (const TodoItem &item : store->items(status))
            titles.append(item.title);
        return titles;
    }
};

} // namespace randblatt
