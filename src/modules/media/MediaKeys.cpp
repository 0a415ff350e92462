#include "modules/media/MediaKeys.h"

#include "platform/MediaKeySink.h"

namespace randblatt {

MediaKeys::MediaKeys(MediaKeySink &sink, QObject *parent)
    : QObject(parent)
    , m_sink(sink)
{
}

void MediaKeys::playPause()
{
    m_sink.postMediaKey(MediaKey::play);
}

void MediaKeys::next()
{
    m_sink.postMediaKey(MediaKey::next);
}

void MediaKeys::previous()
{
    m_sink.postMediaKey(MediaKey::previous);
}

} // namespace randblatt
