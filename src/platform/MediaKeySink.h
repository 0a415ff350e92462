#pragma once

#include <QPointF>

#include <cstdint>

namespace randblatt {

/// One half of a press of a media key, as a keyboard's own media keys announce it.
struct MediaKeyEvent
{
    int type = 0;
    QPointF location;
    std::uint32_t modifierFlags = 0;
    double timestamp = 0.0;
    int windowNumber = 0;
    int subtype = 0;
    /// The key's code in bits 16…31, its state below.
    std::int64_t data1 = 0;
    std::int64_t data2 = 0;

    friend bool operator==(const MediaKeyEvent &, const MediaKeyEvent &) = default;
};

/// Takes the events of media keys and brings them to the application that plays.
class MediaKeySink
{
public:
    MediaKeySink() = default;
    virtual ~MediaKeySink() = default;
    MediaKeySink(const MediaKeySink &) = delete;
    MediaKeySink &operator=(const MediaKeySink &) = delete;

    /// Returns at once; an event that reaches nobody is dropped.
    virtual void post(const MediaKeyEvent &event) = 0;
};

} // namespace randblatt
