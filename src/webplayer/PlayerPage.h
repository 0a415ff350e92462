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

/// A page that stays what it was made, whatever its scripts try: its frames may load something else, the page
/// itself may not.
class OwnPage : public QWebEnginePage
{
    Q_OBJECT

public:
    using QWebEnginePage::QWebEnginePage;

    /// Takes this text as the page.
    void load(const QString &html, const QUrl &baseUrl);

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override;

private:
    /// The text is on its way.
    bool m_isExpected = false;
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
    /// Hands the page a token, if it is ours.
    void pushToken(const QString &token);
    /// Asks the page whether it still runs: answered().
    void ask();

Q_SIGNALS:
    void loaded();
    void messagePosted(const QJsonValue &body);
    void protectedAudioChecked(bool isAvailable);
    void answered();
    /// The engine's process for the page is gone.
    void died();

private:
    void checkLoaded();
    void receive(const QJsonValue &body);

    QWebEngineProfile m_profile;
    MessageHandler m_handler;
    QWebChannel m_channel;
    std::unique_ptr<OwnPage> m_page;
    QString m_sdk;
    QTimer m_reload;
};

} // namespace randblatt
