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
            session.start(QUrl(url), u"randblatt"_s, [&ends, name](const WebAuthenticationResult &result) {
                ends.append(name + u": "_s + result.callback.toString() + result.error);
            });
        };
        QVERIFY(!session.openCallback(QUrl(u"randblatt://callback?code=0"_s)));
        start(u"a"_s, u"https://service/authorize"_s);
        QVERIFY(!session.openCallback(QUrl(u"https://elsewhere?code=0"_s)));
        QVERIFY(session.openCallback(QUrl(u"randblatt://callback?code=1"_s)));
        QVERIFY(!session.openCallback(QUrl(u"randblatt://callback?code=2"_s)));
        start(u"b"_s, u"https://service/authorize"_s);
        start(u"c"_s, u"https://broken/"_s);
        session.cancel();
        QCOMPARE(ends, (QStringList{u"a: randblatt://callback?code=1"_s,
                                    u"b: Die vorige Anmeldung wurde abgebrochen."_s,
                                    u"c: Der Browser konnte nicht geöffnet werden."_s}));
        QCOMPARE(opened.size(), 3);
    }
};

RANDBLATT_TEST_MAIN(TestBrowserAuthenticationSession, QCoreApplication)
#include "tst_browserauthenticationsession.moc"
