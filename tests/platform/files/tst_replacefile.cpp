#include "platform/files/ReplaceFile.h"
#include "support/OtherProgram.h"
#include "support/ResourceLimit.h"
#include "support/TestEnvironment.h"
#include "support/Unprivileged.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <memory>

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

constexpr qint64 limit = 1024 * 1024;

/// From now on this process is as on a file system, or a kernel, whose renames have no flags.
bool refuseFlaggedRenames()
{
    std::array filter{
        sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_renameat2, 0, 1),
        sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EINVAL),
        sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    sock_fprog program{.len = static_cast<unsigned short>(filter.size()), .filter = filter.data()};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

/// A program that adds lines to the file as it stands there, and notes them.
bool appendLines(const QDir &folder, const QString &path)
{
    for (int number = 0; !folder.exists(u"stop"_s); ++number) {
        const QByteArray line = "other " + QByteArray::number(number) + '\n';
        int file = -1;
        while (file < 0)
            file = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_APPEND | O_CLOEXEC);
        const bool isWritten =
            ::write(file, line.constData(), static_cast<size_t>(line.size())) == line.size() &&
            ::fsync(file) == 0;
        ::close(file);
        if (!isWritten || !append(folder.filePath(u"log.put.other"_s), line))
            return false;
    }
    return true;
}

/// This application, until it has replaced the file often enough; notes its versions and what it replaced.
bool replaceFiles(const QDir &folder, const QString &path, bool adds)
{
    constexpr int replacements = 50;
    int refusals = 0;
    for (int number = 0; number < replacements;) {
        const FileReading present = readFile(path, limit);
        if (!present.version)
            continue; // in the instant without a file
        const QByteArray version =
            (adds ? present.version->contents : QByteArray()) + "own " + QByteArray::number(number);
        const FileReplacement result = replaceFile(path, present.version, version + (adds ? "\n" : ""));
        if (result.outcome == FileReplacement::Outcome::failed)
            return false;
        if (result.outcome == FileReplacement::Outcome::changed) {
            ++refusals;
            continue;
        }
        ++number;
        if (!append(folder.filePath(u"log.put.own"_s), version.split('\n').last() + '\n') ||
            (!adds && !append(folder.filePath(u"log.out.own"_s), present.version->contents + '\n')))
            return false;
    }
    return append(folder.filePath(u"log.refusals"_s), QByteArray::number(refusals));
}

} // namespace

class ReplaceFileTest : public QObject
{
    Q_OBJECT

private:
    [[nodiscard]] QString path(const QString &name) const { return m_folder->filePath(name); }

    void put(const QString &name, const QByteArray &contents) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(contents), contents.size());
    }

    [[nodiscard]] QStringList names() const
    {
        return QDir(m_folder->path())
            .entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    std::unique_ptr<QTemporaryDir> m_folder;

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void losesNoVersionOfAnotherProgram_data()
    {
        QTest::addColumn<bool>("adds");
        QTest::addColumn<bool>("exchanges");
        QTest::newRow("which replaces the file") << false << true;
        QTest::newRow("which replaces the file, on a simpler file system") << false << false;
        QTest::newRow("which writes into the file") << true << true;
        QTest::newRow("which writes into the file, on a simpler file system") << true << false;
    }

    void losesNoVersionOfAnotherProgram()
    {
        QFETCH(const bool, adds);
        QFETCH(const bool, exchanges);
        const QString file = path(u"file.txt"_s);
        const QDir folder(m_folder->path());
        put(u"file.txt"_s, adds ? "first\n" : "first");
        put(u"log.put.first"_s, "first\n");

        const pid_t other =
            inProcess([&] { return adds ? appendLines(folder, file) : exchangeFiles(folder, file); });
        const pid_t own = inProcess(
            [&] { return (exchanges || refuseFlaggedRenames()) && replaceFiles(folder, file, adds); });
        const bool isOwnWell = hasEndedWell(own);
        put(u"stop"_s, {});
        QVERIFY(hasEndedWell(other));
        QVERIFY(isOwnWell);

        QSet<QByteArray> written;
        QSet<QByteArray> found;
        for (const QString &name : names())
            (name.startsWith("log.put"_L1) ? written : found) += lines(bytes(path(name)));
        const QSet<QByteArray> lost = written - found;
        if (!lost.isEmpty())
            qWarning() << lost.size() << "of" << written.size() << "are lost, as" << *lost.cbegin();
        QVERIFY(lost.isEmpty());
        QVERIFY(written.size() > 50);
        // Else there was no race to be lost.
        QVERIFY(bytes(path(u"log.refusals"_s)).toInt() > 0);
    }

    void replacesOnlyWhatIsKnown_data()
    {
        QTest::addColumn<std::function<void(QString)>>("meddle");
        QTest::addColumn<bool>("isReplaced");
        using Meddle = std::function<void(QString)>;
        QTest::newRow("nothing happened") << Meddle([](const QString &) {}) << true;
        QTest::newRow("written with other text of the same length and time")
            << Meddle([](const QString &file) {
                   struct stat before = {};
                   ::stat(qPrintable(file), &before);
                   QFile(file).remove();
                   QVERIFY(append(file, "tOld"));
                   const std::array times{before.st_atim, before.st_mtim};
                   ::utimensat(AT_FDCWD, qPrintable(file), times.data(), 0);
               })
            << false;
        QTest::newRow("only touched")
            << Meddle([](const QString &file) { ::utimensat(AT_FDCWD, qPrintable(file), nullptr, 0); })
            << true;
        QTest::newRow("removed") << Meddle([](const QString &file) { QFile::remove(file); }) << false;
        QTest::newRow("a folder now") << Meddle([](const QString &file) {
            QFile::remove(file);
            QDir().mkdir(file);
        }) << false;
    }

    void replacesOnlyWhatIsKnown()
    {
        QFETCH(const std::function<void(QString)>, meddle);
        QFETCH(const bool, isReplaced);
        put(u"file"_s, "told");
        const auto known = readFile(path(u"file"_s), limit).version;
        QVERIFY(known);
        meddle(path(u"file"_s));
        const QByteArray present = bytes(path(u"file"_s));
        const auto outcome = replaceFile(path(u"file"_s), known, "new").outcome;
        QCOMPARE(outcome == FileReplacement::Outcome::replaced, isReplaced);
        QCOMPARE(bytes(path(u"file"_s)), isReplaced ? "new" : present);
        QVERIFY(names().size() <= 1);
    }

    void waitsForAProgramThatIsWriting()
    {
        put(u"file"_s, "old");
        const auto known = readFile(path(u"file"_s), limit).version;
        QFile writer(path(u"file"_s));
        QVERIFY(writer.open(QIODevice::ReadWrite));
        QCOMPARE(replaceFile(path(u"file"_s), known, "new").outcome, FileReplacement::Outcome::changed);
        writer.write("OLD");
        writer.close();
        QCOMPARE(bytes(path(u"file"_s)), "OLD");
        QCOMPARE(replaceFile(path(u"file"_s), readFile(path(u"file"_s), limit).version, "new").outcome,
                 FileReplacement::Outcome::replaced);
    }

    void makesAFileOnlyWhereNoneIs()
    {
        QCOMPARE(replaceFile(path(u"file"_s), {}, "new").outcome, FileReplacement::Outcome::replaced);
        QCOMPARE(bytes(path(u"file"_s)), "new");
        struct stat status = {};
        QCOMPARE(::stat(qPrintable(path(u"file"_s)), &status), 0);
        QCOMPARE(status.st_mode & 0777u, 0600u);
        QCOMPARE(replaceFile(path(u"file"_s), {}, "other").outcome, FileReplacement::Outcome::changed);
        QCOMPARE(bytes(path(u"file"_s)), "new");
        QCOMPARE(names(), QStringList{u"file"_s});
    }

    void followsLinks_data()
    {
        QTest::addColumn<bool>("exists");
        QTest::newRow("to a file") << true;
        QTest::newRow("to where no file is yet") << false;
    }

    void followsLinks()
    {
        QFETCH(const bool, exists);
        QDir(m_folder->path()).mkdir(u"far"_s);
        if (exists)
            put(u"far/file"_s, "old");
        QVERIFY(QFile::link(u"../far/file"_s, path(u"far/second"_s)));
        QVERIFY(QFile::link(u"far/second"_s, path(u"first"_s)));
        const auto known = readFile(path(u"first"_s), limit).version;
        QCOMPARE(known.has_value(), exists);
        QCOMPARE(replaceFile(path(u"first"_s), known, "new").outcome, FileReplacement::Outcome::replaced);
        QVERIFY(QFileInfo(path(u"first"_s)).isSymLink());
        QVERIFY(QFileInfo(path(u"far/second"_s)).isSymLink());
        QCOMPARE(bytes(path(u"far/file"_s)), "new");
        QVERIFY(QFile::link(u"circle"_s, path(u"circle"_s)));
        QCOMPARE(replaceFile(path(u"circle"_s), {}, "new").error, ELOOP);
    }

    void keepsWhatBelongsToTheFile()
    {
        put(u"file"_s, "old");
        const QByteArray file = QFile::encodeName(path(u"file"_s));
        QCOMPARE(::chmod(file.constData(), 0640), 0);
        const bool hasAttributes = ::setxattr(file.constData(), "user.tag", "red", 3, 0) == 0;
        const auto known = readFile(path(u"file"_s), limit).version;
        QCOMPARE(replaceFile(path(u"file"_s), known, "new", {.modified = 1'700'000'000'000'000'001}).outcome,
                 FileReplacement::Outcome::replaced);
        struct stat status = {};
        QCOMPARE(::stat(file.constData(), &status), 0);
        QCOMPARE(status.st_mode & 07777u, 0640u);
        QCOMPARE(status.st_mtim.tv_sec, 1'700'000'000);
        QCOMPARE(status.st_mtim.tv_nsec, 1);
        std::array<char, 8> value{};
        QCOMPARE(::getxattr(file.constData(), "user.tag", value.data(), value.size()),
                 hasAttributes ? 3 : -1);
    }

    void leavesAllAsItWasWhenItFails_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("error");
        QTest::newRow("no space") << u"space"_s << EFBIG;
        QTest::newRow("no more open files") << u"files"_s << EMFILE;
        QTest::newRow("a file that may not be written to") << u"mode"_s << EACCES;
        QTest::newRow("a folder that may not be written to") << u"folder"_s << EACCES;
        QTest::newRow("no folder") << u"missing/file"_s << ENOENT;
    }

    void leavesAllAsItWasWhenItFails()
    {
        QFETCH(const QString, name);
        QFETCH(const int, error);
        put(u"file"_s, "old");
        const QString file = name.contains(u'/') ? path(name) : path(u"file"_s);
        auto known = readFile(file, limit).version;
        QCOMPARE(::chmod(qPrintable(path(u"file"_s)), name == "mode"_L1 ? 0444 : 0666), 0);
        std::unique_ptr<ResourceLimit> cap;
        FileReplacement result;
        {
            const Unprivileged user(m_folder->path());
            QCOMPARE(::chmod(qPrintable(m_folder->path()), name == "folder"_L1 ? 0500 : 0700), 0);
            if (name == "space"_L1)
                cap = std::make_unique<ResourceLimit>(RLIMIT_FSIZE, 1);
            if (name == "files"_L1)
                cap = std::make_unique<ResourceLimit>(RLIMIT_NOFILE, 0);
            result = replaceFile(file, known, "new");
            cap.reset();
        }
        QCOMPARE(result.outcome, FileReplacement::Outcome::failed);
        QCOMPARE(result.error, error);
        QCOMPARE(bytes(path(u"file"_s)), "old");
        QCOMPARE(names(), QStringList{u"file"_s});
    }

    void readsRegularFilesAlone()
    {
        put(u"file"_s, "12345");
        QCOMPARE(readFile(path(u"file"_s), 5).version->contents, "12345");
        QCOMPARE(readFile(path(u"file"_s), 4).error, EFBIG);
        QCOMPARE(readFile(path(u"none"_s), 4).error, ENOENT);
        QCOMPARE(readFile(m_folder->path(), limit).error, EISDIR);
        QCOMPARE(::mkfifo(qPrintable(path(u"pipe"_s)), 0600), 0);
        QCOMPARE(readFile(path(u"pipe"_s), limit).error, notARegularFile);
        QCOMPARE(readFile(u"/dev/null"_s, limit).error, notARegularFile);
        // Its size says nothing of what it holds.
        QVERIFY(!readFile(u"/proc/self/status"_s, limit).version->contents.isEmpty());
        QCOMPARE(readFile(u"/proc/self/status"_s, 10).error, EFBIG);
    }

    void movesOntoNothing()
    {
        put(u"a"_s, "a");
        put(u"b"_s, "b");
        QCOMPARE(moveFile(path(u"a"_s), path(u"b"_s)), EEXIST);
        QCOMPARE(moveFile(path(u"a"_s), path(u"c"_s)), 0);
        const pid_t simple = inProcess([&] {
            return refuseFlaggedRenames() && moveFile(path(u"c"_s), path(u"b"_s)) == EEXIST &&
                   moveFile(path(u"c"_s), path(u"d"_s)) == 0;
        });
        QVERIFY(hasEndedWell(simple));
        QCOMPARE(names(), (QStringList{u"b"_s, u"d"_s}));
    }
};

RANDBLATT_TEST_MAIN(ReplaceFileTest, QCoreApplication)
#include "tst_replacefile.moc"
