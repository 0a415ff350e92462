#include "platform/notes/NotesLibraryError.h"

#include "platform/files/SystemReason.h"

#include <QDir>
#include <QLoggingCategory>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcNotesLibrary, "quillbar.notes")

} // namespace

NotesLibraryError NotesLibraryError::ofSystem(int errorNumber, const QString &sentence, const QString &path)
{
    const QString message = systemReason(errorNumber) + u": "_s + sentence;
    qCWarning(lcNotesLibrary, "%ls [%ls]", qUtf16Printable(message),
              qUtf16Printable(QDir::toNativeSeparators(path)));
    return {Reason::fileSystem, message};
}

} // namespace randblatt
