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

constexpr int longestRestart = 60;
// A helper that lived this long has not died of its start.
constexpr qint64 soundLifetime = 60'000;
constexpr int quitTimeOut = 500;

const QString helperMissing =
    u"Quillbar kann hier nicht selbst abspielen: Das Zusatzpaket „quillbar-webplayer“ ist nicht installiert. "
    "Alles andere funktioniert: Die Wiedergabe auf anderen Geräten, etwa in der Spotify-App, lässt sich von "
    "hier aus steuern."_s;
const QString moduleMissing =
    u"Quillbar kann hier nicht selbst abspielen: Das Modul für geschützte Audioinhalte (Widevine) fehlt. Es "
    "kommt mit Google Chrome oder mit Firefox, wenn dort einmal geschützte Inhalte abgespielt wurden; starte "
    "Quillbar danach neu. Alles andere funktioniert: Die Wiedergabe auf anderen Geräten, etwa in der "
    "Spotify-App, lässt sich von hier aus steuern."_s;

} // namespace

SpotifyWebPlayer::SpotifyWebPlayer(QString helper, QUrl sdk, TokenProvider tokenProvider, QObject *parent)
    : QObject(parent)
    , m_helper(std::move(helper))
    , m_sdk(std::move(sdk))
    , m_tokenProvider(std::move(tokenProvider))
{
    m_restart.setSingleShot(true);
    connect(&m_restart, &QTimer::timeout, this, &SpotifyWebPlayer::launch);
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
    else if (!m_restart.isActive())
        launch();
}

void SpotifyWebPlayer::stop()
{
    m_restart.stop();
    m_restartSeconds = 0;
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

bool SpotifyWebPlayer::findHelper()
{
    const bool isThere = QFileInfo(m_helper).isExecutable();
    if (isThere && m_problem == helperMissing) {
        setProblem({});
    } else if (!isThere && m_problem != helperMissing) {
        qCInfo(lcWebPlayer, "Kein eigenes Wiedergabegerät: %ls fehlt", qUtf16Printable(m_helper));
        setProblem(helperMissing);
    }
    return isThere;
}

void SpotifyWebPlayer::launch()
{
    if (!findHelper())
        return;
    m_sinceLaunch.start();
    m_reader = {};
    m_process = std::make_unique<QProcess>();
    m_process->setStandardErrorFile(QProcess::nullDevice());
    connect(m_process.get(), &QProcess::readyReadStandardOutput, this, &SpotifyWebPlayer::readLines);
    connect(m_process.get(), &QProcess::finished, this, &SpotifyWebPlayer::helperEnded);
    connect(m_process.get(), &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            helperEnded();
    });
    m_process->start(m_helper, QStringList());
    send({{u"type"_s, u"load"_s}, {u"sdk"_s, m_sdk.toString()}});
}

void SpotifyWebPlayer::helperEnded()
{
    // It may be in the middle of a signal.
    m_process.release()->deleteLater();
    m_restartSeconds =
        m_sinceLaunch.hasExpired(soundLifetime) ? 1 : std::clamp(2 * m_restartSeconds, 1, longestRestart);
    qCWarning(lcWebPlayer, "Das Wiedergabegerät hat sich beendet, Neustart in %d s", m_restartSeconds);
    m_restart.start(std::chrono::seconds(m_restartSeconds));
    setReady(false);
    m_deviceID.reset();
    Q_EMIT deviceIDPublished();
}

void SpotifyWebPlayer::readLines()
{
    m_reader.add(m_process->readAllStandardOutput(), [this](const QJsonObject &line) { receive(line); });
}

void SpotifyWebPlayer::receive(const QJsonObject &line)
{
    const QString type = line.value("type"_L1).toString();
    if (type == "loaded"_L1) {
        fetchToken();
    } else if (type == "message"_L1) {
        receiveMessage(line.value("body"_L1).toObject());
    } else if (type == "protectedAudio"_L1) {
        const bool isMissing = !line.value("available"_L1).toBool();
        if (isMissing && m_problem.isEmpty())
            qCInfo(lcWebPlayer, "Keine Wiedergabe auf diesem Gerät: Widevine fehlt");
        setProblem(isMissing ? moduleMissing : QString());
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

void SpotifyWebPlayer::setProblem(const QString &problem)
{
    if (m_problem == problem)
        return;
    m_problem = problem;
    Q_EMIT problemChanged();
}

} // namespace randblatt
