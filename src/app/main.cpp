#include "app/PlatformChoice.h"
#include "app/RandblattApp.h"
#include "app/WarmUp.h"
#include "platform/freedesktop/BaseFolders.h"
#include "platform/freedesktop/SingleInstance.h"
#include "platform/freedesktop/TerminationSignals.h"

#include <QApplication>
#include <QDBusConnection>
#include <QUrl>

#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    randblatt::ignoreRelativeBaseFolders();
    QApplication::setApplicationName(u"Quillbar"_s);
    QApplication::setApplicationDisplayName(u"Quillbar"_s);
    QApplication::setApplicationVersion(QLatin1StringView(QUILLBAR_VERSION));
    QApplication::setDesktopFileName(u"com.randblatt.Quillbar"_s);
    // On a translucent window, text with colours at its edges would show them as fringes.
    qputenv("QSG_DISTANCEFIELD_ANTIALIASING", "gray");
    std::optional<randblatt::PlatformChoice> platform(std::in_place);
    QApplication application(argc, argv);
    platform.reset();
    application.setQuitOnLastWindowClosed(false);
    randblatt::WarmUp warmUp;

    // The name is ours before any window is made; a second start only tells the first about itself.
    randblatt::SingleInstance instance(QDBusConnection::sessionBus());
    QList<QUrl> urls;
    const QStringList arguments = application.arguments().mid(1);
    for (const QString &argument : arguments)
        urls.append(QUrl(argument));
    if (!instance.acquire(urls))
        return 0;

    const randblatt::TerminationSignals termination;
    QObject::connect(&termination, &randblatt::TerminationSignals::terminationRequested, &application,
                     &QCoreApplication::quit);
    randblatt::RandblattApp app(instance, warmUp);
    app.start();
    return application.exec();
}
