#include "platform/calendar/IcalText.h"

#include "platform/calendar/Ical.h"
#include "platform/calendar/IcalOutline.h"

#include <array>

namespace randblatt {

QByteArray emptyCalendarText()
{
    return QByteArrayLiteral("BEGIN:VCALENDAR\r\n"
                             "VERSION:2.0\r\n"
                             "PRODID:-//Quillbar//Kalender//DE\r\n"
                             "END:VCALENDAR\r\n");
}

void insertComponent(QByteArray &text, const QByteArray &component)
{
    const auto outline = IcalOutline::of(text);
    if (!outline)
        return;
    QByteArray encoded = component;
    if (!text.contains("\r\n"))
        encoded.replace("\r\n", "\n");
    text.insert(outline->calendars().back().end.begin, encoded);
}

EventPlace findEvent(const QByteArray &text, const QByteArray &uid)
{
    static constexpr std::array<QByteArrayView, 1> name{"UID"};
    const auto outline = IcalOutline::of(text);
    if (!outline)
        return {};
    icalerror_set_errors_are_fatal(0);
    EventPlace place;
    for (const IcalOutline::Calendar &calendar : outline->calendars()) {
        for (const IcalOutline::Range &event : calendar.events) {
            const QByteArray part =
                IcalOutline::properties(QByteArrayView(text).sliced(event.begin, event.length), name);
            const IcalComponent component(icalparser_parse_string(part.constData()));
            if (!component || icalcomponent_get_uid(component.get()) != uid)
                continue;
            if (place.count != EventPlace::Count::none)
                return {.count = EventPlace::Count::several};
            place = {.count = EventPlace::Count::one, .begin = event.begin, .length = event.length};
        }
    }
    return place;
}

} // namespace randblatt
