#include "modules/media/MediaKeys.h"

#include "platform/MediaKeySink.h"

namespace randblatt {

namespace {

constexpr std::uint32_t playKey = 16;
constexpr std::uint32_t nextKey = 17;
constexpr std::uint32_t previousKey = 18;

} // namespace

void postMediaKey(MediaKeySink &sink, std::uint32_t keyCode)
{
    for (const std::uint32_t state : {0xa00U, 0xb00U}) {
        // 32 bits wide, then widened with its sign.
        const auto data = static_cast<std::int32_t>(((keyCode & 0xffffU) << 16U) | state);
        sink.post({.type = 14,
                   .location = {},
                   .modifierFlags = state,
                   .timestamp = 0.0,
                   .windowNumber = 0,
                   .subtype = 8,
                   .data1 = data,
                   .data2 = -1});
    }
}

MediaKeys::MediaKeys(MediaKeySink &sink, QObject *parent)
    : QObject(parent)
    , m_sink(sink)
{
}

void MediaKeys::playPause()
{
    postMediaKey(m_sink, playKey);
}

void MediaKeys::next()
{
    postMediaKey(m_sink, nextKey);
}

void MediaKeys::previous()
{
    postMediaKey(m_sink, previousKey);
}

} // namespace randblatt
