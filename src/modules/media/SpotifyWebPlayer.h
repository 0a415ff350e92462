#pragma once

#include "webplayer/Protocol.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QObject>
#include <QProcess>
#include <QTimer>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>
#include <optional>

namespace randblatt {

/// Makes the application a playback device of its own. The service's SDK runs in a page of the helper process
/// quillbar-webplayer, which is started when it is first needed, started again when it dies or hangs, up to
/// five times in a row, and spoken to over its standard streams (see webplayer/Protocol.h). Without the
/// helper nothing ever becomes ready.
class SpotifyWebPlayer : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The media module has the player.")
    Q_PROPERTY(bool isReady READ isReady NOTIFY isReadyChanged FINAL)
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged FINAL)
    Q_PROPERTY(QString reason READ reason NOTIFY problemChanged FINAL)
    Q_PROPERTY(bool canRetry READ canRetry NOTIFY problemChanged FINAL)

public:
    using TokenCompletion = std::function<void(const std::optional<QString> &)>;
    /// Obtains an access token, or none, for as long as the given object lives.
    using TokenProvider = std::function<void(QObject *, TokenCompletion)>;

    /// `helper` is the helper's path, `sdk` the base URL of the SDK's host.
    SpotifyWebPlayer(QString helper, QUrl sdk, TokenProvider tokenProvider, QObject *parent = nullptr);
    ~SpotifyWebPlayer() override;

    /// Where the helper is installed: beside the application or in its folder for helpers.
    [[nodiscard]] static QString defaultHelper();

    /// Loads the page with the SDK; where it is there already, only hands it a token. Where the helper was
    /// given up it is tried again only if it is another by now.
    void start();
    /// Tries the helper that was given up once more.
    Q_INVOKABLE void retry();
    /// Whether to ask now and then if the helper still runs. Somebody has to be there who would miss it:
    /// asking keeps the processor awake.
    void setWatched(bool watched);
    /// Ends the helper, and with it the device.
    void stop();
    /// Hands a token to the page, if there is one.
    void pushToken(const QString &token);

    /// The device's id as the SDK last told it; none before, and while the helper is down.
    [[nodiscard]] std::optional<QString> deviceID() const { return m_deviceID; }
    [[nodiscard]] bool isReady() const { return m_isReady; }
    /// Why music cannot be played on this device, what to do about it and what works nevertheless, in German;
    /// empty where nothing is known to be missing. The engine is asked by the helper, not before that runs.
    [[nodiscard]] QString problem() const;
    /// Of that, only why.
    [[nodiscard]] QString reason() const { return m_reason; }
    /// The helper was given up, and may do better when it is tried again.
    [[nodiscard]] bool canRetry() const { return m_isGivenUp; }

Q_SIGNALS:
    /// The SDK told the device's id, be it the same as before, or the device is gone.
    void deviceIDPublished();
    void isReadyChanged();
    void problemChanged();

private:
    bool findHelper();
    void launch();
    void helperEnded();
    void giveUp(const QString &reason);
    void ping();
    void readErrors();
    void readLines();
    void receive(const QJsonObject &line);
    void receiveMessage(const QJsonObject &body);
    void fetchToken();
    void send(const QJsonObject &line);
    void forgetDevice();
    void setReady(bool ready);
    void setReason(const QString &reason);

    QString m_helper;
    QUrl m_sdk;
    TokenProvider m_tokenProvider;
    std::unique_ptr<QProcess> m_process;
    LineReader m_reader;
    QTimer m_restart;
    /// How often in a row the helper has died soon.
    int m_failures = 0;
    QElapsedTimer m_sinceLaunch;
    /// The last line that the helper wrote to its standard error, or why it could not be started.
    QByteArray m_lastWords;
    bool m_isLoaded = false;
    bool m_isGivenUp = false;
    /// When the helper that was given up was installed.
    QDateTime m_givenUpVersion;
    QTimer m_watch;
    /// Runs while the helper owes an answer.
    QTimer m_patience;
    std::optional<QString> m_deviceID;
    bool m_isReady = false;
    QString m_reason;
};

} // namespace randblatt
