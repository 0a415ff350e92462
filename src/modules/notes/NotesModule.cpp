#include "modules/notes/NotesModule.h"

#include "platform/ScriptRunner.h"
#include "settings/AppSettings.h"
#include "settings/DroppedLines.h"

#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestTitle = 80;

} // namespace

NotesModule::NotesModule(AppSettings &settings, Preferences &preferences,
                         std::shared_ptr<ScriptRunner> runner, QObject *parent)
    : SidebarModule(parent)
    , m_settings(settings)
    , m_service(new NotesService(std::move(runner), this))
    , m_browsing(new NoteBrowsing(*m_service, preferences, *undoHistory(), this))
    , m_pad(new ScratchPad(settings, this))
{
}

QString NotesModule::id() const
{
    return u"notes"_s;
}

QString NotesModule::title() const
{
    return u"Notizen"_s;
}

QString NotesModule::systemImage() const
{
    return u"note.text"_s;
}

ViewDescription NotesModule::makeView() const
{
    return {QUrl(u"qrc:/qt/qml/Randblatt/Notes/NotesRootView.qml"_s),
            {{u"service"_s, QVariant::fromValue(m_service)},
             {u"browsing"_s, QVariant::fromValue(m_browsing)},
             {u"pad"_s, QVariant::fromValue(static_cast<EditedText *>(m_pad))},
             {u"settings"_s, QVariant::fromValue(&m_settings)}}};
}

ViewDescription NotesModule::makeQuickMenu() const
{
    return {QUrl(u"qrc:/qt/qml/Randblatt/Notes/NotesQuickMenu.qml"_s),
            {{u"settings"_s, QVariant::fromValue(&m_settings)}}};
}

QString NotesModule::dropOffer(bool hasText, const QList<QUrl> &urls) const
{
    if (!hasText && urls.isEmpty())
        return {};
    return m_settings.notesMode() == NotesMode::scratch ? u"Auf den Notizzettel"_s : u"Als neue Notiz"_s;
}

bool NotesModule::takeDrop(const QString &text, const QList<QUrl> &urls)
{
    const QStringList lines = droppedLines(text, urls);
    if (lines.isEmpty())
        return false;
    // A text keeps its indents and its empty lines.
    const QString content = urls.isEmpty() ? EditedText::cleaned(text) : lines.join(u'\n');
    if (m_settings.notesMode() == NotesMode::scratch) {
        m_pad->append(content);
        return true;
    }
    NewNote *note = m_browsing->newNote();
    if (note->title().isEmpty())
        note->setTitle(lines.first().left(longestTitle));
    note->body()->append(content);
    note->setOpen(true);
    return true;
}

} // namespace randblatt
