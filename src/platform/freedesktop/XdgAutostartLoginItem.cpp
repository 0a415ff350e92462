#include "platform/freedesktop/XdgAutostartLoginItem.h"

#include "platform/freedesktop/DesktopEntry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

/// The value of a key in the group of the desktop entry itself.
QString value(const QString &entry, QLatin1StringView key)
{
    const auto lines = QStringView(entry).split(u'\n');
    bool inGroup = false;
    for (const QStringView line : lines) {
        if (line.startsWith(u'['))
            inGroup = line.trimmed() == "[Desktop Entry]"_L1;
        const auto equals = line.indexOf(u'=');
        if (inGroup && equals > 0 && line.first(equals).trimmed() == key)
            return line.sliced(equals + 1).trimmed().toString();
    }
    return {};
}

/// The stored entry; none where there is none, or one that is switched off.
std::optional<QString> activeEntry()
{
    QFile file(XdgAutostartLoginItem::entryPath());
    if (!file.open(QFile::ReadOnly))
        return std::nullopt;
    const QString stored = QString::fromUtf8(file.readAll());
    // A desktop's own settings switch an entry off by hiding it.
    if (value(stored, "Hidden"_L1) == "true"_L1 ||
        value(stored, "X-GNOME-Autostart-enabled"_L1) == "false"_L1)
        return std::nullopt;
    return stored;
}

} // namespace

XdgAutostartLoginItem::XdgAutostartLoginItem(QString executable)
    : m_executable(std::move(executable))
{
}

QString XdgAutostartLoginItem::entryPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           "/autostart/com.randblatt.Quillbar.desktop"_L1;
}

bool XdgAutostartLoginItem::isRegistered() const
{
    const auto stored = activeEntry();
    return stored && value(*stored, "Exec"_L1) == value(QString::fromUtf8(entry()), "Exec"_L1);
}

bool XdgAutostartLoginItem::hasEntry() const
{
    return activeEntry().has_value();
}

std::optional<QString> XdgAutostartLoginItem::registerItem()
{
    if (!fitsDesktopEntry(m_executable))
        return u"Der Pfad des Programms hat Zeichen, die in keiner Startdatei stehen können: %1"_s.arg(
            m_executable);
    const QString path = entryPath();
    const QString folder = QFileInfo(path).path();
    if (!QDir().mkpath(folder))
        return u"Der Ordner %1 lässt sich nicht anlegen."_s.arg(folder);
    QSaveFile file(path);
    if (!file.open(QFile::WriteOnly) || file.write(entry()) < 0 || !file.commit())
        return u"%1 lässt sich nicht schreiben: %2"_s.arg(path, file.errorString());
    return std::nullopt;
}

std::optional<QString> XdgAutostartLoginItem::unregisterItem()
{
    QFile file(entryPath());
    if (file.exists() && !file.remove())
        return u"%1 lässt sich nicht entfernen: %2"_s.arg(file.fileName(), file.errorString());
    return std::nullopt;
}

QByteArray XdgAutostartLoginItem::entry() const
{
    return QStringList{
        u"[Desktop Entry]"_s,
        u"Type=Application"_s,
        u"Name=Quillbar"_s,
        u"Comment=Seitenleiste am Bildschirmrand"_s,
        u"Exec="_s + desktopEntryString(desktopEntryArgument(m_executable)),
        u"TryExec="_s + desktopEntryString(m_executable),
        u"Icon=com.randblatt.Quillbar"_s,
        u"Terminal=false"_s,
        QString(),
    }
        .join(u'\n')
        .toUtf8();
}

} // namespace randblatt
