#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QTimer>
#include <QWebChannel>
#include <QWebEnginePage>
#include <QWebEngineProfile>

#include <memory>

namespace randblatt {

/// The page's message handler "spotify".
class MessageHandler : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    Q_INVOKABLE void postMessage(const QJsonValue &body) { Q_EMIT posted(body); }

Q_SIGNALS:
    void posted(const QJsonValue &body);
};

/// The page in which the service's SDK runs, without a view. It keeps nothing on disk.
class PlayerPage : public QObject
{
    Q_OBJECT

public:
    explicit PlayerPage(QObject *parent = nullptr);
    ~PlayerPage() override;

    /// The page's text, for an SDK from this host.
    [[nodiscard]] static QString text(const QString &sdk);

    /// Loads the page; again and again while the SDK's script cannot be had.
    void load(const QString &sdk);
    /// Hands the page a token.
    void pushToken(const QString &token);

Q_SIGNALS:
    void loaded();
    void messagePosted(const QJsonValue &body);
    void protectedAudioChecked(bool isAvailable);
    /// The engine's process for the page is gone.
    void died();

private:
    void checkLoaded();
    void receive(const QJsonValue &body);

    QWebEngineProfile m_profile;
    MessageHandler m_handler;
    QWebChannel m_channel;
    std::unique_ptr<QWebEnginePage> m_page;
    QString m_sdk;
    QTimer m_reload;
};

} // namespace randblatt
