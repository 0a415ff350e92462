#include "support/TestEnvironment.h"
#include "theme/ThemeConfig.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

QJsonObject sampleJson()
{
    return QJsonDocument::fromJson(R"({"frosted":true,"tint":{"r":0.1,"g":0.2,"b":0.3},"tintStrength":0.4,
        "darkness":0.5,"blur":6,"lightsEnabled":false,"lightColor":{"r":0.7,"g":0.8,"b":0.9},
        "lightsIntensity":0.11,"textWhite":false,"haloStrength":0.12,"textScale":1.3})")
        .object();
}

} // namespace

class ThemeConfigTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasTheFixedDefaults()
    {
        const auto json = QJsonDocument(ThemeConfig().toJson()).toJson(QJsonDocument::Compact);
        const QByteArray expected = R"({"blur":13,"darkness":0.7,"frosted":false,"haloStrength":0.29,)"
                                    R"("lightColor":{"b":1,"g":0.11,"r":0},"lightsEnabled":true,)"
                                    R"("lightsIntensity":0,"textScale":1,"textWhite":true,)"
                                    R"("tint":{"b":0.55,"g":0.2,"r":0.22},"tintStrength":0})";
        QCOMPARE(json, expected);
    }

    void decodesEveryMember()
    {
        const auto theme = ThemeConfig::fromJson(sampleJson());
        QVERIFY(theme);
        const ThemeConfig expected{true, {0.1, 0.2, 0.3}, 0.4,  0.5, 6, false, {0.7, 0.8, 0.9},
                                   0.11, false,           0.12, 1.3};
        QCOMPARE(*theme, expected);
    }

    void loadsRecordsWithoutTextScale()
    {
        QJsonObject json = sampleJson();
        json.remove("textScale"_L1);
        const auto theme = ThemeConfig::fromJson(json);
        QVERIFY(theme);
        QCOMPARE(theme->textScale, 1.0);
        QCOMPARE(theme->haloStrength, 0.12);
    }

    void rejectsMissingAndIllTypedMembers_data()
    {
        QTest::addColumn<QString>("member");
        QTest::addColumn<QJsonValue>("value");
        const QStringList members = sampleJson().keys();
        for (const QString &member : members) {
            if (member != "textScale"_L1)
                QTest::addRow("without %s", qPrintable(member))
                    << member << QJsonValue(QJsonValue::Undefined);
        }
        QTest::newRow("frosted as a number") << u"frosted"_s << QJsonValue(1);
        QTest::newRow("blur as a boolean") << u"blur"_s << QJsonValue(true);
        QTest::newRow("darkness as text") << u"darkness"_s << QJsonValue("0.5"_L1);
        QTest::newRow("text scale as text") << u"textScale"_s << QJsonValue("1"_L1);
        QTest::newRow("tint without blue") << u"tint"_s << QJsonValue(QJsonObject{{"r"_L1, 1}, {"g"_L1, 1}});
        QTest::newRow("light colour as an array") << u"lightColor"_s << QJsonValue(QJsonArray{1, 1, 1});
    }

    void rejectsMissingAndIllTypedMembers()
    {
        QFETCH(QString, member);
        QFETCH(QJsonValue, value);
        QJsonObject json = sampleJson();
        json.insert(member, value);
        QVERIFY(!ThemeConfig::fromJson(json));
    }

    void survivesTheStoredForm()
    {
        ThemeConfig theme;
        theme.textScale = 0.1 + 0.2;
        theme.tint = {1.0 / 3.0, -2, 1e-9};
        QCOMPARE(decodeTheme(encodeTheme(theme).value()), theme);

        const ModuleThemes themes{{u"todo"_s, theme}, {u"notes"_s, ThemeConfig()}};
        QCOMPARE(decodeThemes(encodeThemes(themes).value()), themes);
    }

    void encodesNothingThatJsonCannotExpress()
    {
        ThemeConfig theme;
        theme.lightColor.g = std::numeric_limits<double>::quiet_NaN();
        QVERIFY(!encodeTheme(theme));
        QVERIFY(!encodeThemes({{u"todo"_s, theme}}));
    }

    void rejectsCorruptBytes_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("cut off") << encodeTheme(ThemeConfig()).value().chopped(1);
        QTest::newRow("an array") << QByteArray("[]");
        QTest::newRow("no JSON") << QByteArray("\xff\x00\x01", 3);
    }

    void rejectsCorruptBytes()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(!decodeTheme(bytes));
        QVERIFY(!decodeThemes(bytes));
    }

    void takesColoursAsTheirSrgbComponents()
    {
        QCOMPARE(RGBA::fromColor(QColor(255, 0, 51, 10)), (RGBA{1, 0, 0.2F}));
        QCOMPARE(RGBA::fromColor(QColor::fromHsvF(0, 1, 1)), (RGBA{1, 0, 0}));
        QCOMPARE(RGBA::fromColor(QColor()), (RGBA{1, 1, 1}));
    }

    void knowsTheAccentOfEachModule()
    {
        QCOMPARE(moduleAccentColor(u"notes"_s), QColor::fromRgbF(1.0F, 0.84F, 0.45F));
        QCOMPARE(moduleAccentColor(u"weather"_s), QColor::fromRgbF(0.55F, 0.45F, 1.0F));
    }
};

RANDBLATT_TEST_MAIN(ThemeConfigTest, QCoreApplication)
#include "tst_themeconfig.moc"
