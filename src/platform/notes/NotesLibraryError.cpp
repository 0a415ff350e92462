#include "platform/notes/NotesLibraryError.h"

#include <cerrno>
#include <cstring>

namespace randblatt {

using namespace Qt::StringLiterals;

QString systemReason(int errorNumber)
{
    switch (errorNumber) {
    case EACCES:
    case EPERM:
        return u"keine Berechtigung"_s;
    case EROFS:
        return u"der Datenträger ist schreibgeschützt"_s;
    case ENOSPC:
    case EDQUOT:
        return u"der Speicherplatz reicht nicht"_s;
    case ENOTDIR:
        return u"an seiner Stelle liegt kein Ordner"_s;
    case EISDIR:
        return u"an ihrer Stelle liegt ein Ordner"_s;
    case ENOENT:
        return u"nicht vorhanden"_s;
    case ENAMETOOLONG:
        return u"der Name ist zu lang"_s;
    default:
        return QString::fromLocal8Bit(std::strerror(errorNumber));
    }
}

} // namespace randblatt
