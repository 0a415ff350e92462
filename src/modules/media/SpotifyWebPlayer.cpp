#include "modules/media/SpotifyWebPlayer.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonObject>
#include <QLoggingCategory>

#include <algorithm>
#include <chrono>

namespace randblatt {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

Q_LOGGING_CATEGORY(lcWebPlayer, "quillbar.webplayer")

// After so many starts in a row there is no use in another.
constexpr int mostFailures = 5;
// A helper that lived this long has not died of its start.
constexpr qint64 soundLifetime = 60'000;
constexpr int quitTimeOut = 500;
constexpr auto watchInterval = 15s;
// A busy machine is slow to answer, and slower to load the engine.
constexpr auto answerTimeOut = 10s;
constexpr auto loadTimeOut = 60s;
constexpr qsizetype longestWords = 200;

const QString helperMissing = u"Das Zusatzpaket „quillbar-webplayer“ ist nicht installiert."_s;
const QString moduleMissing =
    u"Das Modul für geschützte Audioinhalte (Widevine) fehlt. Es kommt mit Google Chrome oder mit Firefox, "
    "wenn dort einmal geschützte Inhalte abgespielt wurden; starte Quillbar danach neu."_s;
const QString sandboxForRoot = u"Der Browserteil lässt sich für den Benutzer „root“ nicht abschirmen."_s;
const QString sandboxMissing =
    u"Der Browserteil lässt sich nicht abschirmen, weil dieses System keine User-Namespaces erlaubt."_s;

QString keepsEnding(const QByteArray &lastWords)
{
    const QString why = QString::fromUtf8(lastWords.left(longestWords)).simplified();
    return u"Der Browserteil ist fünfmal nicht gestartet"_s +
           (why.isEmpty() ? u"."_s : u" („%1“)."_s.arg(why));
}

} // namespace

SpotifyWebPlayer::SpotifyWebPlayer(QString helper, QUrl sdk, TokenProvider tokenProvider, QObject *parent)
    : QObject(parent)
    , m_helper(std::move(helper))
    , m_sdk(std::move(sdk))
    , m_tokenProvider(std::move(tokenProvider))
{
    m_restart.setSingleShot(true);
    connect(&m_restart, &QTimer::timeout, this, &SpotifyWebPlayer::launch);
    m_watch.setInterval(watchInterval);
    connect(&m_watch, &QTimer::timeout, this, &SpotifyWebPlayer::ping);
    m_patience.setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this, [this] {
        qCWarning(lcWebPlayer, "Das Wiedergabegerät antwortet nicht");
        if (m_process)
            m_process->kill();
    });
    findHelper();
}

SpotifyWebPlayer::~SpotifyWebPlayer()
{
    if (!m_process)
        return;
    m_process->disconnect(this);
    // The end of its input ends the helper.
    m_process->closeWriteChannel();
    if (!m_process->waitForFinished(quitTimeOut))
        m_process->kill();
}

QString SpotifyWebPlayer::defaultHelper()
{
    const QString folder = QCoreApplication::applicationDirPath();
    const QString installed = folder + "/" QUILLBAR_HELPER_FOLDER "/quillbar-webplayer"_L1;
    return QFileInfo::exists(installed) ? installed : folder + "/quillbar-webplayer"_L1;
}

void SpotifyWebPlayer::start()
{
    if (m_process)
        fetchToken();
    else if (m_isGivenUp && QFileInfo(m_helper).lastModified() != m_givenUpVersion)
        retry();
    else if (!m_isGivenUp && !m_restart.isActive())
        launch();
}

void SpotifyWebPlayer::retry()
{
    if (m_process)
        return;
    m_restart.stop();
    m_failures = 0;
    m_isGivenUp = false;
    setReason({});
    launch();
}

void SpotifyWebPlayer::setWatched(bool watched)
{
    if (m_watch.isActive() == watched)
        return;
    if (watched) {
        m_watch.start();
        ping();
    } else {
        m_watch.stop();
        m_patience.stop();
    }
}

void SpotifyWebPlayer::ping()
{
    // One that is still loading, or owes an answer, has its time.
    if (!m_process || m_patience.isActive())
        return;
    send({{u"type"_s, u"ping"_s}});
    m_patience.start(m_isLoaded ? answerTimeOut : loadTimeOut);
}

void SpotifyWebPlayer::stop()
{
    m_restart.stop();
    m_patience.stop();
    m_failures = 0;
    m_isGivenUp = false;
    setReason({});
    findHelper();
    if (QProcess *process = m_process.release()) {
        process->disconnect(this);
        process->setParent(this);
        connect(process, &QProcess::finished, process, &QObject::deleteLater);
        process->closeWriteChannel();
        QTimer::singleShot(quitTimeOut, process, &QProcess::kill);
    }
    forgetDevice();
}

void SpotifyWebPlayer::forgetDevice()
{
    setReady(false);
    if (!m_deviceID)
        return;
    m_deviceID.reset();
    Q_EMIT deviceIDPublished();
}

QString SpotifyWebPlayer::problem() const
{
    return m_reason.isEmpty()
               ? QString()
               : u"Quillbar kann hier nicht selbst abspielen: %1 Alles andere funktioniert: Die Wiedergabe "
                 u"auf "
                 "anderen Geräten, etwa in der Spotify-App, lässt sich von hier aus steuern."_s.arg(m_reason);
}

bool SpotifyWebPlayer::findHelper()
{
    const bool isThere = QFileInfo(m_helper).isExecutable();
    if (isThere && m_reason == helperMissing) {
        setReason({});
    } else if (!isThere && m_reason != helperMissing) {
        qCInfo(lcWebPlayer, "Kein eigenes Wiedergabegerät: %ls fehlt", qUtf16Printable(m_helper));
        setReason(helperMissing);
    }
    return isThere;
}

void SpotifyWebPlayer::launch()
{
    if (!findHelper())
        return;
    m_sinceLaunch.start();
    m_reader = {};
    m_lastWords.clear();
    m_isLoaded = false;
    m_process = std::make_unique<QProcess>();
    connect(m_process.get(), &QProcess::readyReadStandardOutput, this, &SpotifyWebPlayer::readLines);
    connect(m_process.get(), &QProcess::readyReadStandardError, this, &SpotifyWebPlayer::readErrors);
    connect(m_process.get(), &QProcess::finished, this, &SpotifyWebPlayer::helperEnded);
    connect(m_process.get(), &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart)
            return;
        m_lastWords = m_process->errorString().toUtf8();
        helperEnded();
    });
    m_patience.start(loadTimeOut);
    m_process->start(m_helper, QStringList());
    send({{u"type"_s, u"load"_s}, {u"sdk"_s, m_sdk.toString()}});
}

void SpotifyWebPlayer::readErrors()
{
    // What the engine says goes on and on; only its last line may be of use.
    const QList<QByteArray> lines = m_process->readAllStandardError().split('\n');
    for (const QByteArray &line : lines) {
        if (const QByteArray words = line.trimmed(); !words.isEmpty())
            m_lastWords = words;
    }
}

void SpotifyWebPlayer::helperEnded()
{
    m_patience.stop();
    // It may be in the middle of a signal.
    m_process.release()->deleteLater();
    m_failures = m_sinceLaunch.hasExpired(soundLifetime) ? 1 : m_failures + 1;
    forgetDevice();
    if (m_isGivenUp)
        return;
    if (m_failures >= mostFailures) {
        giveUp(keepsEnding(m_lastWords));
        return;
    }
    const int pause = 1 << (m_failures - 1);
    qCWarning(lcWebPlayer, "Das Wiedergabegerät hat sich beendet, Neustart in %d s", pause);
    m_restart.start(std::chrono::seconds(pause));
}

void SpotifyWebPlayer::giveUp(const QString &reason)
{
    m_isGivenUp = true;
    m_givenUpVersion = QFileInfo(m_helper).lastModified();
    qCWarning(lcWebPlayer, "Kein eigenes Wiedergabegerät: %ls", qUtf16Printable(reason));
    m_reason = reason;
    Q_EMIT problemChanged();
}

void SpotifyWebPlayer::readLines()
{
    m_reader.add(m_process->readAllStandardOutput(), [this](const QJsonObject &line) { receive(line); });
}

void SpotifyWebPlayer::receive(const QJsonObject &line)
{
    const QString type = line.value("type"_L1).toString();
    if (type == "loaded"_L1) {
        m_isLoaded = true;
        m_patience.stop();
        fetchToken();
    } else if (type == "pong"_L1) {
        m_patience.stop();
    } else if (type == "noSandbox"_L1) {
        giveUp(line.value("isRoot"_L1).toBool() ? sandboxForRoot : sandboxMissing);
    } else if (type == "message"_L1) {
        receiveMessage(line.value("body"_L1).toObject());
    } else if (type == "protectedAudio"_L1) {
        const bool isMissing = !line.value("available"_L1).toBool();
        if (isMissing && m_reason.isEmpty())
            qCInfo(lcWebPlayer, "Keine Wiedergabe auf diesem Gerät: Widevine fehlt");
        setReason(isMissing ? moduleMissing : QString());
    }
}

void SpotifyWebPlayer::receiveMessage(const QJsonObject &body)
{
    const QString type = body.value("type"_L1).toString();
    if (type == "ready"_L1) {
        const QJsonValue id = body.value("device_id"_L1);
        m_deviceID = id.isString() ? std::optional(id.toString()) : std::nullopt;
        setReady(true);
        Q_EMIT deviceIDPublished();
        fetchToken();
    } else if (type == "not_ready"_L1) {
        setReady(false);
    }
}

void SpotifyWebPlayer::fetchToken()
{
    if (m_tokenProvider)
        m_tokenProvider(this, [this](const std::optional<QString> &token) {
            if (token)
                pushToken(*token);
        });
}

void SpotifyWebPlayer::pushToken(const QString &token)
{
    send({{u"type"_s, u"token"_s}, {u"token"_s, token}});
}

void SpotifyWebPlayer::send(const QJsonObject &line)
{
    if (m_process)
        m_process->write(protocolLine(line));
}

void SpotifyWebPlayer::setReady(bool ready)
{
    if (m_isReady == ready)
        return;
    m_isReady = ready;
    Q_EMIT isReadyChanged();
}

void SpotifyWebPlayer::setReason(const QString &reason)
{
    if (m_reason == reason)
        return;
    m_reason = reason;
    Q_EMIT problemChanged();
}

} // namespace randblatt
