#include "modules/media/CoverCache.h"

#include "modules/media/HttpReply.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QImageReader>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

constexpr int mostDownloads = 4;
constexpr qint64 largestFile = 2'000'000;
constexpr int largestExtent = 4096;
constexpr qsizetype mostUseless = 1000;

bool isImage(const QByteArray &data)
{
    QBuffer buffer;
    buffer.setData(data);
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    return reader.canRead() && !size.isEmpty() && std::max(size.width(), size.height()) <= largestExtent;
}

} // namespace

CoverCache::CoverCache(QNetworkAccessManager &network, QString folder, qint64 limit, QObject *parent)
    : QObject(parent)
    , m_network(network)
    , m_folder(std::move(folder))
    , m_limit(limit)
{
}

QString CoverCache::defaultFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + "/quillbar/covers"_L1;
}

QString CoverCache::path(const QUrl &url) const
{
    const QByteArray name = QCryptographicHash::hash(url.toEncoded(), QCryptographicHash::Sha256).toHex();
    return m_folder + u'/' + QString::fromLatin1(name);
}

void CoverCache::request(const QUrl &url, QObject *context, const Completion &completion)
{
    if (url.isEmpty() || m_useless.contains(url)) {
        completion({});
        return;
    }
    if (QFile file(path(url)); file.open(QFile::ReadWrite | QFile::ExistingOnly)) {
        // Remembers that it was used; opened for writing, as setting the time needs.
        file.setFileTime(QDateTime::currentDateTime(), QFile::FileModificationTime);
        completion(file.fileName());
        return;
    }
    QList<Waiting> &waiting = m_waiting[url];
    if (waiting.isEmpty())
        m_queue.append(url);
    waiting.append({context, completion});
    startNext();
}

void CoverCache::startNext()
{
    while (m_underWay < mostDownloads && !m_queue.isEmpty()) {
        const QUrl url = m_queue.takeLast();
        const QList<Waiting> &waiting = m_waiting[url];
        if (std::any_of(waiting.begin(), waiting.end(), [](const auto &one) { return one.context; }))
            download(url);
        else
            m_waiting.remove(url);
    }
}

void CoverCache::download(const QUrl &url)
{
    ++m_underWay;
    sendHttp(m_network, "GET", QNetworkRequest(url), {}, largestFile, this,
             [this, url](const HttpReply &reply) {
                 --m_underWay;
                 const bool isKept = reply.status == 200 && keep(url, reply.body);
                 // Without an answer the network is to blame, not the address.
                 if (!isKept && reply.status != 0 && m_useless.size() < mostUseless)
                     m_useless.insert(url);
                 const auto waiting = m_waiting.take(url);
                 for (const Waiting &one : waiting) {
                     if (one.context)
                         one.completion(isKept ? path(url) : QString());
                 }
                 startNext();
             });
}

bool CoverCache::keep(const QUrl &url, const QByteArray &data)
{
    if (!isImage(data) || !QDir().mkpath(m_folder))
        return false;
    QSaveFile file(path(url));
    if (!file.open(QFile::WriteOnly) || file.write(data) != data.size() || !file.commit())
        return false;
    if (m_size >= 0)
        m_size += data.size();
    prune();
    return true;
}

void CoverCache::prune()
{
    if (m_size >= 0 && m_size <= m_limit)
        return;
    // Newest first.
    const QFileInfoList files = QDir(m_folder).entryInfoList(QDir::Files, QDir::Time);
    m_size = 0;
    for (const QFileInfo &file : files)
        m_size += file.size();
    if (m_size <= m_limit)
        return;
    // Some room, so that the next picture does not prune again.
    for (auto oldest = files.rbegin(); oldest != files.rend() && m_size > m_limit * 4 / 5; ++oldest) {
        if (QFile::remove(oldest->filePath()))
            m_size -= oldest->size();
    }
}

} // namespace randblatt
