#include "modules/media/CoverCache.h"
#include "modules/media/RunAside.h"
#include "support/SpotifyServer.h"
#include "support/TestEnvironment.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

QByteArray png(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QBuffer::WriteOnly);
    image.save(&buffer, "PNG");
    return data;
}

struct Fixture
{
    SpotifyServer server;
    QNetworkAccessManager network;
    QTemporaryDir folder;
    std::unique_ptr<CoverCache> cache;
    QObject context;
    QStringList got;

    explicit Fixture(qint64 limit = 1'000'000)
        : cache(std::make_unique<CoverCache>(network, folder.filePath(u"covers"_s), limit))
    {
        server.image = png(QSize(60, 60));
    }

    void request(const QString &path, QObject *waiting)
    {
        cache->request(server.url(path), waiting, [this](const QString &file) { got.append(file); });
    }
};

} // namespace

class TestCoverCache : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void downloadsEachPictureOnce()
    {
        Fixture f;
        f.request(u"/image/1"_s, &f.context);
        f.request(u"/image/1"_s, &f.context);
        QTRY_COMPARE(f.got.size(), 2);
        f.request(u"/image/1"_s, &f.context);
        QCOMPARE(f.got.size(), 3);
        QCOMPARE(f.server.requests.size(), 1);
        QVERIFY(!QImage(f.got.last()).isNull());
    }

    void keepsNothingThatIsNoImage_data()
    {
        QTest::addColumn<HttpResponse>("response");
        QTest::addColumn<int>("requests");
        QTest::newRow("page") << HttpResponse{.body = "<html>"} << 1;
        QTest::newRow("nothing") << HttpResponse{.body = ""} << 1;
        QTest::newRow("not found") << HttpResponse{.status = 404, .body = png(QSize(9, 9))} << 1;
        QTest::newRow("huge picture") << HttpResponse{.body = png(QSize(5000, 2))} << 1;
        // These count as no answer at all, and the network may be better later.
        QTest::newRow("huge file") << HttpResponse{.body = QByteArray(3'000'000, 'x')} << 2;
        QTest::newRow("cut off") << HttpResponse{.body = png(QSize(300, 300)), .cutOff = true} << 2;
    }
    void keepsNothingThatIsNoImage()
    {
        QFETCH(HttpResponse, response);
        Fixture f;
        f.server.fault(u"GET /image/1"_s, response, 2);
        f.request(u"/image/1"_s, &f.context);
        QTRY_COMPARE(f.got, QStringList(QString()));
        f.request(u"/image/1"_s, &f.context);
        QTRY_COMPARE(f.got.size(), 2);
        QTEST(static_cast<int>(f.server.requests.size()), "requests");
    }

    void doesNotLoadWhatNobodyWaitsForAnyMore()
    {
        Fixture f;
        f.server.imageDelay = 100;
        auto row = std::make_unique<QObject>();
        for (int i = 0; i < 4; ++i)
            f.request(u"/image/seen%1"_s.arg(i), &f.context);
        f.request(u"/image/gone"_s, row.get());
        row.reset();
        QTRY_COMPARE(f.got.size(), 4);
        QTest::qWait(50);
        QCOMPARE(f.server.requests.size(), 4);
    }

    void workBesideTheMainThreadGivesNothingWhereItThrows()
    {
        QObject context;
        QList<std::optional<int>> results;
        const auto done = [&results](const std::optional<int> &result) { results.append(result); };
        runAside(
            &context, []() -> std::optional<int> { throw std::bad_alloc(); }, done);
        QTRY_COMPARE(results.size(), 1);
        runAside(
            &context, []() -> std::optional<int> { return 5; }, done);
        QTRY_COMPARE(results, (QList<std::optional<int>>{std::nullopt, 5}));
    }

    void staysSmall()
    {
        const qint64 one = png(QSize(60, 60)).size();
        Fixture f(5 * one);
        for (int i = 0; i < 12; ++i) {
            f.request(u"/image/%1"_s.arg(i), &f.context);
            QTRY_COMPARE(f.got.size(), i + 1);
        }
        qint64 kept = 0;
        const auto files = QDir(f.folder.filePath(u"covers"_s)).entryInfoList(QDir::Files);
        for (const QFileInfo &file : files)
            kept += file.size();
        QVERIFY(kept > 0 && kept <= 5 * one);
        QVERIFY(QFile::exists(f.got.last()));
    }
};

Q_DECLARE_METATYPE(randblatt::HttpResponse)

RANDBLATT_TEST_MAIN(TestCoverCache, QGuiApplication)
#include "tst_covercache.moc"
