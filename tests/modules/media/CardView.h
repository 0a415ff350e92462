#pragma once

#include "settings/SidebarModule.h"
#include "support/ViewTest.h"

namespace randblatt {

/// A window with a module's view as its card makes it, in a card's inner size.
class CardView : public ViewTest
{
public:
    explicit CardView(SidebarModule &module, const QSize &size = QSize(392, 200))
        : ViewTest(document(), {{QStringLiteral("module"), QVariant::fromValue(&module)}}, size)
    {
    }

private:
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
                    anchors.fill: parent
                    focus: true
                    Component.onCompleted: {
                        const view = root.module.makeView()
                        setSource(view.source, Object.assign({ appearance: root.appearance }, view.properties))
                    }
                }
            })";
        return QUrl(QStringLiteral("data:text/plain;base64,") + QString::fromLatin1(qml.toBase64()));
    }
};

} // namespace randblatt
