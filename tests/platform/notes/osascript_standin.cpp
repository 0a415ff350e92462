// Stands in for the osascript command: takes a script on standard input, prints results and errors as it
// does.

#include "platform/notes/InterpreterScriptRunner.h"
#include "platform/notes/NotesLibrary.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace randblatt;

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (application.arguments().value(1) != "-"_L1)
        return 2;
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        return 2;
    InterpreterScriptRunner runner{NotesLibrary(NotesLibrary::defaultPath())};
    const ScriptOutcome outcome = runner.run(QString::fromUtf8(input.readAll()));
    if (!outcome.failure) {
        std::fprintf(stdout, "%s\n", outcome.text.value_or(QString()).toUtf8().constData());
        return 0;
    }
    std::fprintf(stderr, "0:12: execution error: %s (%d)\n",
                 outcome.failure->message.value_or(QString()).toUtf8().constData(), outcome.failure->number);
    return 1;
}
