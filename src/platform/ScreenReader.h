#pragma once

#include <QObject>
#include <QString>

namespace randblatt {

/// Speaks to who does not see the screen. By itself it says nothing.
class ScreenReader
{
public:
    ScreenReader() = default;
    virtual ~ScreenReader() = default;
    Q_DISABLE_COPY_MOVE(ScreenReader)

    /// Says what has happened in `source`, a thing of a window's; at once if it is urgent, else when there is
    /// a pause.
    virtual void say(QObject &source, const QString &text, bool isUrgent)
    {
        Q_UNUSED(source)
        Q_UNUSED(text)
        Q_UNUSED(isUrgent)
    }
};

} // namespace randblatt
