#include "platform/calendar/server/EvolutionClient.h"

#include "platform/calendar/CalendarIndex.h"
#include "platform/calendar/Ical.h"

#include <QLoggingCategory>
#include <QRegularExpression>
#include <QSet>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcCalendar, "quillbar.calendar")

// The server takes floating times and days for UTC.
constexpr qint64 wallClockSlack = 86400;

void warn(const char *what, const QString &calendar, const GlibError &error)
{
    qCWarning(lcCalendar, "%s (%ls): %s", what, qUtf16Printable(calendar), error.message());
}

QByteArray serverTime(const QDateTime &time, qint64 shift)
{
    return time.addSecs(shift).toUTC().toString(u"yyyyMMdd'T'HHmmss'Z'").toLatin1();
}

QByteArray text(ICalComponent *component)
{
    const GlibPointer<char> ical(i_cal_component_as_ical_string(component));
    QByteArray bytes(ical.get());
    return bytes.endsWith('\n') ? bytes : bytes + "\r\n";
}

bool belongsToSeries(ICalComponent *component)
{
    const auto has = [component](ICalPropertyKind kind) {
        const GlibPointer<ICalProperty> property(i_cal_component_get_first_property(component, kind));
        return property != nullptr;
    };
    return has(I_CAL_RRULE_PROPERTY) || has(I_CAL_RDATE_PROPERTY) || has(I_CAL_RECURRENCEID_PROPERTY);
}

bool isKnownZone(const QByteArray &tzid)
{
    return icaltimezone_get_builtin_timezone_from_tzid(tzid.constData()) != nullptr ||
           icaltimezone_get_builtin_timezone(tzid.constData()) != nullptr;
}

} // namespace

std::unique_ptr<EvolutionClient> EvolutionClient::connect(ESource *source, std::function<void()> *changed,
                                                          GCancellable *cancellable)
{
    GlibError error;
    // Waiting for a connection would take that long on a calendar that has none to make.
    constexpr auto doNotWait = static_cast<guint32>(-1);
    EClient *client = e_cal_client_connect_sync(source, E_CAL_CLIENT_SOURCE_TYPE_EVENTS, doNotWait,
                                                cancellable, error.out());
    if (client == nullptr) {
        warn("Kalender nicht erreichbar", QString::fromUtf8(e_source_get_display_name(source)), error);
        return nullptr;
    }
    std::unique_ptr<EvolutionClient> calendar(
        new EvolutionClient(source, GlibPointer<ECalClient>(E_CAL_CLIENT(client)), changed));
    calendar->watch(cancellable);
    return calendar;
}

EvolutionClient::EvolutionClient(ESource *source, GlibPointer<ECalClient> client,
                                 std::function<void()> *changed)
    : m_source(glibReference(source))
    , m_client(std::move(client))
    , m_changed(changed)
{
}

EvolutionClient::~EvolutionClient()
{
    disconnectSignals(m_client.get(), m_changed);
    if (!m_view)
        return;
    disconnectSignals(m_view.get(), m_changed);
    e_cal_client_view_stop(m_view.get(), nullptr);
}

QString EvolutionClient::name() const
{
    const GlibPointer<char> name(e_source_dup_display_name(m_source.get()));
    return QString::fromUtf8(name.get());
}

QColor EvolutionClient::color() const
{
    gpointer extension = e_source_get_extension(m_source.get(), E_SOURCE_EXTENSION_CALENDAR);
    const GlibPointer<char> color(e_source_selectable_dup_color(static_cast<ESourceSelectable *>(extension)));
    return QColor(QString::fromUtf8(color.get()));
}

void EvolutionClient::watch(GCancellable *cancellable)
{
    connectSignal(m_client.get(), "backend-died", m_changed);
    GlibError error;
    ECalClientView *view = nullptr;
    if (!e_cal_client_get_view_sync(m_client.get(), "#t", &view, cancellable, error.out())) {
        warn("Kalender meldet keine Änderungen", name(), error);
        return;
    }
    m_view.reset(view);
    // Only what changes from now on, not everything there is.
    e_cal_client_view_set_flags(view, E_CAL_CLIENT_VIEW_FLAGS_NONE, nullptr);
    for (const char *signal : {"objects-added", "objects-modified", "objects-removed"})
        connectSignal(view, signal, m_changed);
    e_cal_client_view_start(view, nullptr);
}

std::optional<QList<CalendarEvent>> EvolutionClient::events(const QDateTime &start, const QDateTime &end,
                                                            GCancellable *cancellable)
{
    const auto found = components(start, end, cancellable);
    m_hasFailed = !found;
    if (!found)
        return std::nullopt;
    const auto index = CalendarIndex::parse("BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" +
                                            zones(*found, cancellable) + *found + "END:VCALENDAR\r\n");
    if (!index) {
        qCWarning(lcCalendar, "Kalender unlesbar (%ls)", qUtf16Printable(name()));
        return std::nullopt;
    }
    auto events = index->events(start, end, QString::fromUtf8(e_source_get_uid(m_source.get())) + u'/');
    const QString calendarName = name();
    const QColor calendarColor = color();
    for (CalendarEvent &event : events) {
        event.calendarName = calendarName;
        event.calendarColor = calendarColor;
    }
    return events;
}

std::optional<QByteArray> EvolutionClient::components(const QDateTime &start, const QDateTime &end,
                                                      GCancellable *cancellable) const
{
    const QByteArray query = "(occur-in-time-range? (make-time \"" + serverTime(start, -wallClockSlack) +
                             "\") (make-time \"" + serverTime(end, wallClockSlack) + "\"))";
    GlibError error;
    GSList *found = nullptr;
    if (!e_cal_client_get_object_list_sync(m_client.get(), query.constData(), &found, cancellable,
                                           error.out())) {
        warn("Kalender antwortet nicht", name(), error);
        return std::nullopt;
    }
    QByteArray components;
    QSet<QByteArray> uids;
    for (GSList *link = found; link != nullptr; link = link->next) {
        auto *component = static_cast<ICalComponent *>(link->data);
        if (belongsToSeries(component))
            uids.insert(i_cal_component_get_uid(component));
        else
            components += text(component);
    }
    g_slist_free_full(found, g_object_unref);
    // A series with all its exceptions, also those that have been moved out of the range.
    for (const QByteArray &uid : std::as_const(uids)) {
        const auto whole = series(uid.constData(), cancellable);
        if (!whole)
            return std::nullopt;
        components += *whole;
    }
    return components;
}

std::optional<QByteArray> EvolutionClient::series(const char *uid, GCancellable *cancellable) const
{
    GlibError error;
    GSList *found = nullptr;
    if (!e_cal_client_get_objects_for_uid_sync(m_client.get(), uid, &found, cancellable, error.out())) {
        warn("Kalender antwortet nicht", name(), error);
        return std::nullopt;
    }
    QByteArray components;
    for (GSList *link = found; link != nullptr; link = link->next)
        components += text(e_cal_component_get_icalcomponent(static_cast<ECalComponent *>(link->data)));
    g_slist_free_full(found, g_object_unref);
    return components;
}

QByteArray EvolutionClient::zones(const QByteArray &components, GCancellable *cancellable) const
{
    static const QRegularExpression pattern(uR"(;TZID="?([^":;]+))"_s);
    QSet<QByteArray> seen;
    QByteArray zones;
    QByteArray unfolded = components;
    unfolded.replace("\r\n ", "");
    auto matches = pattern.globalMatch(QString::fromUtf8(unfolded));
    while (matches.hasNext()) {
        const QByteArray tzid = matches.next().captured(1).toUtf8();
        if (seen.contains(tzid) || isKnownZone(tzid))
            continue;
        seen.insert(tzid);
        ICalTimezone *zone = nullptr;
        if (!e_cal_client_get_timezone_sync(m_client.get(), tzid.constData(), &zone, cancellable, nullptr))
            continue;
        // The zone belongs to the client.
        const GlibPointer<ICalComponent> component(i_cal_timezone_get_component(zone));
        if (component)
            zones += text(component.get());
    }
    return zones;
}

std::optional<QByteArray> EvolutionClient::fingerprint(const QByteArray &uid, GCancellable *cancellable)
{
    GlibError error;
    ICalComponent *found = nullptr;
    if (e_cal_client_get_object_sync(m_client.get(), uid.constData(), nullptr, &found, cancellable,
                                     error.out())) {
        const GlibPointer<ICalComponent> component(found);
        return eventFingerprint(text(component.get()));
    }
    if (error.is(E_CAL_CLIENT_ERROR, E_CAL_CLIENT_ERROR_OBJECT_NOT_FOUND))
        return QByteArray();
    m_hasFailed = true;
    warn("Kalender antwortet nicht", name(), error);
    return std::nullopt;
}

CalendarStore::Saved EvolutionClient::save(const NewCalendarEvent &event, GCancellable *cancellable)
{
    if (e_client_is_readonly(E_CLIENT(m_client.get()))) {
        qCWarning(lcCalendar, "Der Standardkalender lässt sich nur lesen: %ls", qUtf16Printable(name()));
        return CalendarStore::Saved::failure(u"Der Kalender „%1“ lässt sich nur lesen."_s.arg(name()));
    }
    const QByteArray encoded = newEventText(event);
    const GlibPointer<ICalComponent> component(i_cal_component_new_from_string(encoded.constData()));
    GlibError error;
    char *given = nullptr;
    const bool saved = component && e_cal_client_create_object_sync(m_client.get(), component.get(),
                                                                    E_CAL_OPERATION_FLAG_NONE, &given,
                                                                    cancellable, error.out());
    const QByteArray uid = given != nullptr ? QByteArray(given) : event.uid.toUtf8();
    g_free(given);
    // Of an earlier attempt whose answer did not arrive.
    const bool isThere = error.is(E_CAL_CLIENT_ERROR, E_CAL_CLIENT_ERROR_OBJECT_ID_ALREADY_EXISTS);
    m_hasFailed = !saved && !isThere;
    if (m_hasFailed) {
        warn("Termin nicht gespeichert", name(), error);
        return CalendarStore::Saved::failure(u"Der Kalender „%1“ nimmt ihn nicht an."_s.arg(name()));
    }
    // Servers put something of their own into what they are given.
    const auto stored = fingerprint(uid, cancellable);
    return SavedEvent{QString::fromUtf8(e_source_get_uid(m_source.get())), QString::fromUtf8(uid),
                      stored ? *stored : eventFingerprint(encoded)};
}

CalendarStore::Removed EvolutionClient::remove(const SavedEvent &event, GCancellable *cancellable)
{
    const QByteArray uid = event.uid.toUtf8();
    const auto present = fingerprint(uid, cancellable);
    if (!present)
        return CalendarStore::Removed::failure(u"Der Kalenderdienst antwortet nicht."_s);
    if (present->isEmpty())
        return Removal::gone;
    if (*present != event.fingerprint)
        return Removal::changed;
    GlibError error;
    if (e_cal_client_remove_object_sync(m_client.get(), uid.constData(), nullptr, E_CAL_OBJ_MOD_ALL,
                                        E_CAL_OPERATION_FLAG_NONE, cancellable, error.out()))
        return Removal::removed;
    m_hasFailed = true;
    warn("Termin nicht gelöscht", name(), error);
    return CalendarStore::Removed::failure(u"Der Kalender „%1“ lässt es nicht zu."_s.arg(name()));
}

} // namespace randblatt
