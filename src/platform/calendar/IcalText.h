#pragma once

#include <QByteArray>

namespace randblatt {

// What is done to an iCalendar text (RFC 5545) without reading more of it than must be: everything else in it
// stays as it is.

/// A calendar without events.
[[nodiscard]] QByteArray emptyCalendarText();

/// Adds a component at the end of the last calendar of a whole text, with the text's kind of line breaks.
void insertComponent(QByteArray &text, const QByteArray &component);

/// Where an event stands in a text.
struct EventPlace
{
    enum class Count { none, one, several };

    /// How many events of the uid there are; only one has a place.
    Count count = Count::none;
    qsizetype begin = 0;
    qsizetype length = 0;
};

/// Looks for the events of a whole text with this uid.
[[nodiscard]] EventPlace findEvent(const QByteArray &text, const QByteArray &uid);

} // namespace randblatt
