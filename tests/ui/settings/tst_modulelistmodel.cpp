#include "settings/AppSettings.h"
#include "settings/ModuleRegistry.h"
#include "settings/Preferences.h"
#include "support/Fakes.h"
#include "support/TestEnvironment.h"
#include "ui/settings/ModuleListModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

struct Fixture
{
    Preferences preferences{Preferences::inMemory()};
    FakeLoginItem loginItem;
    AppSettings settings{preferences, loginItem};
    ModuleRegistry registry{settings, FakeModule::all()};
    ModuleListModel model{settings, registry};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::QtTest};

    [[nodiscard]] QVariant data(int row, ModuleListModel::Role role) const
    {
        return model.index(row).data(static_cast<int>(role));
    }
    [[nodiscard]] QString shown() const
    {
        QStringList ids;
        for (int row = 0; row < model.rowCount(); ++row)
            ids.append(data(row, ModuleListModel::Role::moduleID).toString());
        return ids.join(u' ');
    }
    [[nodiscard]] QString stored() const
    {
        QStringList ids;
        const auto array = preferences.get<QJsonArray>(u"moduleOrder"_s).value_or(QJsonArray());
        for (const auto &id : array)
            ids.append(id.toString());
        return ids.join(u' ');
    }
};

} // namespace

class ModuleListModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void storesTheNewOrderAfterAMove_data()
    {
        QTest::addColumn<QString>("order");
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("stored");
        const QString usual = u"spotify todo calendar notes"_s;
        QTest::newRow("down") << usual << 0 << 2 << u"todo calendar spotify notes"_s
                              << u"todo calendar spotify notes"_s;
        QTest::newRow("up") << usual << 3 << 0 << u"notes spotify todo calendar"_s
                            << u"notes spotify todo calendar"_s;
        QTest::newRow("unknown ids stay where they are")
            << u"weather spotify todo clock calendar notes"_s << 3 << 0 << u"notes spotify todo calendar"_s
            << u"weather notes spotify clock todo calendar"_s;
        QTest::newRow("modules without a place get one")
            << u"clock notes"_s << 1 << 0 << u"todo notes calendar spotify"_s
            << u"clock todo notes calendar spotify"_s;
        QTest::newRow("an id that is there twice")
            << u"todo notes todo calendar spotify"_s << 0 << 1 << u"notes todo calendar spotify"_s
            << u"notes todo calendar spotify"_s;
    }

    void storesTheNewOrderAfterAMove()
    {
        QFETCH(QString, order);
        QFETCH(int, from);
        QFETCH(int, to);
        Fixture f;
        f.settings.setModuleOrder(order.split(u' '));
        QSignalSpy moves(&f.model, &ModuleListModel::rowsMoved);
        f.model.move(from, to);
        QTEST(f.shown(), "shown");
        QTEST(f.stored(), "stored");
        QCOMPARE(moves.count(), 1);
    }

    void leavesMovesToNowhereAlone()
    {
        Fixture f;
        QSignalSpy moves(&f.model, &ModuleListModel::rowsMoved);
        f.model.move(0, -1);
        f.model.move(3, 4);
        f.model.move(4, 0);
        f.model.move(2, 2);
        QCOMPARE(moves.count(), 0);
        QVERIFY(f.stored().isEmpty());
    }

    void followsChangesMadeElsewhereWithoutAReset()
    {
        Fixture f;
        QSignalSpy resets(&f.model, &ModuleListModel::modelReset);
        QSignalSpy changes(&f.model, &ModuleListModel::dataChanged);
        f.settings.setModuleOrder({u"calendar"_s, u"notes"_s});
        QCOMPARE(f.shown(), u"calendar notes todo spotify"_s);
        f.settings.setEnabled(u"calendar"_s, true);
        f.settings.setHeight(300, u"notes"_s);
        f.settings.setRevealDelay(0.5);
        QCOMPARE(changes.count(), 2);
        QCOMPARE(f.data(0, ModuleListModel::Role::moduleEnabled).toBool(), true);
        QCOMPARE(f.data(1, ModuleListModel::Role::cardHeight).toDouble(), 300.0);
        QCOMPARE(resets.count(), 0);
    }
};

RANDBLATT_TEST_MAIN(ModuleListModelTest, QCoreApplication)
#include "tst_modulelistmodel.moc"
