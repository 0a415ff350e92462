#include "webplayer/PlayerPage.h"

#include <QFile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>

#include <chrono>
#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto reloadInterval = 30s;
// A host that never resolves: it only gives the page a secure origin, without which the SDK does not run.
const QUrl baseUrl(u"https://quillbar.invalid/"_s);
const QString protectedAudio = u"protectedAudio"_s;

QString resource(const QString &path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}

/// Gives the page the message handler that it posts to. What it posts before the channel is there waits.
constexpr auto handlerScript = R"(
(function () {
  const waiting = [];
  let handler = null;
  const spotify = {
    postMessage: body => { if (handler) handler.postMessage(body); else waiting.push(body); }
  };
  window.webkit = { messageHandlers: { spotify: spotify } };
  new QWebChannel(qt.webChannelTransport, channel => {
    handler = channel.objects.spotify;
    waiting.splice(0).forEach(body => handler.postMessage(body));
  });
})();
)"_L1;

/// Asks the engine for the module that decrypts the service's audio.
constexpr auto probeScript = R"(
(async function () {
  let available = false;
  try {
    await navigator.requestMediaKeySystemAccess('com.widevine.alpha', [{
      initDataTypes: ['cenc'],
      audioCapabilities: [{ contentType: 'audio/mp4; codecs="mp4a.40.2"' }]
    }]);
    available = true;
  } catch (error) {
  }
  window.webkit.messageHandlers.spotify.postMessage({ type: 'protectedAudio', available: available });
})();
)"_L1;

/// A text between single quotes in a script.
QString quoted(QString text)
{
    text.replace(u'\\', "\\\\"_L1).replace(u'\'', "\\'"_L1).replace(u'\n', "\\n"_L1).replace(u'\r', "\\r"_L1);
    return u'\'' + text + u'\'';
}

} // namespace

void OwnPage::load(const QString &html, const QUrl &baseUrl)
{
    m_isExpected = true;
    setHtml(html, baseUrl);
}

bool OwnPage::acceptNavigationRequest(const QUrl &url, NavigationType, bool isMainFrame)
{
    if (!isMainFrame)
        return true;
    // A text comes as such an address. No script may go to one.
    return std::exchange(m_isExpected, false) && url.scheme() == "data"_L1;
}

PlayerPage::PlayerPage(QObject *parent)
    : QObject(parent)
    , m_page(std::make_unique<OwnPage>(&m_profile))
{
    m_channel.registerObject(u"spotify"_s, &m_handler);
    m_page->setWebChannel(&m_channel);
    m_page->settings()->setAttribute(QWebEngineSettings::PlaybackRequiresUserGesture, false);
    QWebEngineScript script;
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::MainWorld);
    script.setSourceCode(resource(u":/qtwebchannel/qwebchannel.js"_s) + handlerScript);
    m_page->scripts().insert(script);

    m_reload.setSingleShot(true);
    m_reload.setInterval(reloadInterval);
    connect(&m_reload, &QTimer::timeout, this, [this] { load(m_sdk); });
    connect(&m_handler, &MessageHandler::posted, this, &PlayerPage::receive);
    connect(m_page.get(), &QWebEnginePage::loadFinished, this, &PlayerPage::checkLoaded);
    connect(m_page.get(), &QWebEnginePage::renderProcessTerminated, this, &PlayerPage::died);
}

PlayerPage::~PlayerPage() = default;

QString PlayerPage::text(const QString &sdk)
{
    return resource(u":/webplayer/player.html"_s).replace("%SDK%"_L1, sdk);
}

void PlayerPage::load(const QString &sdk)
{
    m_sdk = sdk;
    m_page->load(text(sdk), baseUrl);
}

void PlayerPage::checkLoaded()
{
    m_page->runJavaScript(u"typeof window.Spotify"_s, [this](const QVariant &type) {
        if (type.toString() == "undefined"_L1)
            m_reload.start();
    });
    m_page->runJavaScript(probeScript);
    Q_EMIT loaded();
}

void PlayerPage::pushToken(const QString &token)
{
    m_page->runJavaScript("location.origin === "_L1 + quoted(baseUrl.toString(QUrl::RemovePath)) +
                          " && window.__setToken && window.__setToken("_L1 + quoted(token) + u')');
}

void PlayerPage::ask()
{
    m_page->runJavaScript(u"1"_s, [this](const QVariant &) { Q_EMIT answered(); });
}

void PlayerPage::receive(const QJsonValue &body)
{
    if (body["type"_L1] == protectedAudio)
        Q_EMIT protectedAudioChecked(body["available"_L1].toBool());
    else
        Q_EMIT messagePosted(body);
}

} // namespace randblatt
