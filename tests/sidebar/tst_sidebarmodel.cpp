#include "settings/AppSettings.h"
#include "settings/ModuleRegistry.h"
#include "settings/Preferences.h"
#include "sidebar/SidebarModel.h"
#include "support/Fakes.h"
#include "support/TestEnvironment.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

class SidebarModelTest : public QObject
{
    Q_OBJECT

    FakeLoginItem m_loginItem;

    static QString ids(const SidebarModel &model)
    {
        QStringList ids;
        for (int row = 0; row < model.count(); ++row) {
            const auto *module =
                model.index(row).data(static_cast<int>(SidebarModel::Role::module)).value<SidebarModule *>();
            ids.append(module->id());
        }
        return ids.join(u' ');
    }

private Q_SLOTS:
    void followsOrderAndEnablingWithoutAReset()
    {
        Preferences preferences(Preferences::inMemory());
        AppSettings settings(preferences, m_loginItem);
        const ModuleRegistry registry(settings, FakeModule::all());
        SidebarModel model(settings, registry);
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy resets(&model, &SidebarModel::modelReset);
        QSignalSpy removals(&model, &SidebarModel::rowsRemoved);
        QCOMPARE(ids(model), u"spotify todo notes"_s);

        settings.setEnabled(u"calendar"_s, true);
        QCOMPARE(ids(model), u"spotify todo calendar notes"_s);
        settings.setModuleOrder({u"notes"_s, u"calendar"_s});
        QCOMPARE(ids(model), u"notes calendar todo spotify"_s);
        QCOMPARE(removals.count(), 0);
        settings.setEnabled(u"todo"_s, false);
        QCOMPARE(ids(model), u"notes calendar spotify"_s);
        for (const auto &id : {u"notes"_s, u"calendar"_s, u"spotify"_s})
            settings.setEnabled(id, false);
        QCOMPARE(model.count(), 0);
        QCOMPARE(resets.count(), 0);
    }

    void tellsHeightsAndThemesInForce()
    {
        Preferences preferences(Preferences::inMemory());
        AppSettings settings(preferences, m_loginItem);
        const ModuleRegistry registry(settings, FakeModule::all());
        const SidebarModel model(settings, registry);
        QSignalSpy changes(&model, &SidebarModel::dataChanged);
        const auto todo = [&](SidebarModel::Role role) {
            return model.index(1).data(static_cast<int>(role));
        };

        settings.setHeight(100, u"todo"_s);
        QCOMPARE(todo(SidebarModel::Role::cardHeight).toDouble(), 100.0);
        settings.setHeight(qQNaN(), u"todo"_s);
        QVERIFY(todo(SidebarModel::Role::cardHeight).toDouble() > 0);
        settings.setPerModuleTheme(true);
        ThemeConfig theme;
        theme.frosted = true;
        settings.setTheme(theme, u"todo"_s);
        QCOMPARE(todo(SidebarModel::Role::config).value<ThemeConfig>(), theme);
        QCOMPARE(todo(SidebarModel::Role::tint).value<QColor>(), moduleAccentColor(u"todo"_s));
        QCOMPARE(changes.count(), 4);
        settings.setRevealDelay(0.5);
        QCOMPARE(changes.count(), 4);
    }
};

RANDBLATT_TEST_MAIN(SidebarModelTest, QCoreApplication)
#include "tst_sidebarmodel.moc"
