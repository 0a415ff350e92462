#pragma once

namespace randblatt {

/// A keyboard's media keys, with the codes that it has for them.
enum class MediaKey { play = 16, next = 17, previous = 18 };

/// Takes presses of media keys and brings them to the application that plays.
class MediaKeySink
{
public:
    MediaKeySink() = default;
    virtual ~MediaKeySink() = default;
    MediaKeySink(const MediaKeySink &) = delete;
    MediaKeySink &operator=(const MediaKeySink &) = delete;

    /// One press and release. Returns at once; a key that reaches nobody is dropped.
    virtual void postMediaKey(MediaKey key) = 0;
};

} // namespace randblatt
