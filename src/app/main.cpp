#include "app/CommandLine.h"
#include "app/PlatformChoice.h"
#include "app/RandblattApp.h"
#include "app/WarmUp.h"
#include "platform/freedesktop/BaseFolders.h"
#include "platform/freedesktop/SingleInstance.h"
#include "platform/freedesktop/TerminationSignals.h"

#include <QApplication>
#include <QDBusConnection>

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// As the shell's own commands end when they are called wrongly.
constexpr int wrongUsage = 2;

} // namespace

int main(int argc, char **argv)
{
    // These are answered without a display as well. Which of the others are the toolkit's is known later.
    for (int i = 1; i < argc; ++i) {
        const auto line = randblatt::CommandLine::read({QString::fromLocal8Bit(argv[i])});
        if (!line.answer.isEmpty() && !line.isError) {
            std::fputs(line.answer.toLocal8Bit().constData(), stdout);
            return EXIT_SUCCESS;
        }
    }
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
    const auto commandLine = randblatt::CommandLine::read(application.arguments().mid(1));
    if (commandLine.isError) {
        std::fputs(commandLine.answer.toLocal8Bit().constData(), stderr);
        return wrongUsage;
    }
    randblatt::WarmUp warmUp;

    // The name is ours before any window is made; a second start only tells the first about itself.
    randblatt::SingleInstance instance(QDBusConnection::sessionBus());
    if (!instance.acquire(commandLine.urls))
        return 0;

    const randblatt::TerminationSignals termination;
    QObject::connect(&termination, &randblatt::TerminationSignals::terminationRequested, &application,
                     &QCoreApplication::quit);
    randblatt::RandblattApp app(instance, warmUp);
    app.start();
    return application.exec();
}
