#include "ui/controls/Voice.h"

#include "platform/ScreenReader.h"

#include <QQuickWindow>

namespace randblatt {

namespace {

ScreenReader *&used()
{
    static ScreenReader *reader = nullptr;
    return reader;
}

} // namespace

void Voice::use(ScreenReader *reader)
{
    used() = reader;
}

void Voice::say(QQuickItem *source, const QString &text, bool isUrgent)
{
    const bool isSeen = source != nullptr && source->isVisible() && source->window() != nullptr &&
                        source->window()->isVisible();
    if (used() != nullptr && isSeen && !text.isEmpty())
        // What a view is in is known to the tools; a part of it may not be.
        used()->say(*source->window(), text, isUrgent);
}

} // namespace randblatt
