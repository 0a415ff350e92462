#include "settings/Draft.h"
#include "settings/Preferences.h"
#include "settings/UndoHistory.h"
#include "support/TestEnvironment.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

/// What keeps typed words, and what brings deleted ones back.
class DraftsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void draftsOutliveTheProcess()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"preferences.sqlite"_s);
        {
            Preferences preferences(path);
            preferences.setValue(u"todo.add"_s, u"no draft"_s);
            Draft field(preferences, u"todo.add"_s);
            Draft form(preferences, u"calendar.form"_s);
            field.setText(u"Milch kau"_s);
            form.setValue(u"title"_s, u"Zahnarzt"_s);
            form.setValue(u"minutes"_s, 30);
        }
        Preferences preferences(path);
        QCOMPARE(preferences.get<QString>(u"todo.add"_s), u"no draft"_s);
        Draft field(preferences, u"todo.add"_s);
        QCOMPARE(field.text(), u"Milch kau"_s);
        Draft form(preferences, u"calendar.form"_s);
        QCOMPARE(form.values(), (QJsonObject{{u"title"_s, u"Zahnarzt"_s}, {u"minutes"_s, 30}}));

        QSignalSpy changes(&form, &Draft::changed);
        form.setValue(u"title"_s, QString());
        QVERIFY(!form.isEmpty());
        form.clear();
        form.clear();
        QCOMPARE(changes.count(), 2);
        QVERIFY(form.isEmpty());
        QVERIFY(preferences.draft(u"calendar.form"_s).isEmpty());
        QVERIFY(!preferences.draft(u"todo.add"_s).isEmpty());
    }

    void takesChangesBackInReverse()
    {
        UndoHistory history;
        QStringList undone;
        QVERIFY(!history.undo());
        history.push(u"Gelöscht"_s, [&] { undone.append(u"first"_s); });
        const int first = history.latest();
        history.push(u"Umbenannt"_s, [&] {
            undone.append(u"second"_s);
            // What comes to nothing can be tried again.
            history.push(u"Umbenannt"_s, [&] { undone.append(u"again"_s); });
        });
        QVERIFY(history.latest() > first);
        QCOMPARE(history.offer(), u"Umbenannt"_s);
        QVERIFY(history.undo());
        QVERIFY(history.undo());
        QCOMPARE(history.offer(), QString());
        QVERIFY(history.undo());
        QVERIFY(!history.undo());
        QCOMPARE(undone, (QStringList{u"second"_s, u"again"_s, u"first"_s}));
        QVERIFY(!history.canUndo());
    }

    void anOfferThatEndsLeavesTheWayBack()
    {
        UndoHistory history;
        bool undone = false;
        history.push(u"Gelöscht"_s, [&] { undone = true; });
        history.endOffer();
        history.holdOffer(false);
        QCOMPARE(history.offer(), QString());
        QVERIFY(history.undo());
        QVERIFY(undone);
    }
};

RANDBLATT_TEST_MAIN(DraftsTest, QCoreApplication)
#include "tst_drafts.moc"
