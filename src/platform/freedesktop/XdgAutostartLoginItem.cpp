#include "platform/freedesktop/XdgAutostartLoginItem.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>
#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

/// Escapes a value of type string (Desktop Entry Specification, "Possible value types").
QString stringValue(QString text)
{
    text.replace(u'\\', u"\\\\"_s);
    text.replace(u'\n', u"\\n"_s);
    text.replace(u'\t', u"\\t"_s);
    text.replace(u'\r', u"\\r"_s);
    if (text.startsWith(u' '))
        text.replace(0, 1, u"\\s"_s);
    return text;
}

/// One argument of an Exec line (Desktop Entry Specification, "The Exec key"), not yet escaped as a string.
QString execArgument(QString argument)
{
    argument.replace(u'%', u"%%"_s);
    const auto isPlain = [](QChar character) {
        return character.isLetterOrNumber() || u"/._-+,:=@%"_s.contains(character);
    };
    if (!argument.isEmpty() && std::all_of(argument.cbegin(), argument.cend(), isPlain))
        return argument;
    QString quoted = u"\""_s;
    for (const QChar character : std::as_const(argument)) {
        if (u"\"`$\\"_s.contains(character))
            quoted += u'\\';
        quoted += character;
    }
    return quoted + u'"';
}

/// The keys of the group [Desktop Entry], with their values as they are written.
QHash<QString, QString> readEntry(const QString &path)
{
    QFile file(path);
    QHash<QString, QString> values;
    if (!file.open(QFile::ReadOnly))
        return values;
    bool isInEntry = false;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    for (const QString &line : lines) {
        if (line.startsWith(u'[')) {
            isInEntry = line.trimmed() == "[Desktop Entry]"_L1;
            continue;
        }
        const auto sign = line.indexOf(u'=');
        if (isInEntry && sign > 0 && !line.startsWith(u'#'))
            values.insert(line.first(sign).trimmed(), line.sliced(sign + 1).trimmed());
    }
    return values;
}

} // namespace

XdgAutostartLoginItem::XdgAutostartLoginItem(const QString &folder, const QString &executable)
    : m_path(folder + "/com.randblatt.Quillbar.desktop"_L1)
    , m_executable(executable)
{
}

QString XdgAutostartLoginItem::defaultFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/autostart"_L1;
}

bool XdgAutostartLoginItem::isRegistered() const
{
    const QHash<QString, QString> entry = readEntry(m_path);
    // The last is how GNOME's tools switch an entry off.
    return entry.value(u"Exec"_s) == execValue() && entry.value(u"Hidden"_s) != "true"_L1 &&
           entry.value(u"X-GNOME-Autostart-enabled"_s) != "false"_L1;
}

std::optional<QString> XdgAutostartLoginItem::registerItem()
{
    const QString folder = QFileInfo(m_path).absolutePath();
    if (!QDir().mkpath(folder))
        return u"Ordner %1 lässt sich nicht anlegen"_s.arg(folder);
    const QString text = "[Desktop Entry]\n"_L1
                         "Type=Application\n"_L1
                         "Version=1.5\n"_L1
                         "Name=Quillbar\n"_L1
                         "Comment[de]=Seitenleiste am Bildschirmrand\n"_L1
                         "Icon=com.randblatt.Quillbar\n"_L1
                         "Exec="_L1 +
                         execValue() + "\nTryExec="_L1 + stringValue(m_executable) + "\nTerminal=false\n"_L1;
    QSaveFile file(m_path);
    if (!file.open(QFile::WriteOnly) || file.write(text.toUtf8()) < 0 || !file.commit())
        return u"%1 lässt sich nicht schreiben: %2"_s.arg(m_path, file.errorString());
    return std::nullopt;
}

std::optional<QString> XdgAutostartLoginItem::unregisterItem()
{
    QFile file(m_path);
    if (file.exists() && !file.remove())
        return u"%1 lässt sich nicht löschen: %2"_s.arg(m_path, file.errorString());
    return std::nullopt;
}

QString XdgAutostartLoginItem::execValue() const
{
    return stringValue(execArgument(m_executable));
}

} // namespace randblatt
