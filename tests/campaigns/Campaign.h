#pragma once

#include "settings/Preferences.h"

#include <QMap>
#include <QTemporaryDir>

#include <memory>

namespace randblatt {

/// What was acknowledged: values by place.
using Acknowledged = QMap<QString, PreferenceValue>;

/// What a campaign counted. A violation is a value that was acknowledged, is not there, and nobody was told
/// or the old bytes are gone.
struct Tally
{
    int runs = 0;
    int untouched = 0;
    int told = 0;
    int lostButTold = 0;
    int violations = 0;

    void violation(const QString &what);
};

/// A store's folder in a place of its own.
class CampaignStore
{
public:
    [[nodiscard]] QString folder() const { return m_folder.filePath(QStringLiteral("quillbar")); }
    [[nodiscard]] QString path() const { return folder() + QStringLiteral("/preferences.sqlite"); }
    /// Its files by name.
    [[nodiscard]] QMap<QString, QByteArray> files() const;
    /// Makes the folder hold these files and no others.
    void setFiles(const QMap<QString, QByteArray> &files) const;

private:
    QTemporaryDir m_folder;
};

/// Values of every type and of many sizes.
[[nodiscard]] Acknowledged sampleValues();
/// Stores them; those that were not acknowledged are left out of what comes back.
[[nodiscard]] Acknowledged write(Preferences &preferences, const Acknowledged &values);
/// Compares what is there with what was acknowledged, and counts. `oldBytes` must be in a file that was put
/// aside where anything is missing.
void check(Preferences &preferences, const Acknowledged &values, const QMap<QString, QByteArray> &oldBytes,
           const QString &what, Tally &tally);

/// With a block of 512 bytes zeroed or flipped.
[[nodiscard]] QByteArray damagedBlock(const QByteArray &bytes, qsizetype block, bool flips);

/// Each damages, fails, kills or loses power in turn: every `step`th place, or `count` times from `seed` on.
Tally runDamage(int step);
Tally runFaults(int step);
Tally runKills(int count, quint32 seed);
Tally runPower(int count, quint32 seed);
/// The same for the calendar file and the notes.
Tally runFileDamage(int step);
Tally runFileFaults(int step, quint32 seed);

} // namespace randblatt
