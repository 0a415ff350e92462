#include "modules/notes/NotesModule.h"

#include "platform/ScriptRunner.h"
#include "settings/AppSettings.h"

#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;

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

} // namespace randblatt
