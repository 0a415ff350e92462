#include "platform/calendar/IcalOutline.h"

#include <algorithm>

namespace randblatt {

namespace {

bool isNamed(QByteArrayView name, QByteArrayView wanted)
{
    return name.size() == wanted.size() &&
           qstrnicmp(name.data(), wanted.data(), static_cast<size_t>(name.size())) == 0;
}

QByteArrayView nameAfter(QByteArrayView line, QByteArrayView keyword)
{
    if (line.size() <= keyword.size() || !isNamed(line.first(keyword.size()), keyword))
        return {};
    return line.sliced(keyword.size()).trimmed();
}

/// Whether nothing is to be seen of a line. Some programs end their texts with a control character.
bool isBlank(QByteArrayView line)
{
    return std::all_of(line.begin(), line.end(),
                       [](char c) { return static_cast<unsigned char>(c) <= ' ' || c == 0x7f; });
}

/// A text line by line, each with its end.
class Lines
{
public:
    explicit Lines(QByteArrayView text)
        : m_text(text)
    {
    }

    [[nodiscard]] bool atEnd() const { return m_at >= m_text.size(); }
    [[nodiscard]] qsizetype position() const { return m_at; }
    QByteArrayView next()
    {
        const qsizetype newline = m_text.indexOf('\n', m_at);
        const qsizetype end = newline < 0 ? m_text.size() : newline + 1;
        const QByteArrayView line = m_text.sliced(m_at, end - m_at);
        m_at = end;
        return line;
    }

private:
    QByteArrayView m_text;
    qsizetype m_at = 0;
};

} // namespace

std::optional<IcalOutline> IcalOutline::of(QByteArrayView text)
{
    static constexpr QByteArrayView byteOrderMark("\xef\xbb\xbf");
    IcalOutline outline;
    std::vector<QByteArrayView> open;
    qsizetype partBegin = 0;
    Lines lines(text);
    while (!lines.atEnd()) {
        const qsizetype position = lines.position();
        QByteArrayView line = lines.next();
        if (position == 0 && line.startsWith(byteOrderMark))
            line = line.sliced(byteOrderMark.size());
        if (const QByteArrayView begun = nameAfter(line, "BEGIN:"); !begun.isEmpty()) {
            if (open.empty() != isNamed(begun, "VCALENDAR"))
                return std::nullopt;
            open.push_back(begun);
            if (open.size() == 1)
                outline.m_calendars.push_back({.whole = {position, 0}});
            else if (open.size() == 2)
                partBegin = position;
        } else if (const QByteArrayView ended = nameAfter(line, "END:"); !ended.isEmpty()) {
            if (open.empty() || !isNamed(open.back(), ended))
                return std::nullopt;
            open.pop_back();
            Calendar &calendar = outline.m_calendars.back();
            const Range part{partBegin, lines.position() - partBegin};
            if (open.empty()) {
                calendar.whole.length = lines.position() - calendar.whole.begin;
                calendar.end = {position, lines.position() - position};
            } else if (open.size() == 1 && isNamed(ended, "VTIMEZONE")) {
                calendar.zones.push_back(part);
            } else if (open.size() == 1 && isNamed(ended, "VEVENT")) {
                calendar.events.push_back(part);
            }
        } else if (open.empty() && !isBlank(line)) {
            return std::nullopt;
        }
    }
    return open.empty() && !outline.m_calendars.empty() ? std::optional(outline) : std::nullopt;
}

QByteArray IcalOutline::properties(QByteArrayView part, std::span<const QByteArrayView> names)
{
    const auto isWanted = [names](QByteArrayView line) {
        const auto end = std::find_if(line.begin(), line.end(), [](char c) { return c == ':' || c == ';'; });
        const QByteArrayView name = QByteArrayView(line.begin(), end).trimmed();
        return names.empty() || std::any_of(names.begin(), names.end(),
                                            [name](QByteArrayView known) { return isNamed(name, known); });
    };
    QByteArray kept;
    int depth = 0;
    bool keepsLine = false;
    for (Lines lines(part); !lines.atEnd();) {
        const QByteArrayView line = lines.next();
        if (!nameAfter(line, "BEGIN:").isEmpty())
            keepsLine = ++depth == 1;
        else if (!nameAfter(line, "END:").isEmpty())
            keepsLine = depth-- == 1;
        else if (line.front() != ' ' && line.front() != '\t')
            keepsLine = depth == 1 && isWanted(line);
        if (keepsLine)
            kept.append(line);
    }
    // For the library the text would end there.
    return kept.replace(QByteArrayView("\0", 1), {});
}

} // namespace randblatt
