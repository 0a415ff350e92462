#include "app/Backends.h"
#include "app/RandblattApp.h"
#include "platform/freedesktop/SingleInstance.h"
#include "platform/freedesktop/TerminationSignals.h"

#include <QApplication>
#include <QDBusConnection>
#include <QFontMetricsF>
#include <QThread>
#include <QUrl>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// Reads the font configuration on a thread of its own; the first text would otherwise wait for it.
std::unique_ptr<QThread> warmUpFonts()
{
    std::unique_ptr<QThread> thread(
        QThread::create([] { return QFontMetricsF(QFont()).horizontalAdvance(u"Quillbar"_s); }));
    thread->start();
    return thread;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication::setApplicationName(u"quillbar"_s);
    QApplication::setApplicationDisplayName(u"Quillbar"_s);
    QApplication::setApplicationVersion(QLatin1StringView(QUILLBAR_VERSION));
    QApplication::setDesktopFileName(u"com.randblatt.Quillbar"_s);
    // On a translucent window, text with colours at its edges would show them as fringes.
    qputenv("QSG_DISTANCEFIELD_ANTIALIASING", "gray");
    randblatt::choosePlatform();
    QApplication application(argc, argv);
    application.setQuitOnLastWindowClosed(false);
    const auto fonts = warmUpFonts();

    // The name is ours before any window is made; a second start only tells the first about itself.
    randblatt::SingleInstance instance(QDBusConnection::sessionBus());
    QList<QUrl> urls;
    const QStringList arguments = application.arguments().mid(1);
    for (const QString &argument : arguments)
        urls.append(QUrl(argument));
    if (!instance.acquire(urls))
        return fonts->wait() ? 0 : 1;

    const randblatt::TerminationSignals termination;
    QObject::connect(&termination, &randblatt::TerminationSignals::terminationRequested, &application,
                     &QCoreApplication::quit);
    randblatt::RandblattApp app(instance);
    app.start();
    const int result = application.exec();
    fonts->wait();
    return result;
}
