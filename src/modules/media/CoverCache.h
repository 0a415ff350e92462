#pragma once

#include <QHash>
#include <QList>
#include <QNetworkAccessManager>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace randblatt {

/// The pictures of playlists and albums: downloaded a few at a time and kept in a folder of limited size,
/// from which those that were used longest ago go first.
class CoverCache : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The media module has the covers.")

public:
    /// Gets the path of a file that holds an image; empty where there is none.
    using Completion = std::function<void(const QString &)>;

    /// `network` is borrowed; `folder` is made when the first picture is kept; `limit` is in bytes.
    CoverCache(QNetworkAccessManager &network, QString folder, qint64 limit = 32'000'000,
               QObject *parent = nullptr);

    /// Below XDG_CACHE_HOME (XDG Base Directory Specification).
    [[nodiscard]] static QString defaultFolder();

    /// Calls `completion` once, possibly at once, unless `context` is gone by then. The latest request is
    /// served first, and one that nobody waits for any more is not sent at all.
    void request(const QUrl &url, QObject *context, const Completion &completion);

private:
    struct Waiting
    {
        QPointer<QObject> context;
        Completion completion;
    };

    void startNext();
    void download(const QUrl &url);
    bool keep(const QUrl &url, const QByteArray &data);
    void prune();
    [[nodiscard]] QString path(const QUrl &url) const;

    QNetworkAccessManager &m_network;
    QString m_folder;
    qint64 m_limit;
    /// Of the files in the folder; below 0 before they were counted.
    qint64 m_size = -1;
    QHash<QUrl, QList<Waiting>> m_waiting;
    QList<QUrl> m_queue;
    /// Addresses that gave something that is no image.
    QSet<QUrl> m_useless;
    int m_underWay = 0;
};

} // namespace randblatt
