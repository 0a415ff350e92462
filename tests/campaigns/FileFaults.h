#pragma once

#include <QtGlobal>

#include <memory>

namespace randblatt {

/// The faults of real disks for the calls to the system that the present thread makes while an object lives;
/// one at a time.
class FileFaults
{
public:
    enum class Fault {
        /// The call fails, and does nothing.
        ioError,
        /// What takes space finds none; other calls go well.
        full,
        /// Half of a write is done before there is no space left; other calls go well.
        shortWrite,
        /// What is to be synced is not, and says so; other calls go well.
        noSync,
        /// The power goes: nothing is done from this call on. What was written to a file since its last sync
        /// is
        /// torn, in blocks of 512 bytes, and the last changes of names since a folder was synced are undone.
        power,
    };

    /// The `nth` call fails, counted from 1, and `count` - 1 more after it. `seed` draws what a power failure
    /// leaves.
    FileFaults(int nth, Fault fault, int count, quint32 seed);
    ~FileFaults();
    FileFaults(const FileFaults &) = delete;
    FileFaults &operator=(const FileFaults &) = delete;

    /// The calls so far.
    [[nodiscard]] int calls() const;

    struct Private;

private:
    std::unique_ptr<Private> d;
};

} // namespace randblatt
