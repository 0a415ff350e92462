#include "platform/notes/ScriptRunners.h"

#include "platform/notes/InterpreterScriptRunner.h"
#include "platform/notes/OsascriptRunner.h"

#include <QStandardPaths>

namespace randblatt {

using namespace Qt::StringLiterals;

std::shared_ptr<ScriptRunner> makeScriptRunner(const QString &library)
{
    const QString command = QStandardPaths::findExecutable(u"osascript"_s);
    if (!command.isEmpty())
        return std::make_shared<OsascriptRunner>(command);
    return std::make_shared<InterpreterScriptRunner>(NotesLibrary(library));
}

} // namespace randblatt
