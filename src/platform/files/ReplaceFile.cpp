#include "platform/files/ReplaceFile.h"

#include "platform/files/FileDescriptor.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <sys/xattr.h>

namespace randblatt {

namespace {

using Outcome = FileReplacement::Outcome;
using Status = struct stat;

constexpr mode_t permissionBits = 0777;

FileReplacement failed(int error)
{
    return {.outcome = Outcome::failed, .error = error};
}

FileReplacement changed(const QByteArray &kept = {})
{
    return {.outcome = Outcome::changed, .kept = QFile::decodeName(kept)};
}

bool isUnsupported(int error)
{
    return error == EINVAL || error == ENOSYS || error == EOPNOTSUPP;
}

/// Of a path that can be relative.
QByteArray folderOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return slash < 0 ? QByteArray(".") : path.first(std::max<qsizetype>(slash, 1));
}

/// Follows the symbolic links that a path's last part leads along, also to where nothing is yet. Gives 0 or
/// the system's error number.
int followLinks(QByteArray &path)
{
    constexpr int mostLinks = 40;
    for (int count = 0; count < mostLinks; ++count) {
        std::array<char, PATH_MAX> target{};
        const ssize_t length = ::readlink(path.constData(), target.data(), target.size());
        if (length < 0)
            return errno == EINVAL || errno == ENOENT ? 0 : errno;
        const QByteArray link(target.data(), length);
        path = link.startsWith('/') ? link : folderOf(path) + '/' + link;
    }
    return ELOOP;
}

/// Whether a program has the file open to write to it; no where the system does not tell. As long as the
/// descriptor is open, no program can begin to.
bool isBeingWritten(int descriptor)
{
    // On a network file system a refusal says nothing of writers.
    struct statfs system
    {
    };
    if (::fstatfs(descriptor, &system) != 0 || system.f_type == NFS_SUPER_MAGIC ||
        system.f_type == CIFS_SUPER_MAGIC || system.f_type == SMB2_SUPER_MAGIC)
        return false;
    // Who holds a lease is told by a signal that someone waits for it; this signal does nothing.
    ::fcntl(descriptor, F_SETSIG, SIGURG);
    return ::fcntl(descriptor, F_SETLEASE, F_RDLCK) != 0 && errno == EAGAIN;
}

/// Whether a file has just these contents, and nobody is about to change them.
bool holds(const QByteArray &path, const QByteArray &contents)
{
    const FileDescriptor file(
        ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW | O_CLOEXEC));
    if (!file.isOpen() || isBeingWritten(file.number()))
        return false;
    const FileReading reading = readOpenFile(file.number(), contents.size());
    return reading.version && reading.version->contents == contents;
}

bool writeAll(int descriptor, const QByteArray &contents)
{
    for (qsizetype written = 0; written < contents.size();) {
        const ssize_t count = ::write(descriptor, contents.constData() + written,
                                      static_cast<size_t>(contents.size() - written));
        if (count < 0 && errno != EINTR)
            return false;
        written += std::max<ssize_t>(count, 0);
    }
    return true;
}

/// Extended attributes, among them access lists. What can't be taken over is left: the contents matter more.
void copyAttributes(int source, int target)
{
    constexpr size_t longest = 64 * 1024;
    QByteArray names(static_cast<qsizetype>(longest), '\0');
    const ssize_t length = ::flistxattr(source, names.data(), longest);
    if (length <= 0)
        return;
    names.truncate(length);
    QByteArray value(static_cast<qsizetype>(longest), '\0');
    for (const QByteArray &name : names.split('\0')) {
        const ssize_t size =
            name.isEmpty() ? -1 : ::fgetxattr(source, name.constData(), value.data(), longest);
        if (size >= 0)
            ::fsetxattr(target, name.constData(), value.constData(), static_cast<size_t>(size), 0);
    }
}

/// Gives the file `target` what belongs to the file at `path` beside its contents.
bool takeOver(const QByteArray &path, int target)
{
    const FileDescriptor source(::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    Status status{};
    if (!source.isOpen() || ::fstat(source.number(), &status) != 0)
        return false;
    // Only the superuser can give a file away, and a user only to groups that he is in.
    constexpr auto same = static_cast<uid_t>(-1);
    const bool isGiven =
        ::fchown(target, status.st_uid, status.st_gid) == 0 || ::fchown(target, same, status.st_gid) == 0;
    copyAttributes(source.number(), target);
    // Nobody may do more than before.
    const mode_t mode = status.st_mode & (isGiven ? permissionBits : permissionBits & ~mode_t(S_IRWXG));
    return ::fchmod(target, mode) == 0;
}

/// A new file under a name that nobody else has, removed with this unless it gave its name away.
class NewFile
{
public:
    /// `pattern` has six X before its last `suffixLength` characters.
    explicit NewFile(const QByteArray &pattern, int suffixLength = 0)
        : m_path(pattern)
        , m_file(::mkostemps(m_path.data(), suffixLength, O_CLOEXEC))
        , m_isOwn(m_file.isOpen())
    {
    }
    ~NewFile() { remove(); }
    NewFile(const NewFile &) = delete;
    NewFile &operator=(const NewFile &) = delete;

    [[nodiscard]] const QByteArray &path() const { return m_path; }
    [[nodiscard]] FileDescriptor &file() { return m_file; }
    /// What bears the name now is someone else's.
    void giveAway() { m_isOwn = false; }
    void remove()
    {
        if (m_isOwn)
            ::unlink(m_path.constData());
        m_isOwn = false;
    }

private:
    QByteArray m_path;
    FileDescriptor m_file;
    bool m_isOwn;
};

int moveEncoded(const QByteArray &source, const QByteArray &target)
{
    if (::renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (!isUnsupported(errno))
        return errno;
    if (::link(source.constData(), target.constData()) == 0)
        return ::unlink(source.constData()) == 0 ? 0 : errno;
    if (errno != EPERM && errno != EMLINK && !isUnsupported(errno))
        return errno;
    // A file system without hard links and without a promise: there is nothing better than to look.
    Status status{};
    if (::lstat(target.constData(), &status) == 0)
        return EEXIST;
    return ::rename(source.constData(), target.constData()) == 0 ? 0 : errno;
}

int syncEncoded(const QByteArray &folder)
{
    const FileDescriptor file(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // A folder that may be written to but not read can't be synced.
    if (!file.isOpen())
        return errno == EACCES ? 0 : errno;
    return ::fsync(file.number()) == 0 || isUnsupported(errno) || errno == EROFS ? 0 : errno;
}

FileReplacement replaced(const QByteArray &target)
{
    const int error = syncEncoded(folderOf(target));
    return error == 0 ? FileReplacement{.outcome = Outcome::replaced} : failed(error);
}

/// The pattern of a name beside `target` that people and programs find.
QByteArray besidePattern(const QByteArray &target, int &suffixLength)
{
    const qsizetype name = target.lastIndexOf('/') + 1;
    const qsizetype point = target.lastIndexOf('.');
    const qsizetype end = point > name ? point : target.size();
    suffixLength = static_cast<int>(target.size() - end) + 1;
    // Names have at most 255 bytes; a part of a character at the end does not matter to the system.
    constexpr qsizetype longestBase = 200;
    return target.first(name) + target.sliced(name, std::min(end - name, longestBase)) +
           " (andere Fassung XXXXXX)" + target.sliced(end);
}

/// Gives what bears the new file's name a name beside `target` that is found.
FileReplacement keepBeside(NewFile &outside, const QByteArray &target)
{
    outside.giveAway();
    int suffixLength = 0;
    const QByteArray pattern = besidePattern(target, suffixLength);
    NewFile kept(pattern, suffixLength);
    const bool isKept =
        kept.file().isOpen() && ::rename(outside.path().constData(), kept.path().constData()) == 0;
    if (isKept)
        kept.giveAway();
    (void)syncEncoded(folderOf(target));
    return changed(isKept ? kept.path() : outside.path());
}

/// By exchanging the two files, which shows what was replaced.
FileReplacement exchange(NewFile &written, const QByteArray &target, const QByteArray &known,
                         const QByteArray &contents)
{
    const auto swap = [&] {
        return ::renameat2(AT_FDCWD, written.path().constData(), AT_FDCWD, target.constData(),
                           RENAME_EXCHANGE) == 0;
    };
    if (!swap())
        return errno == ENOENT ? changed() : failed(errno);
    if (holds(written.path(), known)) {
        written.remove();
        return replaced(target);
    }
    // What came out is someone's work: it goes back. If it can't, since the file was removed or a third
    // version has come, both are kept.
    if (swap() && holds(written.path(), contents)) {
        written.remove();
        return changed();
    }
    return keepBeside(written, target);
}

/// For file systems that can't exchange: by taking the old file out of its place first.
FileReplacement takeOut(NewFile &written, const QByteArray &target, const QByteArray &known)
{
    int suffixLength = 0;
    const QByteArray pattern = besidePattern(target, suffixLength);
    NewFile beside(pattern, suffixLength);
    if (!beside.file().isOpen())
        return failed(errno);
    if (::rename(target.constData(), beside.path().constData()) != 0)
        return errno == ENOENT ? changed() : failed(errno);
    beside.giveAway();
    const bool isKnown = holds(beside.path(), known);
    const int error = isKnown ? moveEncoded(written.path(), target) : 0;
    if (isKnown && error == 0) {
        written.giveAway();
        ::unlink(beside.path().constData());
        return replaced(target);
    }
    if (moveEncoded(beside.path(), target) != 0)
        return changed(beside.path());
    return isKnown && error != EEXIST ? failed(error) : changed();
}

} // namespace

FileReplacement replaceFile(const QString &path, const std::optional<FileVersion> &known,
                            const QByteArray &contents, const FileReplacementOptions &options)
{
    QByteArray target = QFile::encodeName(path);
    if (const int error = followLinks(target); error != 0)
        return failed(error);
    NewFile written(folderOf(target) + "/.quillbar-XXXXXX");
    FileDescriptor &file = written.file();
    if (!file.isOpen())
        return failed(errno);
    if (!writeAll(file.number(), contents))
        return failed(errno);
    if (known) {
        if (::faccessat(AT_FDCWD, target.constData(), W_OK, AT_EACCESS) != 0)
            return errno == ENOENT ? changed() : failed(errno);
        if (!takeOver(target, file.number()))
            return errno == ENOENT ? changed() : failed(errno);
    } else if (::fchmod(file.number(), options.newFileMode & permissionBits) != 0) {
        return failed(errno);
    }
    constexpr qint64 second = 1'000'000'000;
    const qint64 modified = options.modified.value_or(0);
    const std::array<timespec, 2> times{
        timespec{.tv_sec = 0, .tv_nsec = UTIME_OMIT},
        timespec{.tv_sec = static_cast<time_t>(modified / second),
                 .tv_nsec = options.modified ? modified % second : UTIME_OMIT}};
    if (::futimens(file.number(), times.data()) != 0 || ::fsync(file.number()) != 0)
        return failed(errno);
    // Who has a file open to write to it is taken for someone who is about to.
    file.close();
    if (!known) {
        if (const int error = moveEncoded(written.path(), target); error != 0)
            return error == EEXIST ? changed() : failed(error);
        written.giveAway();
        return replaced(target);
    }
    if (fileStamp(QFile::decodeName(target)) != known->stamp && !holds(target, known->contents))
        return changed();
    const FileReplacement outcome = exchange(written, target, known->contents, contents);
    return outcome.outcome == Outcome::failed && isUnsupported(outcome.error)
               ? takeOut(written, target, known->contents)
               : outcome;
}

int moveFile(const QString &source, const QString &target)
{
    return moveEncoded(QFile::encodeName(source), QFile::encodeName(target));
}

int syncFolder(const QString &folder)
{
    return syncEncoded(QFile::encodeName(folder));
}

} // namespace randblatt
