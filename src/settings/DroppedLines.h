#pragma once

#include <QList>
#include <QStringList>
#include <QUrl>

namespace randblatt {

/// The lines of what was dropped, trimmed and without empty ones: of the text or, where there is none, or
/// files beside it, the links.
[[nodiscard]] QStringList droppedLines(const QString &text, const QList<QUrl> &urls);

/// Whether files are among the links.
[[nodiscard]] bool holdsFiles(const QList<QUrl> &urls);

} // namespace randblatt
