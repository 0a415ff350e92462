#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

class MediaKeySink;

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
