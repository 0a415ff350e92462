// Runs every target over the inputs that are kept for it: fuzz-corpus <folder of folders>.

#include "fuzz/Targets.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;
using namespace randblatt;

int main(int argc, char **argv)
{
    const TestEnvironment environment;
    const QCoreApplication application(argc, argv);
    if (argc != 2)
        return 2;
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    for (const FuzzTarget &target : fuzzTargets) {
        const QDir folder(QFile::decodeName(argv[1]) + u'/' + QLatin1StringView(target.name));
        const QStringList names = folder.entryList(QDir::Files);
        if (names.isEmpty()) {
            std::fprintf(stderr, "%s: nichts in %s\n", target.name, qPrintable(folder.path()));
            return 1;
        }
        for (const QString &name : names) {
            QFile file(folder.filePath(name));
            std::printf("%s/%s\n", target.name, qPrintable(name));
            std::fflush(stdout);
            if (!file.open(QFile::ReadOnly))
                return 1;
            target.run(file.readAll());
        }
    }
    return 0;
}
