// Any bytes as a script: they give a text or an error, within the limits, and never anything else.

#include "platform/notes/InterpreterScriptRunner.h"
#include "platform/notes/NotesLibrary.h"

#include <QByteArray>
#include <QDir>
#include <QDirIterator>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

constexpr AppleScriptLimits limits{.time = std::chrono::seconds(5), .longestText = 4 * 1024 * 1024};

/// Runs a script on a library in memory that starts anew before it grows.
ScriptOutcome runScript(const QString &source)
{
    static const QTemporaryDir folder(QDir(u"/dev/shm"_s).exists() ? u"/dev/shm/fuzz-XXXXXX"_s : QString());
    static int runs = 0;
    const QString library = folder.filePath(u"notes"_s);
    if (++runs % 64 == 0)
        QDir(library).removeRecursively();
    return InterpreterScriptRunner(NotesLibrary(library), limits).run(source);
}

} // namespace

// The name that the fuzzing driver calls.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const ScriptOutcome outcome = runScript(QString::fromUtf8(bytes));
    if (outcome.failure && (outcome.text || outcome.failure->message == QString()))
        std::abort();
    return 0;
}
