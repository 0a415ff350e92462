#include "modules/media/SpotifyMessages.h"

#include "modules/media/SpotifyApi.h"

#include <QDateTime>
#include <QLocale>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

/// "bis 14:30", on another day with its date.
QString pauseMessage(const QDateTime &until)
{
    const QDateTime now = QDateTime::currentDateTime();
    if (!until.isValid() || now.secsTo(until) < 60)
        return u"Spotify bittet um eine kurze Pause."_s;
    const bool isToday = until.date() == now.date();
    return u"Spotify bittet um eine Pause bis %1."_s.arg(
        QLocale(QLocale::German).toString(until, isToday ? u"HH:mm"_s : u"d. MMMM, HH:mm"_s));
}

} // namespace

QString failureReason(const SpotifyReply &reply, const QDateTime &pausedUntil)
{
    if (reply.isSuccess())
        return u"Die Antwort von Spotify war nicht zu lesen."_s;
    if (reply.status >= 500)
        return u"Spotify hat gerade eine Störung."_s;
    switch (reply.status) {
    case 0:
        return reply.mayHaveArrived ? u"Keine Antwort von Spotify."_s : u"Keine Verbindung zu Spotify."_s;
    case 401:
        return u"Spotify verlangt eine neue Anmeldung."_s;
    case 403:
        return u"Spotify erlaubt das hier nicht."_s;
    case 404:
    case 410:
        return u"Spotify findet das nicht mehr."_s;
    case 429:
        return pauseMessage(pausedUntil);
    default:
        return u"Spotify hat unerwartet geantwortet (%1)."_s.arg(reply.status);
    }
}

QString pollFailure(const SpotifyReply &reply, const QDateTime &pausedUntil)
{
    const QString why = failureReason(reply, pausedUntil);
    const bool speaksForItself =
        reply.status == 0 || reply.status == 401 || reply.status == 429 || reply.status >= 500;
    return speaksForItself ? why : why + u" Was gerade spielt, ist nicht bekannt."_s;
}

QString commandFailure(const SpotifyReply &reply, const QDateTime &pausedUntil, bool deviceReady)
{
    if (reply.isSuccess())
        return {};
    if (reply.status == 403)
        return u"Benötigt Spotify Premium."_s;
    if (reply.status == 404)
        return deviceReady ? u"Wähle eine Playlist zum Starten."_s
                           : u"Kein aktives Gerät. Kurz warten, bis das Gerät bereit ist."_s;
    return failureReason(reply, pausedUntil);
}

QString removalFailure(const SpotifyReply &reply, const QDateTime &pausedUntil)
{
    const QString failed = u"Konnte Titel nicht entfernen."_s;
    // Where the service has looked at it and said no, there is no more to say.
    const bool isAnswered = reply.status != 0 && reply.status != 401 && reply.status != 429;
    return isAnswered ? failed : failureReason(reply, pausedUntil) + u' ' + failed;
}

QString noDeviceMessage()
{
    return u"Kein Gerät gefunden. Öffne die Spotify-App oder warte, bis „Randblatt“ bereit ist."_s;
}

} // namespace randblatt
