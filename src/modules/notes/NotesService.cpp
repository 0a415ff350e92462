#include "modules/notes/NotesService.h"

#include "modules/notes/NoteScripts.h"
#include "platform/ScriptRunner.h"
#include "platform/html/HtmlText.h"

#include <QPointer>

#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

/// How many notes the list is reloaded with after a change.
constexpr int reloadLimit = 80;

} // namespace

NotesService::NotesService(std::shared_ptr<ScriptRunner> runner, QObject *parent)
    : QObject(parent)
    , m_runner(std::move(runner))
    , m_queue(u"com.randblatt.applescript"_s)
{
}

void NotesService::run(const QString &source, const ResultCompletion &completion)
{
    m_queue.enqueue([runner = m_runner, source] { return ASResult::fromOutcome(runner->run(source)); },
                    completion);
}

void NotesService::loadFolders()
{
    run(notescripts::listFolders(), [service = QPointer(this)](const ASResult &result) {
        if (service && result.isSuccess())
            service->m_folders.replace(notescripts::folders(result.text));
    });
}

void NotesService::loadNotes(int limit)
{
    QMetaObject::invokeMethod(
        this, [this] { setLoading(true); }, Qt::QueuedConnection);
    run(notescripts::listNotes(m_currentFolder, limit),
        [service = QPointer(this), limit](const ASResult &result) {
            if (service)
                service->showNotes(result, limit);
        });
}

void NotesService::showNotes(const ASResult &result, int limit)
{
    if (result.isSuccess()) {
        if (m_notes.replace(notescripts::notes(result.text, limit)))
            Q_EMIT notesChanged();
        setStatusMessage(notes().isEmpty() ? u"Keine Notizen gefunden"_s : QString());
    } else {
        setStatusMessage(result.text);
    }
    setLoading(false);
}

void NotesService::loadBody(const QString &id, const BodyCompletion &completion)
{
    // Reading a long note's HTML takes a while, so that is done beside the main thread as well.
    m_queue.enqueue(
        [runner = m_runner, source = notescripts::readBody(id)] {
            ASResult result = ASResult::fromOutcome(runner->run(source));
            if (result.isSuccess())
                result.text = htmlToPlainText(result.text);
            return result;
        },
        [completion](const ASResult &result) {
            if (completion && result.isSuccess())
                completion(result.text, true);
            else if (completion)
                completion(u"(Konnte Notiz nicht laden: "_s + result.text + u')', false);
        });
}

void NotesService::locateNote(const QString &id, const TextCompletion &completion)
{
    run(notescripts::folderOfNote(id), [completion](const ASResult &result) {
        if (completion)
            completion(result.isSuccess() ? result.text : QString());
    });
}

void NotesService::createNote(const QString &title, const QString &body, const WriteCompletion &completion)
{
    write(notescripts::createNote(title, body), u"Konnte Notiz nicht erstellen: "_s, completion);
}

void NotesService::saveBody(const QString &id, const QString &title, const QString &body,
                            const WriteCompletion &completion)
{
    write(notescripts::setBody(id, title, body), u"Konnte Notiz nicht speichern: "_s, completion);
}

void NotesService::deleteNote(const QString &id, const WriteCompletion &completion)
{
    write(notescripts::deleteNote(id), u"Konnte Notiz nicht löschen: "_s, completion);
}

void NotesService::restoreNote(const QString &id, const std::optional<QString> &folder,
                               const WriteCompletion &completion)
{
    write(notescripts::moveNote(id, folder), u"Konnte Notiz nicht wiederherstellen: "_s, completion);
}

void NotesService::write(const QString &source, const QString &failurePrefix,
                         const WriteCompletion &completion)
{
    run(source, [service = QPointer(this), failurePrefix, completion](const ASResult &result) {
        if (service && result.isSuccess())
            service->loadNotes(reloadLimit);
        else if (service)
            service->setStatusMessage(failurePrefix + result.text);
        if (completion)
            completion(result.isSuccess());
    });
}

void NotesService::setCurrentFolder(const std::optional<QString> &folder)
{
    if (m_currentFolder == folder)
        return;
    m_currentFolder = folder;
    Q_EMIT currentFolderChanged();
}

void NotesService::setCurrentFolderName(const QString &name)
{
    setCurrentFolder(name.isEmpty() ? std::nullopt : std::optional(name));
}

void NotesService::setStatusMessage(const QString &message)
{
    if (m_statusMessage == message)
        return;
    m_statusMessage = message;
    Q_EMIT statusMessageChanged();
}

void NotesService::setLoading(bool loading)
{
    if (m_isLoading == loading)
        return;
    m_isLoading = loading;
    Q_EMIT isLoadingChanged();
}

} // namespace randblatt
