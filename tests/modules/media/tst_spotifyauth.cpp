#include "modules/media/ScriptedSession.h"
#include "modules/media/SpotifyAuth.h"
#include "settings/AppSettings.h"
#include "settings/Preferences.h"
#include "support/Fakes.h"
#include "support/SpotifyServer.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QNetworkReply>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

struct Fixture
{
    SpotifyServer server;
    Preferences preferences{Preferences::inMemory()};
    FakeLoginItem loginItem;
    AppSettings settings{preferences, loginItem};
    ScriptedSession session;
    QNetworkAccessManager network;
    double now = 1'000'000.0;
    std::unique_ptr<SpotifyAuth> auth;

    /// With tokens that end in `lifetime` seconds, if it is given.
    explicit Fixture(std::optional<double> lifetime = std::nullopt)
    {
        if (lifetime) {
            preferences.setValue(u"sp_access"_s, u"access-0"_s);
            preferences.setValue(u"sp_refresh"_s, server.refreshToken);
            preferences.setValue(u"sp_expiry"_s, now + *lifetime);
        }
        auth = std::make_unique<SpotifyAuth>(preferences, settings, session, network, server.hosts(),
                                             [this] { return now; });
    }

    /// Follows the browser's redirect: what it is redirected to.
    QString followRedirect()
    {
        QNetworkRequest request(session.url);
        request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
        const std::unique_ptr<QNetworkReply> reply(network.get(request));
        QSignalSpy(reply.get(), &QNetworkReply::finished).wait();
        return reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl().toString();
    }

    /// Waits for an answer that comes after all those that are delayed.
    void waitUntilLate()
    {
        server.imageDelay = 300;
        const std::unique_ptr<QNetworkReply> reply(
            network.get(QNetworkRequest(server.url(QStringLiteral("/image/late")))));
        QVERIFY(QSignalSpy(reply.get(), &QNetworkReply::finished).wait());
    }

    [[nodiscard]] QString stored(const QString &key) const
    {
        return preferences.get<QString>(key).value_or(u"–"_s);
    }
};

/// The outcomes of calls for a token.
struct Tokens
{
    QObject context;
    QStringList got;

    SpotifyAuth::TokenCompletion take()
    {
        return [this](const std::optional<QString> &token) { got.append(token.value_or(u"none"_s)); };
    }
};

} // namespace

class TestSpotifyAuth : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void drawsFromTheAllowedAlphabet()
    {
        const QRegularExpression allowed(u"^[A-Za-z0-9\\-._~]*$"_s);
        QSet<QChar> seen;
        for (int i = 0; i < 100; ++i) {
            const QString text = SpotifyAuth::randomString(64);
            QCOMPARE(text.size(), 64);
            QVERIFY(allowed.match(text).hasMatch());
            seen.unite(QSet<QChar>(text.begin(), text.end()));
        }
        QCOMPARE(seen.size(), 66);
        // The example of RFC 7636, appendix B.
        QCOMPARE(SpotifyAuth::codeChallenge(u"dBjftJeZ4CVP-mB92K27uhbUJU1p1r_wW1gFWFOEjXk"_s),
                 u"E9Melhoa2OwvFrEMTJguCHaoeK1t8URWbuGJSstw-cM"_s);
    }

    void signsIn()
    {
        Fixture f;
        f.settings.setSpotifyClientID(u"not to be used"_s);
        QVERIFY(!f.auth->isAuthorized());
        QSignalSpy signedIn(f.auth.get(), &SpotifyAuth::signedIn);
        f.auth->signIn();
        QCOMPARE(f.session.expected, QUrl(u"randblatt://callback"_s));
        QCOMPARE(f.stored(u"sp_verifier"_s).size(), 64);
        f.session.redirect(f.followRedirect());
        QVERIFY(signedIn.wait());
        QVERIFY(f.auth->isAuthorized());
        QCOMPARE(f.stored(u"sp_access"_s), u"access-1"_s);
        QCOMPARE(f.stored(u"sp_refresh"_s), u"refresh-1"_s);
        QCOMPARE(f.preferences.get<double>(u"sp_expiry"_s), f.now + 3600);
        QCOMPARE(f.server.violations, QStringList());

        f.auth->signOut();
        QVERIFY(!f.auth->isAuthorized());
        QVERIFY(!f.preferences.value(u"sp_access"_s));
        QVERIFY(!f.preferences.value(u"sp_refresh"_s));
        QVERIFY(f.preferences.get<double>(u"sp_expiry"_s).value_or(0) < 0);
        QVERIFY(f.preferences.value(u"sp_verifier"_s));
    }

    void reportsASignInThatFails_data()
    {
        QTest::addColumn<QString>("callback");
        QTest::addColumn<QString>("error");
        const QString none = u"Keine Autorisierung erhalten."_s;
        QTest::newRow("refused") << u"randblatt://callback?error=access_denied"_s << none;
        QTest::newRow("empty") << u"randblatt://callback"_s << none;
        QTest::newRow("wrong code") << u"randblatt://callback?code=%22&state=x"_s
                                    << u"Anmeldung fehlgeschlagen."_s;
    }
    void reportsASignInThatFails()
    {
        QFETCH(QString, callback);
        QFETCH(QString, error);
        Fixture f;
        f.auth->signIn();
        f.session.redirect(callback);
        QTRY_COMPARE(f.auth->lastError(), error);
        QVERIFY(!f.auth->isAuthorized());
        // The next one starts anew, and leaves nothing of it.
        f.auth->signIn();
        f.session.redirect(f.followRedirect());
        QTRY_VERIFY(f.auth->isAuthorized());
        QCOMPARE(f.auth->lastError(), QString());
        QCOMPARE(f.server.violations, QStringList());
    }

    void aSecondClickShowsTheSamePageAgain()
    {
        Fixture f;
        f.auth->signIn();
        const QString redirect = f.followRedirect();
        const QString verifier = f.stored(u"sp_verifier"_s);
        f.auth->signIn();
        QCOMPARE(f.session.shown, 2);
        QCOMPARE(f.stored(u"sp_verifier"_s), verifier);
        QCOMPARE(f.auth->lastError(), QString());
        f.session.redirect(redirect);
        QTRY_VERIFY(f.auth->isAuthorized());
        // The next one is another.
        f.auth->signIn();
        QCOMPARE(f.session.shown, 1);
        QVERIFY(f.stored(u"sp_verifier"_s) != verifier);
        // Who signs out does not want to come in by a page that is still open.
        f.auth->signOut();
        f.session.redirect(f.followRedirect());
        QCOMPARE(f.server.count(u"POST /api/token"_s), 1);
        QCOMPARE(f.auth->lastError(), QString());
    }

    void failsTheExchangeOnBadReplies_data()
    {
        QTest::addColumn<HttpResponse>("response");
        QTest::newRow("nothing") << HttpResponse{.body = ""};
        QTest::newRow("page") << HttpResponse{.body = "<html>", .contentType = "text/html"};
        QTest::newRow("array") << HttpResponse{.body = "[1]"};
        QTest::newRow("number for the token") << HttpResponse{.body = R"({"access_token":1})"};
        QTest::newRow("cut off") << HttpResponse{.body = R"({"access_token":"a"}     )" + QByteArray(99, ' '),
                                                 .cutOff = true};
    }
    void failsTheExchangeOnBadReplies()
    {
        QFETCH(HttpResponse, response);
        Fixture f(60);
        QVERIFY(f.auth->isAuthorized());
        f.server.fault(u"POST /api/token"_s, response);
        f.auth->signIn();
        f.session.redirect(f.followRedirect());
        QTRY_COMPARE(f.auth->lastError(), u"Anmeldung fehlgeschlagen."_s);
        QVERIFY(!f.auth->isAuthorized());
        QCOMPARE(f.stored(u"sp_access"_s), u"access-0"_s);
    }

    void usesAStoredTokenUpTo30SecondsBeforeItsEnd()
    {
        Fixture f(31);
        Tokens tokens;
        f.auth->validAccessToken(&tokens.context, tokens.take());
        QCOMPARE(tokens.got, QStringList(u"access-0"_s));
        f.now += 2;
        f.auth->validAccessToken(&tokens.context, tokens.take());
        QTRY_COMPARE(tokens.got, (QStringList{u"access-0"_s, u"access-1"_s}));
    }

    void sharesOneRefresh()
    {
        Fixture f(0);
        f.server.renewsRefreshToken = false;
        f.server.expiresIn = u"soon"_s;
        Tokens tokens;
        auto gone = std::make_unique<Tokens>();
        f.auth->validAccessToken(&tokens.context, tokens.take());
        f.auth->validAccessToken(&gone->context, gone->take());
        f.auth->validAccessToken(&tokens.context, tokens.take());
        gone.reset();
        QTRY_COMPARE(tokens.got, (QStringList{u"access-1"_s, u"access-1"_s}));
        QCOMPARE(f.server.count(u"POST /api/token"_s), 1);
        QCOMPARE(f.stored(u"sp_refresh"_s), u"refresh-0"_s);
        QCOMPARE(f.preferences.get<double>(u"sp_expiry"_s), f.now + 3600);
        // A rejected token that has been replaced meanwhile needs no further refresh.
        f.auth->replaceAccessToken(u"access-0"_s, &tokens.context, tokens.take());
        QCOMPARE(tokens.got.last(), u"access-1"_s);
        f.auth->replaceAccessToken(u"access-1"_s, &tokens.context, tokens.take());
        QTRY_COMPARE(tokens.got.last(), u"access-2"_s);
        QCOMPARE(f.server.violations, QStringList());
    }

    void dropsARefreshThatASignInOvertakes()
    {
        Fixture f(0);
        f.server.fault(
            u"POST /api/token"_s,
            {.body = R"({"access_token":"old","refresh_token":"old-refresh"})", .delayMilliseconds = 200});
        Tokens tokens;
        f.auth->validAccessToken(&tokens.context, tokens.take());
        QTRY_COMPARE(f.server.count(u"POST /api/token"_s), 1);
        f.auth->signIn();
        f.session.redirect(f.followRedirect());
        // Who waited for the refresh gets the token of the sign-in.
        QTRY_COMPARE(tokens.got, QStringList(u"access-1"_s));
        f.waitUntilLate();
        QCOMPARE(f.stored(u"sp_access"_s), u"access-1"_s);
        QCOMPARE(f.stored(u"sp_refresh"_s), u"refresh-1"_s);
    }

    void keepsTheTokensOfASignInThatOvertakesARefresh()
    {
        Fixture f(0);
        f.server.fault(
            u"POST /api/token"_s,
            {.body = R"({"access_token":"new","refresh_token":"new-refresh"})", .delayMilliseconds = 50});
        f.server.fault(
            u"POST /api/token"_s,
            {.body = R"({"access_token":"old","refresh_token":"old-refresh"})", .delayMilliseconds = 200});
        f.auth->signIn();
        f.session.redirect(u"randblatt://callback?code=c"_s);
        QTRY_COMPARE(f.server.count(u"POST /api/token"_s), 1);
        Tokens tokens;
        f.auth->validAccessToken(&tokens.context, tokens.take());
        QTRY_COMPARE(tokens.got, QStringList(u"new"_s));
        QTRY_COMPARE(f.server.count(u"POST /api/token"_s), 2);
        f.waitUntilLate();
        QCOMPARE(f.stored(u"sp_access"_s), u"new"_s);
        QCOMPARE(f.stored(u"sp_refresh"_s), u"new-refresh"_s);
    }

    void aFailedRefreshChangesNothing()
    {
        Fixture f(0);
        Tokens tokens;
        f.server.refreshToken = u"another"_s;
        f.server.fault(u"POST /api/token"_s, {.status = 503, .body = "{}"});
        f.auth->validAccessToken(&tokens.context, tokens.take());
        QTRY_COMPARE(tokens.got, QStringList(u"none"_s));
        QVERIFY(f.auth->isAuthorized());
        QVERIFY(!f.auth->isRefreshRefused());
        f.auth->validAccessToken(&tokens.context, tokens.take());
        QTRY_COMPARE(tokens.got.size(), 2);
        QVERIFY(f.auth->isRefreshRefused());
        // That is the last that the service hears of the token.
        f.auth->validAccessToken(&tokens.context, tokens.take());
        QCOMPARE(tokens.got.size(), 3);
        QCOMPARE(f.server.count(u"POST /api/token"_s), 2);
        QCOMPARE(f.stored(u"sp_refresh"_s), u"refresh-0"_s);
        QVERIFY(f.auth->lastError().isEmpty());
    }

    void dropsWhatComesAfterTheSignOut()
    {
        Fixture f(0);
        Tokens tokens;
        f.auth->validAccessToken(&tokens.context, tokens.take());
        f.auth->signOut();
        QCOMPARE(tokens.got, QStringList(u"none"_s));
        QTRY_COMPARE(f.server.count(u"POST /api/token"_s), 1);
        QTest::qWait(50);
        QVERIFY(!f.preferences.value(u"sp_refresh"_s));
    }
};

Q_DECLARE_METATYPE(randblatt::HttpResponse)

RANDBLATT_TEST_MAIN(TestSpotifyAuth, QCoreApplication)
#include "tst_spotifyauth.moc"
