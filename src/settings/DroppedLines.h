#pragma once

#include <QList>
#include <QStringList>
#include <QUrl>

namespace randblatt {

/// The lines of what was dropped: the links, or without any those of the text, trimmed and without empty
/// ones.
[[nodiscard]] QStringList droppedLines(const QString &text, const QList<QUrl> &urls);

/// Whether files are among the links.
[[nodiscard]] bool holdsFiles(const QList<QUrl> &urls);

} // namespace randblatt
