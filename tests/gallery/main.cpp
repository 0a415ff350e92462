#include "ui/controls/EngineSetup.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickView>

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    // Sub-pixel text needs to know what lies behind it, which a translucent window does not.
    qputenv("QSG_DISTANCEFIELD_ANTIALIASING", "gray");
    const QGuiApplication application(argc, argv);
    QQuickView view;
    randblatt::prepareEngine(*view.engine());
    view.setFlags(Qt::FramelessWindowHint);
    view.setColor(Qt::transparent);
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    const QStringList arguments = QGuiApplication::arguments();
    const bool isGallery = arguments.size() < 2;
    view.setSource(isGallery ? QUrl(u"qrc:/gallery/Gallery.qml"_s) : QUrl::fromLocalFile(arguments.at(1)));
    if (view.status() != QQuickView::Ready)
        return 1;
    if (isGallery)
        view.showFullScreen();
    else
        view.show();
    return QGuiApplication::exec();
}
