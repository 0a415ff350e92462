#include "settings/Preferences.h"

#include "settings/StoreCopy.h"
#include "settings/StoreLog.h"
#include "settings/StoreOpening.h"
#include "settings/StoreReader.h"
#include "settings/StoreRepair.h"

#include <QLoggingCategory>
#include <QPointer>
#include <QStandardPaths>

#include <algorithm>

namespace randblatt {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

Q_LOGGING_CATEGORY(lcPreferences, "quillbar.preferences")

constexpr auto quietBeforeCheckpoint = 1s;

// How long the main thread may wait for somebody else's lock, until a write succeeds again.
constexpr auto longestWait = 100ms;
// When the program ends: for locks, and for the disk.
constexpr auto lastWait = 300ms;
constexpr auto lastCheckpoint = 600ms;

// A lock is soon gone, often that of our own checkpoint.
constexpr auto firstPauseForLock = 50ms;
constexpr std::chrono::milliseconds firstPause = 1s;
constexpr std::chrono::milliseconds longestPause = 60s;

const StorePlace asidePlace{StoreTable::preferences, u"storeSetAside"_s};

} // namespace

Preferences::Preferences(const QString &path)
    : m_file(path)
{
    m_checkpointTimer.setSingleShot(true);
    m_checkpointTimer.setInterval(quietBeforeCheckpoint);
    QObject::connect(&m_checkpointTimer, &QTimer::timeout, &m_checkpointTimer, [this] { checkpoint(); });
    m_retryTimer.setSingleShot(true);
    QObject::connect(&m_retryTimer, &QTimer::timeout, &m_retryTimer, [this] { retry(); });
    QObject::connect(&m_health, &StoreHealth::retryRequested, &m_retryTimer, [this] {
        m_pause = 0ms;
        retry();
    });
    QObject::connect(&m_health, &StoreHealth::asideDismissed, &m_retryTimer, [this] { nameAside({}); });
    m_file.waitUntil(std::chrono::steady_clock::now() + longestWait);
    const QString replaced = m_file.isOnDisk() ? takeChosenStore(path) : QString();
    open();
    m_isStarted = true;
    if (!replaced.isEmpty()) {
        nameAside({});
        nameAside(replaced);
    }
    if (const auto aside = get<QString>(asidePlace.key))
        m_health.setAsidePath(*aside);
    tell();
}

Preferences::~Preferences()
{
    m_health.blockSignals(true);
    m_file.waitUntil(std::chrono::steady_clock::now() + lastWait);
    if (!m_unwritten.isEmpty()) {
        if (!isOpen())
            open();
        flush();
    }
    if (m_file.isOnDisk() && isOpen()) {
        // The last connection to be closed removes the log.
        const auto exclusive = m_file.isExclusive() ? m_file.connection() : nullptr;
        m_file.close();
        m_worker.run([path = m_file.path(), exclusive] { return emptyLog(path, exclusive); });
    }
    m_worker.wait(lastCheckpoint);
}

QString Preferences::defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           "/quillbar/preferences.sqlite"_L1;
}

QString Preferences::inMemory()
{
    return u":memory:"_s;
}

std::optional<PreferenceValue> Preferences::value(const QString &key) const
{
    return read({StoreTable::preferences, key});
}

bool Preferences::setValue(const QString &key, const PreferenceValue &value)
{
    return store({StoreTable::preferences, key}, value);
}

bool Preferences::remove(const QString &key)
{
    return store({StoreTable::preferences, key}, std::nullopt);
}

QJsonObject Preferences::draft(const QString &key) const
{
    const auto stored = read({StoreTable::drafts, key});
    return stored && std::holds_alternative<QJsonObject>(*stored) ? std::get<QJsonObject>(*stored)
                                                                  : QJsonObject();
}

bool Preferences::setDraft(const QString &key, const QJsonObject &draft)
{
    return store({StoreTable::drafts, key}, draft.isEmpty() ? std::nullopt : Value(draft));
}

Preferences::Value Preferences::read(const StorePlace &place) const
{
    const auto it = m_values.constFind(place);
    return it == m_values.cend() ? std::nullopt : Value(*it);
}

bool Preferences::store(const StorePlace &place, const Value &value)
{
    const Value before = read(place);
    if (value)
        m_values.insert(place, *value);
    else
        m_values.remove(place);
    m_file.waitUntil(std::chrono::steady_clock::now() + (m_hasWaited ? 0ms : longestWait));
    const StoreResult result = write(place);
    if (result != StoreResult::ok) {
        hold(place, before, result);
    } else if (!m_unwritten.isEmpty()) {
        m_unwritten.remove(place);
        flush();
    }
    tell();
    return result == StoreResult::ok;
}

StoreResult Preferences::write(const StorePlace &place)
{
    if (m_file.hasMoved() || (!isOpen() && std::chrono::steady_clock::now() - m_lastOpened >= firstPause))
        open();
    StoreResult result = writeHeld(place);
    if (result == StoreResult::damaged) {
        open();
        result = writeHeld(place);
    }
    if (result == StoreResult::damaged) {
        repair();
        result = writeHeld(place);
    }
    if (result == StoreResult::ok) {
        m_hasWaited = false;
        m_pause = 0ms;
        m_sinceCheckpoint.insert(place);
        m_checkpointTimer.start();
    }
    return result;
}

StoreResult Preferences::writeHeld(const StorePlace &place)
{
    if (!isOpen())
        return m_opened;
    if (m_unread != StoreResult::ok && !m_known.contains(place))
        return m_unread;
    if (m_overwrites) {
        const QString kept = keepAside(m_file.path(), Keeping::overwritten);
        if (kept.isEmpty())
            return StoreResult::full;
        m_overwrites = false;
        nameAside(kept);
    }
    // Where there is one connection alone, the checkpoint keeps it from others for as long as it takes.
    if (m_file.isExclusive() && !m_worker.wait(m_hasWaited ? 0ms : longestWait))
        return StoreResult::busy;
    return m_file.write(place, read(place));
}

void Preferences::open()
{
    m_lastOpened = std::chrono::steady_clock::now();
    m_file.close();
    OpenedStore opened{StoreResult::full, {}};
    // A checkpoint on its way changes the log.
    if (!m_aside.isEmpty() || !m_worker.isIdle() || keepDamagedLog(m_file, m_aside))
        opened = openStore(m_file);
    m_opened = opened.result;
    if (m_opened == StoreResult::damaged)
        m_opened = repair();
    else if (m_opened == StoreResult::ok)
        take(opened.rows, true);
    else
        readWithoutWriting();
    if (m_opened == StoreResult::ok)
        return;
    qCWarning(lcPreferences, "Einstellungen unter %ls nicht beschreibbar: %s", qUtf16Printable(m_file.path()),
              describe(m_opened));
    tryAgain(m_opened);
}

void Preferences::readWithoutWriting()
{
    m_file.close();
    if (m_unread == StoreResult::ok)
        return;
    const OpenedStore opened = readStore(m_file);
    m_unread = opened.result;
    take(opened.rows, m_unread == StoreResult::ok);
}

void Preferences::take(const QList<StoredRow> &rows, bool isWhole)
{
    QSet<StorePlace> present;
    for (const StoredRow &row : rows) {
        present.insert(row.place);
        if (row.value)
            takeRow(row);
    }
    if (!isWhole) {
        m_known.unite(present);
        return;
    }
    m_known.clear();
    m_unread = StoreResult::ok;
    // What is known and not there any more: the file is another, and gets it again.
    for (auto it = m_values.cbegin(); it != m_values.cend(); ++it) {
        if (!present.contains(it.key()) && !m_unwritten.contains(it.key()))
            m_unwritten.insert(it.key(), {std::nullopt, StoreResult::unavailable});
    }
    if (!m_aside.isEmpty())
        nameAside(std::exchange(m_aside, {}));
}

void Preferences::takeRow(const StoredRow &row)
{
    const Value present = read(row.place);
    const auto unwritten = m_unwritten.find(row.place);
    const bool isNews =
        present != row.value && (unwritten == m_unwritten.end() || unwritten->before != row.value);
    if (unwritten == m_unwritten.end()) {
        m_values.insert(row.place, *row.value);
    } else if (isNews) {
        unwritten->before = row.value;
        m_overwrites = true;
    }
    if (!isNews || !m_isStarted)
        return;
    if (row.place.table == StoreTable::preferences)
        Q_EMIT m_health.valueArrived(row.place.key, *row.value);
    else
        Q_EMIT m_health.draftArrived(row.place.key);
}

void Preferences::takeMissing(const QList<StoredRow> &rows)
{
    for (const StoredRow &row : rows) {
        if (row.value && !m_values.contains(row.place) && !m_unwritten.contains(row.place))
            takeRow(row);
    }
}

StoreResult Preferences::repair()
{
    m_file.close();
    m_worker.wait(longestWait);
    const QString path = m_file.path();
    if (m_unread != StoreResult::ok) {
        takeMissing(salvageRows(path));
        QList<StoredRow> copied = latestCopy(path);
        // What the user was told on another day is no news.
        copied.removeIf([](const StoredRow &row) { return row.place == asidePlace; });
        takeMissing(copied);
        m_unread = StoreResult::ok;
    }
    if (m_aside.isEmpty())
        m_aside = keepAside(path, Keeping::damagedFile);
    if (m_aside.isEmpty())
        return m_opened = StoreResult::full;
    // With the first write of the new file, as there may be no other.
    if (!m_values.contains(asidePlace))
        m_values.insert(asidePlace, m_aside);
    m_health.setAsidePath(get<QString>(asidePlace.key).value_or(m_aside));
    QList<StoredRow> rows;
    for (auto it = m_values.cbegin(); it != m_values.cend(); ++it)
        rows.append({it.key(), it.value()});
    m_opened = replaceStore(path, rows);
    if (m_opened != StoreResult::ok)
        return m_opened;
    qCWarning(lcPreferences, "Einstellungen unlesbar, beiseitegelegt als %ls", qUtf16Printable(m_aside));
    m_unwritten.clear();
    m_unsynced.clear();
    m_aside.clear();
    m_opened = m_file.open();
    return m_opened;
}

void Preferences::retry()
{
    m_retryTimer.stop();
    m_file.waitUntil(std::chrono::steady_clock::now());
    m_pause = std::min(std::max(m_pause * 2, firstPauseForLock), longestPause);
    if (!isOpen() || m_unread != StoreResult::ok)
        open();
    flush();
    if (!m_sinceCheckpoint.isEmpty())
        m_checkpointTimer.start();
    tell();
}

void Preferences::flush()
{
    const auto places = m_unwritten.keys();
    for (const StorePlace &place : places) {
        const auto it = m_unwritten.find(place);
        // A value that no file takes waits for another one.
        if (it == m_unwritten.end() || it->reason == StoreResult::refused)
            continue;
        const StoreResult result = write(place);
        if (result == StoreResult::ok)
            m_unwritten.remove(place);
        else
            hold(place, std::nullopt, result);
        if (result != StoreResult::ok && result != StoreResult::refused)
            return;
    }
}

void Preferences::hold(const StorePlace &place, const Value &before, StoreResult reason)
{
    if (const auto it = m_unwritten.find(place); it != m_unwritten.end()) {
        it->reason = reason;
    } else {
        m_unwritten.insert(place, {before, reason});
        qCWarning(lcPreferences, "Einstellung „%ls“ nicht gespeichert: %s", qUtf16Printable(place.key),
                  describe(reason));
    }
    if (reason != StoreResult::refused)
        tryAgain(reason);
}

void Preferences::tryAgain(StoreResult reason)
{
    m_hasWaited = m_hasWaited || reason == StoreResult::busy;
    if (m_pause == 0ms)
        m_pause = reason == StoreResult::busy ? firstPauseForLock : firstPause;
    if (!m_retryTimer.isActive())
        m_retryTimer.start(m_pause);
}

void Preferences::tell()
{
    StoreHealth::Unsaved unsaved;
    for (const StorePlace &place : std::as_const(m_unsynced))
        unsaved.insert(place, StoreResult::ioError);
    for (auto it = m_unwritten.cbegin(); it != m_unwritten.cend(); ++it)
        unsaved.insert(it.key(), it->reason);
    m_health.setUnsaved(unsaved, m_unread);
}

void Preferences::checkpoint()
{
    if (m_file.hasMoved()) {
        open();
        flush();
        tell();
    }
    if (!m_file.isOnDisk() || !isOpen())
        return;
    const auto exclusive = m_file.isExclusive() ? m_file.connection() : nullptr;
    m_worker.run([path = m_file.path(), exclusive] { return emptyLog(path, exclusive); },
                 [this, places = std::exchange(m_sinceCheckpoint, {})](StoreResult result) {
                     checkpointEnded(result, places);
                 });
}

void Preferences::checkpointEnded(StoreResult result, const QSet<StorePlace> &places)
{
    if (result == StoreResult::ok) {
        m_unsynced.clear();
        Q_EMIT m_health.synced();
    } else if (result == StoreResult::damaged) {
        open();
        flush();
    } else {
        m_sinceCheckpoint.unite(places);
        // Somebody who reads keeps the log from being emptied, not from being on the disk.
        if (result != StoreResult::busy)
            m_unsynced.unite(places);
        tryAgain(result);
    }
    tell();
}

bool Preferences::copyTo(const QString &target, const QObject *context,
                         const std::function<void(StoreResult)> &ended)
{
    if (!m_file.isOnDisk() || !isOpen())
        return false;
    const auto exclusive = m_file.isExclusive() ? m_file.connection() : nullptr;
    m_worker.run([path = m_file.path(), exclusive, target] { return copyStore(path, exclusive, target); },
                 [this, guard = QPointer(context), ended](StoreResult result) {
                     // The copy read what nobody else reads again.
                     if (result == StoreResult::damaged)
                         checkpointEnded(result, {});
                     if (guard)
                         ended(result);
                 });
    return true;
}

void Preferences::nameAside(const QString &path)
{
    // One that the user does not know of yet is not forgotten for another, which is beside it.
    if (!path.isEmpty() && m_values.contains(asidePlace))
        return;
    m_health.setAsidePath(path);
    store(asidePlace, path.isEmpty() ? std::nullopt : Value(path));
}

} // namespace randblatt
