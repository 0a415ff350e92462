#pragma once

#include "platform/CalendarEvent.h"

#include <QByteArray>

namespace randblatt {

/// What the text of a VEVENT tells of it beside its title and its time; null if that is nothing.
[[nodiscard]] std::shared_ptr<const EventDetails> readDetails(const QByteArray &event);

} // namespace randblatt
