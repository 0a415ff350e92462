#include "app/ViewPreloader.h"

#include "sidebar/SidebarPanel.h"
#include "ui/controls/EngineSetup.h"

#include <QQmlEngine>

namespace randblatt {

using namespace Qt::StringLiterals;

ViewPreloader::ViewPreloader(QQmlEngine &engine)
    : m_engine(engine)
{
    prepareEngine(engine);
    preload(SidebarPanel::viewSource());
}

void ViewPreloader::preload(const QUrl &source)
{
    m_components.push_back(std::make_unique<QQmlComponent>(&m_engine, source, QQmlComponent::Asynchronous));
}

void ViewPreloader::finishImports()
{
    // Modules are initialized on this thread: the other one waits for it at each of them.
    QQmlComponent imports(&m_engine);
    imports.setData("import QtQuick\nimport Randblatt.Sidebar\nimport Randblatt.Theme\n"
                    "import Randblatt.Settings\nimport Randblatt.Controls\nQtObject {}",
                    QUrl(u"qrc:/qt/qml/Imports.qml"_s));
}

} // namespace randblatt
