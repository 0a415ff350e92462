#pragma once

#include "platform/calendar/CalendarBackend.h"

#include <QString>
#include <QtPlugin>

#include <memory>

namespace randblatt {

/// What the plugin for the calendar server offers.
class CalendarBackendFactory
{
public:
    CalendarBackendFactory() = default;
    virtual ~CalendarBackendFactory() = default;
    CalendarBackendFactory(const CalendarBackendFactory &) = delete;
    CalendarBackendFactory &operator=(const CalendarBackendFactory &) = delete;

    /// Makes the back end for the server that owns `serverName` on the session bus.
    [[nodiscard]] virtual std::unique_ptr<CalendarBackend> makeBackend(const QString &serverName) = 0;
};

} // namespace randblatt

Q_DECLARE_INTERFACE(randblatt::CalendarBackendFactory, "com.randblatt.Quillbar.CalendarBackendFactory/1")
