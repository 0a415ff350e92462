#include "settings/StoreRepair.h"

#include "settings/StoreFile.h"
#include "settings/StoreLog.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array companions{"-wal"_L1, "-shm"_L1};

bool syncPath(const QString &path)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool synced = ::fsync(descriptor) == 0;
    ::close(descriptor);
    return synced;
}

bool keepOne(const QString &path, const QString &aside, Keeping keeping)
{
    if (!QFileInfo::exists(path))
        return true;
    if (keeping == Keeping::damagedFile &&
        ::link(QFile::encodeName(path).constData(), QFile::encodeName(aside).constData()) == 0)
        return true;
    // Not every file system has links.
    return QFile::copy(path, aside) && syncPath(aside);
}

void removeCompanions(const QString &path)
{
    for (const auto &companion : companions)
        QFile::remove(path + companion);
}

} // namespace

QString keepAside(const QString &path, Keeping keeping)
{
    const QString date = QDateTime::currentDateTime().toString(u"yyyy-MM-dd'T'HHmmss.zzz"_s);
    const QString aside =
        path + (keeping == Keeping::overwritten ? ".aufgehoben-"_L1 : ".unlesbar-"_L1) + date;
    if (keepOne(path, aside, keeping) && keepOne(path + companions[0], aside + companions[0], keeping))
        return aside;
    QFile::remove(aside);
    QFile::remove(aside + companions[0]);
    return {};
}

StoreResult moveIntoPlace(const QString &source, const QString &path)
{
    // The log first: with the new file it would be taken for its own.
    removeCompanions(path);
    if (std::rename(QFile::encodeName(source).constData(), QFile::encodeName(path).constData()) != 0)
        return StoreResult::unavailable;
    syncPath(QFileInfo(path).absolutePath());
    return StoreResult::ok;
}

StoreResult replaceStore(const QString &path, const QList<StoredRow> &rows)
{
    const QString fresh = path + ".neu"_L1;
    const auto removeFresh = [&] {
        QFile::remove(fresh);
        removeCompanions(fresh);
    };
    removeFresh();
    StoreFile file(fresh);
    StoreResult result = file.open();
    if (result == StoreResult::ok)
        result = file.write(rows);
    if (result == StoreResult::ok)
        result = emptyLog(fresh, file.connection());
    file.close();
    removeCompanions(fresh);
    if (result == StoreResult::ok)
        result = moveIntoPlace(fresh, path);
    if (result != StoreResult::ok)
        removeFresh();
    return result;
}

} // namespace randblatt
