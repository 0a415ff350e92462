#include "modules/notes/NoteScripts.h"

#include <QStringTokenizer>

namespace randblatt::notescripts {

using namespace Qt::StringLiterals;

namespace {

const QString recordSep = u"<¶>"_s;
const QString fieldSep = u"<§>"_s;

/// Text as it stands between the quotes of an AppleScript literal.
QString literal(QString text)
{
    return text.replace(u'\\', "\\\\"_L1).replace(u'"', "\\\""_L1);
}

QString html(QString text)
{
    return text.replace(u'&', "&amp;"_L1)
        .replace(u'<', "&lt;"_L1)
        .replace(u'>', "&gt;"_L1)
        .replace(u'\n', "<br>"_L1);
}

QString noteHtml(const QString &title, const QString &body)
{
    return "<div><b>"_L1 + html(title) + "</b></div>"_L1 + html(body);
}

} // namespace

QString listFolders()
{
    return "tell application \"Notes\"\n"
           "    tell account 1\n"
           "        set out to \"\"\n"
           "        repeat with f in folders\n"
           "            set out to out & (name of f) & \""_L1 +
           recordSep +
           "\"\n"
           "        end repeat\n"
           "        return out\n"
           "    end tell\n"
           "end tell"_L1;
}

QString listNotes(const std::optional<QString> &folder, int limit)
{
    const QString source = folder ? QString("notes of folder \""_L1 + literal(*folder) + u'"') : u"notes"_s;
    return "tell application \"Notes\"\n"
           "    tell account 1\n"
           "        set out to \"\"\n"
           "        set cnt to 0\n"
           "        repeat with n in "_L1 +
           source +
           "\n"
           "            set out to out & (id of n) & \""_L1 +
           fieldSep + "\" & (name of n) & \""_L1 + recordSep +
           "\"\n"
           "            set cnt to cnt + 1\n"
           "            if cnt "_L1 +
           u"≥ "_s + QString::number(limit) +
           " then exit repeat\n"
           "        end repeat\n"
           "        return out\n"
           "    end tell\n"
           "end tell"_L1;
}

QString readBody(const QString &id)
{
    return "tell application \"Notes\"\n"
           "    return body of note id \""_L1 +
           literal(id) +
           "\"\n"
           "end tell"_L1;
}

QString createNote(const QString &title, const QString &body)
{
    return "tell application \"Notes\"\n"
           "    tell account 1\n"
           "        make new note with properties {name:\""_L1 +
           literal(title) + "\", body:\""_L1 + literal(noteHtml(title, body)) +
           "\"}\n"
           "    end tell\n"
           "end tell"_L1;
}

QString setBody(const QString &id, const QString &title, const QString &body)
{
    return "tell application \"Notes\"\n"
           "    set body of note id \""_L1 +
           literal(id) + "\" to \""_L1 + literal(noteHtml(title, body)) +
           "\"\n"
           "end tell"_L1;
}

QString deleteNote(const QString &id)
{
    return "tell application \"Notes\"\n"
           "    delete note id \""_L1 +
           literal(id) +
           "\"\n"
           "end tell"_L1;
}

QString folderOfNote(const QString &id)
{
    return "tell application \"Notes\"\n"
           "    return name of container of note id \""_L1 +
           literal(id) +
           "\"\n"
           "end tell"_L1;
}

QString moveNote(const QString &id, const std::optional<QString> &folder)
{
    const QString target =
        folder ? QString("folder \""_L1 + literal(*folder) + u'"') : u"default folder of account 1"_s;
    return "tell application \"Notes\"\n"
           "    move note id \""_L1 +
           literal(id) + "\" to "_L1 + target +
           "\n"
           "end tell"_L1;
}

QList<NoteSummary> notes(const QString &result, int limit)
{
    QList<NoteSummary> list;
    // Not all at once: whoever answers scripts can answer with anything.
    for (const QStringView record : QStringTokenizer(result, recordSep, Qt::SkipEmptyParts)) {
        const qsizetype end = record.indexOf(fieldSep);
        if (end < 0)
            continue;
        const QStringView rest = record.sliced(end + fieldSep.size());
        const qsizetype nameEnd = rest.indexOf(fieldSep);
        list.append({record.first(end).toString(), (nameEnd < 0 ? rest : rest.first(nameEnd)).toString()});
        if (list.size() >= limit)
            break;
    }
    return list;
}

QStringList folders(const QString &result)
{
    constexpr qsizetype mostFolders = 2000;
    QStringList list;
    for (const QStringView name : QStringTokenizer(result, recordSep, Qt::SkipEmptyParts)) {
        list.append(name.toString());
        if (list.size() >= mostFolders)
            break;
    }
    return list;
}

} // namespace randblatt::notescripts
