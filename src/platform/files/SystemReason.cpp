#include "platform/files/SystemReason.h"

#include "platform/files/FileVersion.h"

#include <array>
#include <cerrno>
#include <cstring>

namespace randblatt {

using namespace Qt::StringLiterals;

QString systemReason(int errorNumber)
{
    switch (errorNumber) {
    case EACCES:
    case EPERM:
        return u"Keine Berechtigung"_s;
    case EROFS:
        return u"Schreibgeschützter Datenträger"_s;
    case ENOSPC:
    case EDQUOT:
        return u"Kein freier Speicherplatz"_s;
    case EMFILE:
    case ENFILE:
        return u"Zu viele offene Dateien"_s;
    case ENOMEM:
        return u"Zu wenig Arbeitsspeicher"_s;
    case EIO:
        return u"Fehler des Datenträgers"_s;
    case ENOENT:
        return u"Nicht vorhanden"_s;
    case EEXIST:
        return u"Schon vorhanden"_s;
    case ENOTDIR:
        return u"Kein Ordner"_s;
    case EISDIR:
        return u"Ein Ordner statt einer Datei"_s;
    case notARegularFile:
        return u"Keine gewöhnliche Datei"_s;
    case EFBIG:
        return u"Zu groß"_s;
    case ELOOP:
        return u"Verknüpfungen im Kreis"_s;
    case ENAMETOOLONG:
        return u"Zu langer Name"_s;
    case EBUSY:
    case ETXTBSY:
    case EWOULDBLOCK:
        return u"Von einem anderen Programm benutzt"_s;
    case ESTALE:
    case ENODEV:
    case ENXIO:
    case ENOTCONN:
    case EHOSTDOWN:
    case ETIMEDOUT:
        return u"Datenträger nicht erreichbar"_s;
    default:
        break;
    }
    // Not the function without a buffer, whose text threads share.
    std::array<char, 256> buffer{};
    return u"Systemfehler %1 (%2)"_s.arg(errorNumber)
        .arg(QString::fromLocal8Bit(::strerror_r(errorNumber, buffer.data(), buffer.size())));
}

} // namespace randblatt
