#include "settings/DroppedLines.h"

#include <QRegularExpression>

#include <algorithm>

namespace randblatt {

QStringList droppedLines(const QString &text, const QList<QUrl> &urls)
{
    QStringList lines;
    // Beside links, the text is the same links or paths, in one of several ways to write them.
    for (const QUrl &url : urls)
        lines.append(url.toString(QUrl::FullyEncoded));
    if (!lines.isEmpty())
        return lines;
    static const QRegularExpression lineEnd(QStringLiteral("[\\r\\n\\x{2028}\\x{2029}]+"));
    const QStringList written = text.split(lineEnd);
    for (const QString &line : written)
        lines.append(line.trimmed());
    lines.removeIf([](const QString &line) { return line.isEmpty(); });
    return lines;
}

bool holdsFiles(const QList<QUrl> &urls)
{
    return std::any_of(urls.begin(), urls.end(), [](const QUrl &url) { return url.isLocalFile(); });
}

} // namespace randblatt
