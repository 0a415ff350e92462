#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QSet>
#include <QString>

#include <cstdio>
#include <functional>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace randblatt {

/// Runs a function in a process of its own and gives the process.
inline pid_t inProcess(const std::function<bool()> &function)
{
    const pid_t process = ::fork();
    if (process == 0)
        ::_exit(function() ? 0 : 1);
    return process;
}

inline bool hasEndedWell(pid_t process)
{
    int status = 0;
    return ::waitpid(process, &status, 0) == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

inline QByteArray bytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

inline bool append(const QString &path, const QByteArray &text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Append) && file.write(text) == text.size();
}

/// A program that replaces the file at `path` time and again, until there is a file "stop" in the folder, and
/// notes each version there, in "log.put.other" what it put and in "log.out.other" what it found. A version
/// is `prefix` and a number of its own.
inline bool exchangeFiles(const QDir &folder, const QString &path, const QByteArray &prefix = {})
{
    const QByteArray mine = QFile::encodeName(folder.filePath(QStringLiteral(".other")));
    const QByteArray target = QFile::encodeName(path);
    for (int number = 0; !folder.exists(QStringLiteral("stop")); ++number) {
        const QByteArray version = prefix + "other " + QByteArray::number(number);
        QFile file(QFile::decodeName(mine));
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(version) < 0 ||
            !file.flush() || ::fsync(file.handle()) != 0)
            return false;
        file.close();
        if (!append(folder.filePath(QStringLiteral("log.put.other")), version + '\n'))
            return false;
        while (true) {
            if (::renameat2(AT_FDCWD, mine.constData(), AT_FDCWD, target.constData(), RENAME_EXCHANGE) == 0) {
                if (!append(folder.filePath(QStringLiteral("log.out.other")),
                            bytes(QFile::decodeName(mine)) + '\n'))
                    return false;
                break;
            }
            if (::link(mine.constData(), target.constData()) == 0) {
                ::unlink(mine.constData());
                break;
            }
        }
    }
    return true;
}

inline QSet<QByteArray> lines(const QByteArray &text)
{
    const QList<QByteArray> list = text.split('\n');
    return {list.cbegin(), list.cend()};
}

} // namespace randblatt
