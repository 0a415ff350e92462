#include "webplayer/Protocol.h"

#include <QJsonDocument>

namespace randblatt {

namespace {

// Far above any line of the protocol; a stream without line ends must not fill the memory.
constexpr qsizetype longestLine = 65'536;

} // namespace

void LineReader::add(const QByteArray &data, const std::function<void(const QJsonObject &)> &receive)
{
    m_rest += data;
    qsizetype begin = 0;
    for (qsizetype end = m_rest.indexOf('\n'); end >= 0; end = m_rest.indexOf('\n', begin)) {
        const QJsonObject line = QJsonDocument::fromJson(m_rest.sliced(begin, end - begin)).object();
        begin = end + 1;
        if (!line.isEmpty())
            receive(line);
    }
    m_rest.remove(0, begin);
    if (m_rest.size() > longestLine)
        m_rest.clear();
}

QByteArray protocolLine(const QJsonObject &line)
{
    return QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace randblatt
