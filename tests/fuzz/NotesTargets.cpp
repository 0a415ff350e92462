#include "fuzz/Targets.h"
#include "modules/notes/NoteScripts.h"
#include "platform/html/HtmlText.h"
#include "platform/notes/InterpreterScriptRunner.h"
#include "platform/notes/NoteDocument.h"
#include "platform/notes/NotesLibrary.h"
#include "platform/notes/OsascriptRunner.h"

#include <QDir>
#include <QTemporaryDir>

namespace randblatt {

using namespace Qt::StringLiterals;

void fuzzOsascript(const QByteArray &bytes)
{
    constexpr int limit = 50;
    const QString text = QString::fromUtf8(bytes);
    require(notescripts::notes(text, limit).size() <= limit, "no more notes than were asked for");
    (void)notescripts::folders(text);
    (void)OsascriptRunner::failureFromReport(bytes);
}

void fuzzAppleScript(const QByteArray &bytes)
{
    constexpr AppleScriptLimits limits{.time = std::chrono::seconds(5), .longestText = 4 * 1024 * 1024};
    // A library that starts anew before it grows.
    static const QTemporaryDir folder;
    static int runs = 0;
    const QString library = folder.filePath(u"notes"_s);
    if (++runs % 64 == 0)
        QDir(library).removeRecursively();
    const ScriptOutcome outcome =
        InterpreterScriptRunner(NotesLibrary(library), limits).run(QString::fromUtf8(bytes));
    require(!outcome.failure || (!outcome.text && outcome.failure->message != QString()),
            "a script gives a text or an error");
}

void fuzzNoteHtml(const QByteArray &bytes)
{
    const QString html = QString::fromUtf8(bytes);
    (void)htmlToPlainText(html);
    (void)isPlainTextHtml(html);
    (void)NoteDocument::firstLine(html);
    (void)NoteDocument::fromTitledBody(html);
    (void)NoteDocument::isOwn(bytes);
    const NoteDocument document = NoteDocument::fromFile(bytes);
    if (const auto name = NoteDocument::nameFromHead(bytes))
        require(*name == document.name, "the head of a file tells its name");
    if (const auto renamed = NoteDocument::renamed(bytes, u"Neuer Name"_s))
        require(NoteDocument::fromFile(*renamed).name == u"Neuer Name"_s, "a renamed note has its name");
}

} // namespace randblatt
