#include "platform/browser/BrowserAuthenticationSession.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

class TestBrowserAuthenticationSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void endsEachSignInOnce()
    {
        QList<QUrl> opened;
        BrowserAuthenticationSession session([&](const QUrl &url) {
            opened.append(url);
            return url.host() != "broken"_L1;
        });
        QStringList ends;
        const auto start = [&](const QString &name, const QString &url) {
            session.start(QUrl(url), QUrl(u"randblatt://callback"_s),
                          [&ends, name](const WebAuthenticationResult &result) {
                              ends.append(name + u": "_s + result.callback.toString() + result.error);
                          });
        };
        QVERIFY(!session.openCallback(QUrl(u"randblatt://callback?code=0"_s)));
        QVERIFY(!session.showAgain());
        start(u"a"_s, u"https://service/authorize"_s);
        QVERIFY(session.showAgain());
        QVERIFY(session.openCallback(QUrl(u"randblatt://callback?code=1"_s)));
        QVERIFY(!session.openCallback(QUrl(u"randblatt://callback?code=2"_s)));
        start(u"b"_s, u"https://service/authorize"_s);
        start(u"c"_s, u"https://broken/"_s);
        session.cancel();
        QCOMPARE(ends, (QStringList{u"a: randblatt://callback?code=1"_s, u"b: "_s,
                                    u"c: Der Browser konnte nicht geöffnet werden."_s}));
        QCOMPARE(opened.size(), 4);
        QCOMPARE(opened.at(1), opened.at(0));
    }

    void takesOnlyItsOwnRedirect_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<bool>("isTaken");
        QTest::newRow("as it was asked for") << u"randblatt://callback?code=1"_s << true;
        QTest::newRow("with a browser's slash") << u"randblatt://callback/?code=1"_s << true;
        QTest::newRow("in capitals") << u"RANDBLATT://Callback?error=access_denied"_s << true;
        QTest::newRow("other scheme") << u"https://callback?code=1"_s << false;
        QTest::newRow("other host") << u"randblatt://settings?code=1"_s << false;
        QTest::newRow("host of another") << u"randblatt://callback.example?code=1"_s << false;
        QTest::newRow("other path") << u"randblatt://callback/other?code=1"_s << false;
        QTest::newRow("no host") << u"randblatt:callback?code=1"_s << false;
        QTest::newRow("user") << u"randblatt://me@callback?code=1"_s << false;
        QTest::newRow("port") << u"randblatt://callback:1?code=1"_s << false;
    }
    void takesOnlyItsOwnRedirect()
    {
        QFETCH(QString, url);
        QFETCH(bool, isTaken);
        BrowserAuthenticationSession session([](const QUrl &) { return true; });
        QStringList ends;
        session.start(
            QUrl(u"https://service/authorize"_s), QUrl(u"randblatt://callback"_s),
            [&](const WebAuthenticationResult &result) { ends.append(result.callback.toString()); });
        QCOMPARE(session.openCallback(QUrl(url)), isTaken);
        QCOMPARE(ends.size(), isTaken ? 1 : 0);
        // Whatever came, the sign-in that waits is not lost by it.
        QCOMPARE(session.openCallback(QUrl(u"randblatt://callback?code=2"_s)), !isTaken);
    }
};

RANDBLATT_TEST_MAIN(TestBrowserAuthenticationSession, QCoreApplication)
#include "tst_browserauthenticationsession.moc"
