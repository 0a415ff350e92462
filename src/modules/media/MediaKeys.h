#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <cstdint>

namespace randblatt {

class MediaKeySink;

/// Posts the press and the release of a media key, in this order and without a pause, to `sink`. The codes
/// are those of a keyboard's auxiliary keys: 16 play/pause, 17 next, 18 previous.
void postMediaKey(MediaKeySink &sink, std::uint32_t keyCode);

/// The media keys for views.
class MediaKeys : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The media module has the media keys.")

public:
    /// `sink` is borrowed and must outlive the object.
    explicit MediaKeys(MediaKeySink &sink, QObject *parent = nullptr);

    Q_INVOKABLE void playPause();
    Q_INVOKABLE void next();
    Q_INVOKABLE void previous();

private:
    MediaKeySink &m_sink;
};

} // namespace randblatt
