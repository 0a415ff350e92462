#include "platform/mpris/ProcessTree.h"

#include <QFile>
#include <QString>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

// Deeper than any tree of processes is; they may change while they are read.
constexpr int deepest = 32;

/// 0 where it cannot be read.
qint64 parentOf(qint64 pid)
{
    QFile stat(u"/proc/%1/stat"_s.arg(pid));
    if (!stat.open(QFile::ReadOnly))
        return 0;
    const QByteArray text = stat.readAll();
    // The name before may hold blanks and parentheses.
    const QList<QByteArray> fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
    return fields.size() > 1 ? fields.at(1).toLongLong() : 0;
}

} // namespace

bool isDescendant(qint64 pid, qint64 ancestor)
{
    for (int depth = 0; depth < deepest && pid > 1; ++depth) {
        pid = parentOf(pid);
        if (pid == ancestor)
            return true;
    }
    return false;
}

} // namespace randblatt
