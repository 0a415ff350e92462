#include "platform/calendar/IcalText.h"

namespace randblatt {

namespace {

/// Whether the lines of a component name the uid; long lines go on behind a break and a blank.
bool hasUid(QByteArray component, const QByteArray &uid)
{
    component.replace("\r\n", "\n").replace("\n ", "").replace("\n\t", "");
    const QByteArray upper = component.toUpper();
    for (qsizetype at = upper.indexOf("\nUID"); at >= 0; at = upper.indexOf("\nUID", at + 1)) {
        const QByteArray line = component.sliced(at + 1, component.indexOf('\n', at + 1) - at - 1);
        const char next = line.size() > 3 ? line.at(3) : '\0';
        if ((next == ':' || next == ';') && line.sliced(line.indexOf(':') + 1).trimmed() == uid)
            return true;
    }
    return false;
}

} // namespace

QByteArray emptyCalendarText()
{
    return QByteArrayLiteral("BEGIN:VCALENDAR\r\n"
                             "VERSION:2.0\r\n"
                             "PRODID:-//Quillbar//Kalender//DE\r\n"
                             "END:VCALENDAR\r\n");
}

void insertComponent(QByteArray &text, const QByteArray &component)
{
    QByteArray encoded = component;
    if (!text.contains("\r\n"))
        encoded.replace("\r\n", "\n");
    text.insert(text.toUpper().lastIndexOf("END:VCALENDAR"), encoded);
}

EventPlace findEvent(const QByteArray &text, const QByteArray &uid)
{
    static const QByteArray beginning = "BEGIN:VEVENT";
    static const QByteArray ending = "\nEND:VEVENT";
    const QByteArray upper = text.toUpper();
    EventPlace place;
    qsizetype end = 0;
    for (qsizetype begin = upper.indexOf(beginning); begin >= 0; begin = upper.indexOf(beginning, end)) {
        end = begin + beginning.size();
        // In the middle of a line it is somebody's words, and the events behind it are looked at all the
        // same.
        if (begin > 0 && text.at(begin - 1) != '\n')
            continue;
        end = upper.indexOf(ending, begin);
        end = end < 0 ? -1 : upper.indexOf('\n', end + 1);
        end = end < 0 ? text.size() : end + 1;
        if (!hasUid(text.sliced(begin, end - begin), uid))
            continue;
        if (place.count != EventPlace::Count::none)
            return {.count = EventPlace::Count::several};
        place = {.count = EventPlace::Count::one, .begin = begin, .length = end - begin};
    }
    return place;
}

} // namespace randblatt
