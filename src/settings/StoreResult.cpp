#include "settings/StoreResult.h"

#include <sqlite3.h>

#include <cerrno>

namespace randblatt {

StoreResult storeResult(int code, int systemError)
{
    constexpr int primary = 0xff;
    switch (code) {
    case SQLITE_CORRUPT_VTAB:
    case SQLITE_IOERR_CORRUPTFS:
    case SQLITE_IOERR_DATA:
        return StoreResult::damaged;
    default:
        break;
    }
    switch (code & primary) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
        return StoreResult::ok;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return StoreResult::busy;
    case SQLITE_FULL:
        return StoreResult::full;
    case SQLITE_READONLY:
        return StoreResult::readOnly;
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_PROTOCOL:
        break;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_SCHEMA:
    // A schema that is not the store's.
    case SQLITE_ERROR:
        return StoreResult::damaged;
    case SQLITE_CONSTRAINT:
    case SQLITE_MISMATCH:
    case SQLITE_TOOBIG:
    case SQLITE_NOMEM:
        return StoreResult::refused;
    default:
        break;
    }
    if (systemError == ENOSPC || systemError == EDQUOT || systemError == EFBIG)
        return StoreResult::full;
    if (systemError == EROFS)
        return StoreResult::readOnly;
    return (code & primary) == SQLITE_IOERR ? StoreResult::ioError : StoreResult::unavailable;
}

const char *describe(StoreResult result)
{
    switch (result) {
    case StoreResult::ok:
        break;
    case StoreResult::busy:
        return "Ein anderes Programm hält die Einstellungsdatei fest";
    case StoreResult::full:
        return "Kein Platz auf dem Datenträger";
    case StoreResult::readOnly:
        return "Der Ordner der Einstellungen ist schreibgeschützt";
    case StoreResult::unavailable:
        return "Der Ordner der Einstellungen ist nicht erreichbar";
    case StoreResult::ioError:
        return "Der Datenträger meldet Fehler";
    case StoreResult::damaged:
        return "Die Einstellungsdatei ist beschädigt";
    case StoreResult::refused:
        return "Der Wert lässt sich nicht speichern";
    }
    return "";
}

} // namespace randblatt
