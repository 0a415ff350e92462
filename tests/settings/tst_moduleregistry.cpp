#include "settings/AppSettings.h"
#include "settings/ModuleRegistry.h"
#include "settings/Preferences.h"
#include "support/Fakes.h"
#include "support/TestEnvironment.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

QStringList ids(const QList<SidebarModule *> &modules)
{
    QStringList result;
    for (const SidebarModule *module : modules)
        result.append(module->id());
    return result;
}

} // namespace

class ModuleRegistryTest : public QObject
{
    Q_OBJECT

    Preferences m_preferences{Preferences::inMemory()};
    FakeLoginItem m_loginItem;

private Q_SLOTS:
    void ordersModulesAsTheUserDoes_data()
    {
        QTest::addColumn<QStringList>("order");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("default") << QStringList{u"spotify"_s, u"todo"_s, u"calendar"_s, u"notes"_s}
                                 << QStringList{u"spotify"_s, u"todo"_s, u"calendar"_s, u"notes"_s};
        QTest::newRow("missing ones follow")
            << QStringList{u"notes"_s} << QStringList{u"notes"_s, u"todo"_s, u"calendar"_s, u"spotify"_s};
        QTest::newRow("unknown and repeated ids are skipped")
            << QStringList{u"weather"_s, u"spotify"_s, u"todo"_s, u"spotify"_s}
            << QStringList{u"spotify"_s, u"todo"_s, u"calendar"_s, u"notes"_s};
    }

    void ordersModulesAsTheUserDoes()
    {
        QFETCH(QStringList, order);
        QFETCH(QStringList, expected);
        AppSettings settings(m_preferences, m_loginItem);
        const ModuleRegistry registry(settings, FakeModule::all());
        settings.setModuleOrder(order);
        QCOMPARE(ids(registry.orderedModules()), expected);
        QCOMPARE(settings.moduleOrder(), order);
    }

    void showsTheEnabledModulesAlone()
    {
        Preferences preferences(Preferences::inMemory());
        AppSettings settings(preferences, m_loginItem);
        const ModuleRegistry registry(settings, FakeModule::all());
        QCOMPARE(ids(registry.enabledModules()), (QStringList{u"spotify"_s, u"todo"_s, u"notes"_s}));
        settings.setEnabled(u"weather"_s, true);
        settings.setEnabled(u"calendar"_s, true);
        settings.setEnabled(u"spotify"_s, false);
        QCOMPARE(ids(registry.enabledModules()), (QStringList{u"todo"_s, u"calendar"_s, u"notes"_s}));
    }

    void announcesEveryChangeOfTheSettings()
    {
        AppSettings settings(m_preferences, m_loginItem);
        const ModuleRegistry registry(settings, FakeModule::all());
        QSignalSpy changes(&registry, &ModuleRegistry::changed);
        settings.setRevealDelay(0.5);
        settings.setHeight(300, u"todo"_s);
        settings.setHeight(300, u"todo"_s);
        QCOMPARE(changes.count(), 2);
    }
};

RANDBLATT_TEST_MAIN(ModuleRegistryTest, QCoreApplication)
#include "tst_moduleregistry.moc"
