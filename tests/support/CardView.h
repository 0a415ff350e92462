#pragma once

#include "settings/SidebarModule.h"
#include "support/ViewTest.h"

namespace randblatt {

/// A window with a module's view as its card makes it, in a card's inner size, and below it the module's
/// quick menu, if it has one.
class CardView : public ViewTest
{
public:
    explicit CardView(SidebarModule &module, const QSize &size = QSize(392, 200))
        : ViewTest(document(), {{QStringLiteral("module"), QVariant::fromValue(&module)}},
                   size + QSize(0, module.makeQuickMenu().source.isEmpty() ? 0 : menuHeight))
    {
    }

    /// The items of that name which are seen in the window, top to bottom.
    [[nodiscard]] QList<QQuickItem *> seen(const QString &name) const
    {
        QList<QQuickItem *> items = findAll(name);
        items.removeIf(
            [&](const QQuickItem *item) { return !QRectF(root()->boundingRect()).contains(centre(item)); });
        return items;
    }
    /// What those items say.
    [[nodiscard]] QStringList texts(const QString &name) const
    {
        QStringList texts;
        for (const QQuickItem *item : seen(name))
            texts.append(item->property("text").toString());
        return texts;
    }
    /// The name of the item that has the keyboard.
    [[nodiscard]] QString focused()
    {
        const QQuickItem *item = window().activeFocusItem();
        return item == nullptr ? QString() : item->objectName();
    }

private:
    static constexpr int menuHeight = 80;

    [[nodiscard]] static QUrl document()
    {
        const QByteArray qml = R"(
            import QtQuick
            import Randblatt.Controls
            import Randblatt.Settings
            Rectangle {
                id: root
                required property SidebarModule module
                property CardAppearance appearance: CardAppearance {}
                color: "#20283c"
                Loader {
                    width: parent.width
                    height: parent.height - (menu.item ? 80 : 0)
                    focus: true
                    Component.onCompleted: {
                        const view = root.module.makeView()
                        setSource(view.source, Object.assign({ appearance: root.appearance }, view.properties))
                    }
                }
                Loader {
                    id: menu
                    width: parent.width
                    anchors.bottom: parent.bottom
                    Component.onCompleted: {
                        const content = root.module.makeQuickMenu()
                        if (content.source.toString() !== "")
                            setSource(content.source, content.properties)
                    }
                }
            })";
        return QUrl(QStringLiteral("data:text/plain,") + QString::fromLatin1(qml.toPercentEncoding()));
    }
};

} // namespace randblatt
