// The least that a Qt Quick program is: a translucent, frameless window of the panel's size with one
// rectangle. What Quillbar's start and memory are compared with.

#include <QGuiApplication>
#include <QLoggingCategory>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickView>

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcPanel, "quillbar.panel")

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    QQuickView view;
    QSurfaceFormat format = view.format();
    format.setAlphaBufferSize(8);
    view.setFormat(format);
    view.setFlags(Qt::Tool | Qt::FramelessWindowHint);
    view.setColor(Qt::transparent);
    QQmlComponent component(view.engine());
    component.setData("import QtQuick\nRectangle { color: '#80203060'; radius: 18 }", {});
    view.setContent({}, &component, component.create());
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.resize(420, 886);
    QObject::connect(
        &view, &QQuickWindow::frameSwapped, &view, [] { qCDebug(lcPanel, "Bild gezeigt"); },
        static_cast<Qt::ConnectionType>(Qt::DirectConnection | Qt::SingleShotConnection));
    view.show();
    return QGuiApplication::exec();
}
