#include "modules/media/NewPlaylist.h"

#include "modules/media/SpotifyService.h"

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

const QString openValue = u"open"_s;
const QString nameValue = u"name"_s;

} // namespace

NewPlaylist::NewPlaylist(Preferences &preferences, SpotifyService &service, QObject *parent)
    : QObject(parent)
    , m_service(service)
    , m_draft(preferences, u"media.playlist"_s)
{
    connect(&m_draft, &Draft::changed, this, &NewPlaylist::changed);
}

bool NewPlaylist::isOpen() const
{
    return m_draft.value(openValue).toBool();
}

QString NewPlaylist::name() const
{
    return m_draft.value(nameValue).toString();
}

void NewPlaylist::setName(const QString &name)
{
    m_draft.setValue(nameValue, name);
}

void NewPlaylist::open()
{
    m_draft.setValue(openValue, true);
}

void NewPlaylist::close()
{
    setFailure({});
    m_draft.setValue(openValue, QJsonValue());
}

void NewPlaylist::create()
{
    const QString wanted = name().trimmed();
    if (m_isCreating || wanted.isEmpty())
        return;
    setFailure({});
    setCreating(true);
    m_service.createPlaylist(wanted, [this, wanted](const QString &failure) { created(wanted, failure); });
}

void NewPlaylist::created(const QString &name, const QString &failure)
{
    setCreating(false);
    if (failure.isEmpty()) {
        // What was typed since is the next one's.
        if (this->name().trimmed() == name)
            m_draft.clear();
    } else if (isOpen()) {
        setFailure(failure);
    } else {
        m_service.showFailure(failure);
    }
}

void NewPlaylist::reset()
{
    setCreating(false);
    setFailure({});
}

void NewPlaylist::setCreating(bool creating)
{
    if (m_isCreating == creating)
        return;
    m_isCreating = creating;
    Q_EMIT isCreatingChanged();
}

void NewPlaylist::setFailure(const QString &failure)
{
    if (m_failure == failure)
        return;
    m_failure = failure;
    Q_EMIT failureChanged();
}

} // namespace randblatt
