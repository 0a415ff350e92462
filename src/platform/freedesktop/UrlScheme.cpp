#include "platform/freedesktop/UrlScheme.h"

#include "platform/freedesktop/DesktopEntry.h"

#include <QDir>
#include <QLoggingCategory>
#include <QProcess>
#include <QSaveFile>
#include <QStandardPaths>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcScheme, "quillbar.scheme")

constexpr int cacheMilliseconds = 3000;

QByteArray entry(const QString &scheme, const QString &executable)
{
    return QStringList{
        u"[Desktop Entry]"_s,
        u"Type=Application"_s,
        u"Name=Quillbar"_s,
        u"NoDisplay=true"_s,
        u"Exec="_s + desktopEntryString(desktopEntryArgument(executable)) + u" %u"_s,
        u"TryExec="_s + desktopEntryString(executable),
        u"Icon=com.randblatt.Quillbar"_s,
        u"Terminal=false"_s,
        u"MimeType=x-scheme-handler/"_s + scheme + u';',
        QString(),
    }
        .join(u'\n')
        .toUtf8();
}

} // namespace

void registerUrlScheme(const QString &scheme, const QString &executable)
{
    const auto location = QStandardPaths::ApplicationsLocation;
    if (!QStandardPaths::locate(location, u"com.randblatt.Quillbar.desktop"_s).isEmpty())
        return;
    if (!fitsDesktopEntry(executable)) {
        qCWarning(lcScheme, "%ls hat Zeichen, die in keiner Startdatei stehen können",
                  qUtf16Printable(executable));
        return;
    }
    const QString folder = QStandardPaths::writableLocation(location);
    const QString path = folder + "/com.randblatt.Quillbar.callback.desktop"_L1;
    const QByteArray wanted = entry(scheme, executable);
    if (QFile present(path); present.open(QFile::ReadOnly) && present.readAll() == wanted)
        return;
    QSaveFile file(path);
    if (!QDir().mkpath(folder) || !file.open(QFile::WriteOnly) || file.write(wanted) < 0 || !file.commit()) {
        qCWarning(lcScheme, "%ls lässt sich nicht schreiben: %ls", qUtf16Printable(path),
                  qUtf16Printable(file.errorString()));
        return;
    }
    // Most desktops look into a cache.
    QProcess update;
    update.start(u"update-desktop-database"_s, {folder});
    if (!update.waitForFinished(cacheMilliseconds))
        qCWarning(lcScheme, "update-desktop-database: %ls", qUtf16Printable(update.errorString()));
}

} // namespace randblatt
