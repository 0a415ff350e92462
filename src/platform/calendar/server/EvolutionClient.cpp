#include "platform/calendar/server/EvolutionClient.h"

#include "platform/calendar/CalendarColor.h"
#include "platform/calendar/CalendarIndex.h"
#include "platform/calendar/CalendarZone.h"
#include "platform/calendar/Ical.h"

#include <QLoggingCategory>
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

/// The names of the zones that a component's times are written in.
void collectZones(ICalComponent *component, QSet<QByteArray> &tzids)
{
    GlibPointer<ICalProperty> property(i_cal_component_get_first_property(component, I_CAL_ANY_PROPERTY));
    while (property) {
        const GlibPointer<ICalParameter> tzid(
            i_cal_property_get_first_parameter(property.get(), I_CAL_TZID_PARAMETER));
        if (tzid)
            tzids.insert(i_cal_parameter_get_tzid(tzid.get()));
        property.reset(i_cal_component_get_next_property(component, I_CAL_ANY_PROPERTY));
    }
}

} // namespace

QString calendarName(ESource *source)
{
    const GlibPointer<char> name(e_source_dup_display_name(source));
    return QString::fromUtf8(name.get());
}

QColor calendarColor(ESource *source)
{
    gpointer extension = e_source_get_extension(source, E_SOURCE_EXTENSION_CALENDAR);
    const GlibPointer<char> color(e_source_selectable_dup_color(static_cast<ESourceSelectable *>(extension)));
    return calendarColor(QString::fromUtf8(color.get()));
}

std::unique_ptr<EvolutionClient> EvolutionClient::connect(ESource *source, std::function<void()> *changed,
                                                          GCancellable *cancellable)
{
    GlibError error;
    // Waiting for a connection would take that long on a calendar that has none to make.
    constexpr auto doNotWait = static_cast<guint32>(-1);
    EClient *client = e_cal_client_connect_sync(source, E_CAL_CLIENT_SOURCE_TYPE_EVENTS, doNotWait,
                                                cancellable, error.out());
    if (client == nullptr) {
        warn("Kalender nicht erreichbar", calendarName(source), error);
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

bool EvolutionClient::isWritable() const
{
    return !e_client_is_readonly(E_CLIENT(m_client.get()));
}

void EvolutionClient::watch(GCancellable *cancellable)
{
    connectSignal(m_client.get(), "backend-died", m_changed);
    GlibError error;
    ECalClientView *view = nullptr;
    if (!e_cal_client_get_view_sync(m_client.get(), "#t", &view, cancellable, error.out())) {
        warn("Kalender meldet keine Änderungen", calendarName(m_source.get()), error);
        return;
    }
    m_view.reset(view);
    // Only what changes from now on, not everything there is.
    e_cal_client_view_set_flags(view, E_CAL_CLIENT_VIEW_FLAGS_NONE, nullptr);
    for (const char *signal : {"objects-added", "objects-modified", "objects-removed"})
        connectSignal(view, signal, m_changed);
    e_cal_client_view_start(view, nullptr);
}

void EvolutionClient::Found::add(ICalComponent *component)
{
    text += randblatt::text(component);
    collectZones(component, tzids);
}

std::optional<QList<CalendarEvent>> EvolutionClient::events(const QDateTime &start, const QDateTime &end,
                                                            GCancellable *cancellable)
{
    const auto found = components(start, end, cancellable);
    m_hasFailed = !found;
    if (!found)
        return std::nullopt;
    const QByteArray calendar = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" + zones(found->tzids, cancellable) +
                                found->text + "END:VCALENDAR\r\n";
    const auto index = CalendarIndex::parse(calendar);
    if (!index) {
        qCWarning(lcCalendar, "Kalender unlesbar (%ls)", qUtf16Printable(calendarName(m_source.get())));
        return std::nullopt;
    }
    const auto excerpt = [&calendar](const IcalOutline::Range &place) {
        return calendar.sliced(place.begin, place.length);
    };
    auto events =
        index->events(start, end, QString::fromUtf8(e_source_get_uid(m_source.get())) + u'/', excerpt);
    const QString shownName = calendarName(m_source.get());
    const QColor shownColor = calendarColor(m_source.get());
    for (CalendarEvent &event : events) {
        event.calendarName = shownName;
        event.calendarColor = shownColor;
    }
    return events;
}

std::optional<EvolutionClient::Found>
EvolutionClient::components(const QDateTime &start, const QDateTime &end, GCancellable *cancellable) const
{
    const QByteArray query = "(occur-in-time-range? (make-time \"" + serverTime(start, -wallClockSlack) +
                             "\") (make-time \"" + serverTime(end, wallClockSlack) + "\"))";
    GlibError error;
    GSList *found = nullptr;
    if (!e_cal_client_get_object_list_sync(m_client.get(), query.constData(), &found, cancellable,
                                           error.out())) {
        warn("Kalender antwortet nicht", calendarName(m_source.get()), error);
        return std::nullopt;
    }
    Found components;
    QSet<QByteArray> uids;
    for (GSList *link = found; link != nullptr; link = link->next) {
        auto *component = static_cast<ICalComponent *>(link->data);
        if (belongsToSeries(component))
            uids.insert(i_cal_component_get_uid(component));
        else
            components.add(component);
    }
    g_slist_free_full(found, g_object_unref);
    // A series with all its exceptions, also those that have been moved out of the range.
    for (const QByteArray &uid : std::as_const(uids)) {
        if (!addSeries(uid.constData(), components, cancellable))
            return std::nullopt;
    }
    return components;
}

bool EvolutionClient::addSeries(const char *uid, Found &components, GCancellable *cancellable) const
{
    GlibError error;
    GSList *found = nullptr;
    if (!e_cal_client_get_objects_for_uid_sync(m_client.get(), uid, &found, cancellable, error.out())) {
        // It has just been removed.
        if (error.is(E_CAL_CLIENT_ERROR, E_CAL_CLIENT_ERROR_OBJECT_NOT_FOUND))
            return true;
        warn("Kalender antwortet nicht", calendarName(m_source.get()), error);
        return false;
    }
    for (GSList *link = found; link != nullptr; link = link->next)
        components.add(e_cal_component_get_icalcomponent(static_cast<ECalComponent *>(link->data)));
    g_slist_free_full(found, g_object_unref);
    return true;
}

QByteArray EvolutionClient::zones(const QSet<QByteArray> &tzids, GCancellable *cancellable)
{
    QByteArray zones;
    for (const QByteArray &tzid : tzids) {
        if (CalendarZone::isNamed(tzid))
            continue;
        QByteArray &known = m_zones[tzid];
        ICalTimezone *zone = nullptr;
        if (known.isEmpty() &&
            e_cal_client_get_timezone_sync(m_client.get(), tzid.constData(), &zone, cancellable, nullptr)) {
            // The zone belongs to the client.
            const GlibPointer<ICalComponent> component(i_cal_timezone_get_component(zone));
            if (component)
                known = text(component.get());
        }
        zones += known;
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
    warn("Kalender antwortet nicht", calendarName(m_source.get()), error);
    return std::nullopt;
}

CalendarStore::Saved EvolutionClient::save(const NewCalendarEvent &event, GCancellable *cancellable)
{
    if (!isWritable()) {
        qCWarning(lcCalendar, "Der Kalender lässt sich nur lesen: %ls",
                  qUtf16Printable(calendarName(m_source.get())));
        return CalendarStore::Saved::failure(
            u"Der Kalender „%1“ lässt sich nur lesen."_s.arg(calendarName(m_source.get())));
    }
    const auto savedAs = [this](const QByteArray &uid, const QByteArray &stored) {
        return SavedEvent{QString::fromUtf8(e_source_get_uid(m_source.get())), QString::fromUtf8(uid),
                          stored};
    };
    // Of an earlier attempt whose answer did not arrive; not every server would refuse a second one.
    const auto present = fingerprint(event.uid.toUtf8(), cancellable);
    if (!present)
        return CalendarStore::Saved::failure(u"Der Kalenderdienst antwortet nicht."_s);
    if (!present->isEmpty())
        return savedAs(event.uid.toUtf8(), *present);
    const QByteArray encoded = newEventText(event);
    const GlibPointer<ICalComponent> component(i_cal_component_new_from_string(encoded.constData()));
    GlibError error;
    char *given = nullptr;
    const bool saved = component && e_cal_client_create_object_sync(m_client.get(), component.get(),
                                                                    E_CAL_OPERATION_FLAG_NONE, &given,
                                                                    cancellable, error.out());
    const QByteArray uid = given != nullptr ? QByteArray(given) : event.uid.toUtf8();
    g_free(given);
    // The earlier attempt may have arrived just now.
    const bool isThere = error.is(E_CAL_CLIENT_ERROR, E_CAL_CLIENT_ERROR_OBJECT_ID_ALREADY_EXISTS);
    m_hasFailed = !saved && !isThere;
    if (m_hasFailed) {
        warn("Termin nicht gespeichert", calendarName(m_source.get()), error);
        return CalendarStore::Saved::failure(
            u"Der Kalender „%1“ nimmt ihn nicht an."_s.arg(calendarName(m_source.get())));
    }
    // Servers put something of their own into what they are given.
    const auto stored = fingerprint(uid, cancellable);
    return savedAs(uid, stored ? *stored : eventFingerprint(encoded));
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
    warn("Termin nicht gelöscht", calendarName(m_source.get()), error);
    return CalendarStore::Removed::failure(
        u"Der Kalender „%1“ lässt es nicht zu."_s.arg(calendarName(m_source.get())));
}

} // namespace randblatt
