#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>

namespace randblatt {

/// What the command line asks for. There is nothing to configure by it.
struct CommandLine
{
    /// `arguments` without the program's name and the toolkit's own.
    [[nodiscard]] static CommandLine read(const QStringList &arguments);

    /// Addresses to open, of the application's own scheme.
    QList<QUrl> urls;
    /// In place of a start: what is to be printed, in German. Empty for a start.
    QString answer;
    /// Whether the answer is of an error.
    bool isError = false;
};

} // namespace randblatt
