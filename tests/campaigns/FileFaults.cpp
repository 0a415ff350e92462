#include "campaigns/FileFaults.h"

#include <QByteArray>
#include <QStringBuilder>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <map>
#include <random>
#include <utility>
#include <vector>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace randblatt {

namespace {

enum class Kind { other, write, takesSpace, sync };

thread_local FileFaults::Private *present = nullptr;

/// The system's function behind one of ours.
template <typename Function>
Function *next(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

int unlinkNow(const char *path)
{
    static const auto call = next<int(const char *)>("unlink");
    return call(path);
}

int renameNow(const char *from, const char *to, unsigned flags)
{
    static const auto call = next<int(int, const char *, int, const char *, unsigned)>("renameat2");
    return call(AT_FDCWD, from, AT_FDCWD, to, flags);
}

} // namespace

struct FileFaults::Private
{
    /// A change of a name, with what undoes it.
    struct NameChange
    {
        QByteArray from;
        QByteArray to;
        bool isExchange;
    };

    int nth;
    Fault fault;
    int count;
    std::mt19937 random;
    int calls = 0;
    bool isOut = false;
    std::vector<NameChange> names = {};
    /// By inode: descriptors of files that were written to and not synced.
    std::map<ino_t, int> unsynced = {};

    /// Whether a call is to fail, with errno set.
    bool fails(Kind kind)
    {
        ++calls;
        const bool isHit = calls >= nth && calls - nth < count;
        errno = fault == Fault::full || fault == Fault::shortWrite ? ENOSPC : EIO;
        switch (fault) {
        case Fault::ioError:
            return isHit;
        case Fault::full:
            return isHit && (kind == Kind::write || kind == Kind::takesSpace);
        case Fault::shortWrite:
            return isHit && kind == Kind::takesSpace;
        case Fault::noSync:
            return isHit && kind == Kind::sync;
        case Fault::power:
            return isOut = isOut || isHit;
        }
        return false;
    }
    [[nodiscard]] bool cutsShort() const
    {
        return fault == Fault::shortWrite && calls >= nth && calls - nth < count;
    }

    void written(int descriptor)
    {
        struct stat status
        {
        };
        if (fault == Fault::power && ::fstat(descriptor, &status) == 0 && !unsynced.contains(status.st_ino))
            unsynced[status.st_ino] = ::dup(descriptor);
    }
    void synced(int descriptor)
    {
        struct stat status
        {
        };
        ::fstat(descriptor, &status);
        if (S_ISDIR(status.st_mode))
            forgetNames();
        else if (const auto file = unsynced.extract(status.st_ino))
            ::close(file.mapped());
    }
    void forgetNames()
    {
        for (const NameChange &change : names) {
            if (isKept(change))
                unlinkNow(change.to.constData());
        }
        names.clear();
    }
    /// A name that was removed is kept as another one.
    static bool isKept(const NameChange &change) { return change.to.contains("/.entfernt-"); }

    void losePower()
    {
        for (auto undone = random() % (names.size() + 1); undone > 0; --undone) {
            const NameChange change = names.back();
            names.pop_back();
            renameNow(change.to.constData(), change.from.constData(),
                      change.isExchange ? RENAME_EXCHANGE : 0);
        }
        constexpr off_t block = 512;
        const QByteArray nothing(block, '\0');
        for (const auto &[inode, descriptor] : unsynced) {
            const off_t size = ::lseek(descriptor, 0, SEEK_END);
            for (off_t at = 0; at < size; at += block) {
                if (random() % 2 == 0)
                    (void)!::pwrite(descriptor, nothing.constData(),
                                    static_cast<size_t>(std::min(block, size - at)), at);
            }
        }
    }
};

FileFaults::FileFaults(int nth, Fault fault, int count, quint32 seed)
    : d(new Private{nth, fault, count, std::mt19937(seed)})
{
    present = d.get();
}

FileFaults::~FileFaults()
{
    present = nullptr;
    if (d->fault == Fault::power)
        d->losePower();
    d->forgetNames();
    for (const auto &[inode, descriptor] : d->unsynced)
        ::close(descriptor);
}

int FileFaults::calls() const
{
    return d->calls;
}

} // namespace randblatt

using namespace randblatt;

namespace {

bool fails(Kind kind)
{
    return present != nullptr && present->fails(kind);
}

int renamed(const char *from, const char *to, unsigned flags)
{
    if (fails(Kind::takesSpace))
        return -1;
    const int result = renameNow(from, to, flags);
    if (result == 0 && present != nullptr)
        present->names.push_back({from, to, (flags & RENAME_EXCHANGE) != 0});
    return result;
}

} // namespace

// The names under which the program and its libraries call the system.
extern "C" {

int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    if (fails((flags & O_CREAT) != 0 ? Kind::takesSpace : Kind::other))
        return -1;
    static const auto call = next<int(const char *, int, ...)>("open");
    return call(path, flags, mode);
}

int mkostemps(char *pattern, int suffixLength, int flags)
{
    return fails(Kind::takesSpace) ? -1
                                   : next<int(char *, int, int)>("mkostemps")(pattern, suffixLength, flags);
}

ssize_t read(int descriptor, void *data, size_t size)
{
    static const auto call = next<ssize_t(int, void *, size_t)>("read");
    return fails(Kind::other) ? -1 : call(descriptor, data, size);
}

ssize_t write(int descriptor, const void *data, size_t size)
{
    if (fails(Kind::write))
        return -1;
    if (present != nullptr)
        present->written(descriptor);
    const bool isShort = present != nullptr && present->cutsShort();
    if (isShort && size < 2) {
        errno = ENOSPC;
        return -1;
    }
    static const auto call = next<ssize_t(int, const void *, size_t)>("write");
    return call(descriptor, data, isShort ? size / 2 : size);
}

int fsync(int descriptor)
{
    if (fails(Kind::sync))
        return -1;
    if (present == nullptr)
        return next<int(int)>("fsync")(descriptor);
    present->synced(descriptor);
    return 0;
}

int rename(const char *from, const char *to) noexcept
{
    return renamed(from, to, 0);
}

int renameat2(int, const char *from, int, const char *to, unsigned flags) noexcept
{
    return renamed(from, to, flags);
}

int link(const char *from, const char *to) noexcept
{
    return fails(Kind::takesSpace) ? -1 : next<int(const char *, const char *)>("link")(from, to);
}

int unlink(const char *path) noexcept
{
    if (fails(Kind::other))
        return -1;
    if (present == nullptr)
        return unlinkNow(path);
    static int number = 0;
    const QByteArray name(path);
    const QByteArray kept = name.first(name.lastIndexOf('/')) + "/.entfernt-" + QByteArray::number(++number);
    const int result = renameNow(path, kept.constData(), 0);
    if (result == 0)
        present->names.push_back({name, kept, false});
    return result;
}

int mkdir(const char *path, mode_t mode) noexcept
{
    return fails(Kind::takesSpace) ? -1 : next<int(const char *, mode_t)>("mkdir")(path, mode);
}

int fchmod(int descriptor, mode_t mode) noexcept
{
    return fails(Kind::other) ? -1 : next<int(int, mode_t)>("fchmod")(descriptor, mode);
}

int futimens(int descriptor, const timespec *times) noexcept
{
    return fails(Kind::other) ? -1 : next<int(int, const timespec *)>("futimens")(descriptor, times);
}

} // extern "C"
