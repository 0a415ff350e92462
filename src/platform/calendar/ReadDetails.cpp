#include "platform/calendar/ReadDetails.h"

#include "platform/calendar/Ical.h"
#include "platform/calendar/IcalOutline.h"
#include "platform/html/HtmlText.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array<QByteArrayView, 9> telling{"LOCATION",
                                                "DESCRIPTION",
                                                "ATTENDEE",
                                                "ORGANIZER",
                                                "URL",
                                                "CONFERENCE",
                                                "X-GOOGLE-CONFERENCE",
                                                "X-MICROSOFT-SKYPETEAMSMEETINGURL",
                                                "X-MICROSOFT-ONLINEMEETINGEXTERNALLINK"};

// More is not read in a card.
constexpr qsizetype longestText = 16'000;
constexpr qsizetype mostLines = 200;

// Places on the web where people meet; a CONFERENCE says so itself.
constexpr std::array meetingHosts{"meet."_L1,          "zoom.us"_L1,       "teams.microsoft.com"_L1,
                                  "teams.live.com"_L1, "webex.com"_L1,     "jitsi"_L1,
                                  "whereby.com"_L1,    "bigbluebutton"_L1, "bbb."_L1,
                                  "gotomeeting"_L1,    "/bbb/"_L1,         "/meeting/"_L1};

QString answerText(icalproperty *attendee)
{
    icalparameter *answer = icalproperty_get_first_parameter(attendee, ICAL_PARTSTAT_PARAMETER);
    if (answer == nullptr)
        return {};
    switch (icalparameter_get_partstat(answer)) {
    case ICAL_PARTSTAT_ACCEPTED:
        return u" (zugesagt)"_s;
    case ICAL_PARTSTAT_DECLINED:
        return u" (abgesagt)"_s;
    case ICAL_PARTSTAT_TENTATIVE:
        return u" (unter Vorbehalt)"_s;
    default:
        return {};
    }
}

/// A person's name, or else the address without its scheme.
QString personText(icalproperty *person, const char *address)
{
    icalparameter *name = icalproperty_get_first_parameter(person, ICAL_CN_PARAMETER);
    const QString text = name != nullptr ? decodedText(icalparameter_get_cn(name)) : decodedText(address);
    const bool hasScheme = text.startsWith("mailto:"_L1, Qt::CaseInsensitive);
    return (hasScheme ? text.sliced(qsizetype(sizeof("mailto:") - 1)) : text).simplified();
}

QStringList people(icalcomponent *event)
{
    QStringList people;
    if (icalproperty *organizer = icalcomponent_get_first_property(event, ICAL_ORGANIZER_PROPERTY)) {
        const QString name = personText(organizer, icalproperty_get_organizer(organizer));
        if (!name.isEmpty())
            people.append(name + u" (lädt ein)"_s);
    }
    for (icalproperty *attendee = icalcomponent_get_first_property(event, ICAL_ATTENDEE_PROPERTY);
         attendee != nullptr && people.size() < mostLines;
         attendee = icalcomponent_get_next_property(event, ICAL_ATTENDEE_PROPERTY)) {
        const QString name = personText(attendee, icalproperty_get_attendee(attendee));
        // Who invites is often among the guests.
        const bool isKnown =
            name.isEmpty() || (!people.isEmpty() && people.first() == name + u" (lädt ein)"_s);
        if (!isKnown)
            people.append(name + answerText(attendee));
    }
    return people;
}

class Links
{
public:
    void add(const QString &text, bool isMeeting)
    {
        const QUrl url(text.trimmed(), QUrl::StrictMode);
        const bool isWeb = url.scheme() == "https"_L1 || url.scheme() == "http"_L1;
        if (!isWeb || url.host().isEmpty() || m_all.contains(url) || m_all.size() >= mostLines)
            return;
        m_all.append(url);
        const QString place = url.host() + url.path();
        const bool isKnown =
            std::any_of(meetingHosts.begin(), meetingHosts.end(), [&place](QLatin1StringView host) {
                return place.contains(host, Qt::CaseInsensitive);
            });
        if (isMeeting || isKnown)
            m_all.move(m_all.size() - 1, m_meetings++);
    }
    void addAllOf(const QString &text)
    {
        static const QRegularExpression pattern(uR"(https?://[^\s<>"']+)"_s,
                                                QRegularExpression::CaseInsensitiveOption);
        auto found = pattern.globalMatch(text);
        while (found.hasNext()) {
            QString link = found.next().captured();
            // The end of a sentence is none of the link's.
            while (!link.isEmpty() && u".,;:!?)]}"_s.contains(link.back()))
                link.chop(1);
            add(link, false);
        }
    }
    void giveTo(EventDetails &details)
    {
        details.links = std::move(m_all);
        details.meetings = m_meetings;
    }

private:
    QList<QUrl> m_all;
    int m_meetings = 0;
};

QString plainText(const QString &text)
{
    static const QRegularExpression markup(uR"(<(br|p|a|b|i|u|div|span|html|ul|ol)[\s/>])"_s,
                                           QRegularExpression::CaseInsensitiveOption);
    return (text.contains(markup) ? htmlToPlainText(text) : text).trimmed().left(longestText);
}

} // namespace

std::shared_ptr<const EventDetails> readDetails(const QByteArray &event)
{
    const QByteArray properties = IcalOutline::properties(event, telling);
    const IcalComponent component(icalparser_parse_string(properties.constData()));
    if (!component || icalcomponent_isa(component.get()) != ICAL_VEVENT_COMPONENT)
        return nullptr;
    EventDetails details;
    Links links;
    const QString description = textOf(component.get(), ICAL_DESCRIPTION_PROPERTY).left(4 * longestText);
    for (icalproperty *property = icalcomponent_get_first_property(component.get(), ICAL_ANY_PROPERTY);
         property != nullptr;
         property = icalcomponent_get_next_property(component.get(), ICAL_ANY_PROPERTY)) {
        const icalproperty_kind kind = icalproperty_isa(property);
        if (kind == ICAL_CONFERENCE_PROPERTY || kind == ICAL_X_PROPERTY)
            links.add(decodedText(icalproperty_get_value_as_string(property)), true);
    }
    details.place = textOf(component.get(), ICAL_LOCATION_PROPERTY).left(longestText).simplified();
    links.addAllOf(details.place);
    if (icalproperty *url = icalcomponent_get_first_property(component.get(), ICAL_URL_PROPERTY))
        links.add(decodedText(icalproperty_get_url(url)), false);
    links.addAllOf(description);
    details.description = plainText(description);
    details.attendees = people(component.get());
    links.giveTo(details);
    if (details == EventDetails())
        return nullptr;
    return std::make_shared<const EventDetails>(std::move(details));
}

} // namespace randblatt
