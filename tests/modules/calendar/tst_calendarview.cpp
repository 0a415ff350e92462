#include "FakeCalendarStore.h"
#include "modules/calendar/CalendarModule.h"
#include "modules/calendar/EventDraft.h"
#include "platform/SystemWake.h"
#include "settings/Preferences.h"
#include "support/TestEnvironment.h"
#include "support/ViewTest.h"

#include <QAccessible>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QQmlProperty>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

/// The module's view as a card would load it.
QUrl cardSource()
{
    static const QByteArray qml = R"(
        import QtQuick
        import Randblatt.Controls
        FocusScope {
            id: root
            required property var view
            required property url viewSource
            readonly property CardAppearance look: CardAppearance {}
            Loader {
                anchors.fill: parent
                focus: true
                Component.onCompleted: setSource(root.viewSource, Object.assign({ appearance: root.look }, root.view))
            }
        })";
    return QUrl(u"data:text/plain;base64,"_s + QString::fromLatin1(qml.toBase64()));
}

const QDate today(2026, 11, 16);

QDateTime at(int day, int hour, int minute = 0)
{
    return {today.addDays(day), QTime(hour, minute)};
}

} // namespace

class CalendarViewTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<FakeCalendarStore> m_store;
    SystemWake m_wake;
    std::unique_ptr<Preferences> m_preferences;
    std::unique_ptr<CalendarModule> m_module;
    std::unique_ptr<ViewTest> m_view;

    void show(const QList<CalendarEvent> &events, int height = 500)
    {
        m_view.reset();
        m_store = std::make_unique<FakeCalendarStore>();
        m_store->answer = events;
        showStore(height);
    }

    void showStore(int height = 500)
    {
        m_module =
            std::make_unique<CalendarModule>(*m_store, m_wake, *m_preferences, [] { return at(0, 8); });
        const ViewDescription content = m_module->makeView();
        m_view = std::make_unique<ViewTest>(
            cardSource(), QVariantMap{{u"view"_s, content.properties}, {u"viewSource"_s, content.source}},
            QSize(392, height));
        QTRY_VERIFY(m_store->accessRequests > 0);
        QTRY_VERIFY(m_module->service()->statusMessage() != u"Lade…"_s);
    }

    [[nodiscard]] QStringList texts(const QString &name) const
    {
        QStringList texts;
        const auto items = m_view->findAll(name);
        for (const QQuickItem *item : items)
            texts.append(item->property("text").toString());
        return texts;
    }

    [[nodiscard]] QQuickItem *calendarView() const { return m_view->find(u"agenda"_s)->parentItem(); }

    void openForm()
    {
        m_view->click(m_view->find(u"formToggle"_s));
        QTRY_COMPARE(m_view->find(u"addForm"_s)->parentItem()->property("progress").toReal(), 1.0);
    }

    /// The draft's start, as the field writes it.
    [[nodiscard]] QString start() const { return draft().start().toString(u"dd.MM.yyyy, HH:mm"); }
    [[nodiscard]] EventDraft &draft() const { return *m_module->draft(); }

    /// Replaces what stands in the start's field, and leaves the keyboard there.
    void typeStart(const QString &text)
    {
        m_view->click(m_view->find(u"dateTimeInput"_s));
        m_view->press(Qt::Key_A, Qt::ControlModifier);
        m_view->type(text);
    }

    QList<QUrl> m_opened;

    Q_INVOKABLE void noteUrl(const QUrl &url) { m_opened.append(url); }

private Q_SLOTS:
    void init() { m_preferences = std::make_unique<Preferences>(Preferences::inMemory()); }
    void cleanup()
    {
        m_view.reset();
        m_module.reset();
        m_store.reset();
    }

    void groupsEventsByTheirDays()
    {
        CalendarEvent nameless = FakeCalendarStore::make({}, at(3, 23, 30), at(4, 1));
        show({FakeCalendarStore::make(u"Besprechung"_s, at(1, 14), at(1, 15), Qt::green),
              FakeCalendarStore::make(u"Frühstück"_s, at(0, 9), at(0, 10, 30)),
              FakeCalendarStore::allDay(u"Messe"_s, today, Qt::red), nameless});
        QTRY_COMPARE(texts(u"eventTitle"_s),
                     (QStringList{u"Messe"_s, u"Frühstück"_s, u"Besprechung"_s, u"(ohne Titel)"_s}));
        QCOMPARE(texts(u"dayHeading"_s), (QStringList{u"Montag, 16. November"_s, u"Dienstag, 17. November"_s,
                                                      u"Donnerstag, 19. November"_s}));
        QCOMPARE(texts(u"eventTime"_s),
                 (QStringList{u"Ganztägig"_s, u"09:00 – 10:30"_s, u"14:00 – 15:00"_s, u"23:30 – 01:00"_s}));
        QCOMPARE(m_view->findAll(u"colorBar"_s).first()->property("color").value<QColor>(), QColor(Qt::red));
        QVERIFY(texts(u"statusMessage"_s).isEmpty());
    }

    void saysThatThereIsNothing()
    {
        show({});
        QTRY_COMPARE(texts(u"statusMessage"_s), QStringList{u"Keine Termine in den nächsten 7 Tagen"_s});
        QVERIFY(m_view->findAll(u"accessPrompt"_s).isEmpty());
    }

    void asksForAccessWhenItIsShownAndByTheButton()
    {
        m_store = std::make_unique<FakeCalendarStore>();
        m_store->grants = false;
        m_store->answer->append(FakeCalendarStore::allDay(u"Messe"_s, today));
        showStore();
        QTRY_COMPARE(texts(u"accessMessage"_s),
                     QStringList{u"Kein Kalenderzugriff. In den Systemeinstellungen erlauben."_s});
        m_view->window().hide();
        m_view->window().show();
        QTRY_COMPARE(m_store->accessRequests, 2);
        QTRY_VERIFY(!m_module->service()->loading());
        m_store->grants = true;
        m_view->click(m_view->find(u"accessButton"_s));
        QTRY_COMPARE(texts(u"eventTitle"_s), QStringList{u"Messe"_s});
        QVERIFY(m_view->findAll(u"accessPrompt"_s).isEmpty());
        QCOMPARE(m_store->accessRequests, 3);
    }

    void loadsAgainByTheButtonBesideTheMessage()
    {
        show({FakeCalendarStore::allDay(u"Messe"_s, today)});
        QVERIFY(m_view->findAll(u"reloadButton"_s).isEmpty());
        const auto messe = m_store->answer;
        m_store->answer.reset();
        m_store->reason = u"Der Kalenderdienst antwortet nicht."_s;
        m_module->service()->reload();
        QTRY_COMPARE(texts(u"statusMessage"_s),
                     QStringList{u"Der Kalenderdienst antwortet nicht. Konnte Termine nicht laden; hier "
                                 "steht der letzte Stand."_s});
        QTRY_VERIFY(!m_module->service()->loading());
        m_store->answer = messe;
        m_store->holds = true;
        const int requests = m_store->accessRequests;
        m_view->click(m_view->find(u"reloadButton"_s));
        m_view->click(m_view->find(u"reloadButton"_s));
        // One click is enough while nobody has answered.
        QCOMPARE(m_store->accessRequests, requests + 1);
        m_store->release(0);
        m_store->release(0);
        QTRY_VERIFY(m_view->findAll(u"reloadButton"_s).isEmpty());
        QTRY_COMPARE(texts(u"eventTitle"_s), QStringList{u"Messe"_s});
    }

    void showsTheDetailsOfAnEvent()
    {
        QDesktopServices::setUrlHandler(u"https"_s, this, "noteUrl");
        CalendarEvent meeting = FakeCalendarStore::make(u"Runde"_s, at(0, 9), at(0, 10, 30), Qt::green);
        meeting.details = std::make_shared<EventDetails>(
            EventDetails{u"Raum 5"_s,
                         u"Bitte pünktlich.\nhttps://example.org/plan"_s,
                         {u"Mira (lädt ein)"_s, u"Jürgen (zugesagt)"_s},
                         {QUrl(u"https://meet.example.org/x?y=1"_s), QUrl(u"https://example.org/plan"_s)},
                         1});
        show({meeting, FakeCalendarStore::make(u"Kino"_s, at(1, 20), at(2, 1))});
        QTRY_COMPARE(texts(u"eventTitle"_s), (QStringList{u"Runde"_s, u"Kino"_s}));
        m_view->click(m_view->findAll(u"eventRow"_s).first());
        QTRY_COMPARE(texts(u"cardTitle"_s), QStringList{u"Runde"_s});
        QCOMPARE(texts(u"cardWhen"_s), QStringList{u"Montag, 16. November, 09:00 – 10:30"_s});
        QCOMPARE(texts(u"cardCalendar"_s), QStringList{u"Privat"_s});
        QCOMPARE(m_view->find(u"cardColor"_s)->property("color").value<QColor>(), QColor(Qt::green));
        QCOMPARE(texts(u"cardPlace"_s), QStringList{u"Raum 5"_s});
        QCOMPARE(texts(u"cardAttendees"_s), QStringList{u"Mira (lädt ein)\nJürgen (zugesagt)"_s});
        QCOMPARE(texts(u"cardDescription"_s), QStringList{meeting.details->description});
        QCOMPARE(texts(u"eventLink"_s),
                 (QStringList{u"Teilnehmen: meet.example.org/x?y=1"_s, u"example.org/plan"_s}));
        QVERIFY(QSignalSpy(&m_view->window(), &QQuickWindow::frameSwapped).wait());
        m_view->click(m_view->findAll(u"eventLink"_s).first());
        QTRY_COMPARE(m_opened, QList{meeting.details->links.first()});
        // What changes meanwhile is seen.
        m_store->answer->first().title = u"Große Runde"_s;
        m_module->service()->reload();
        QTRY_COMPARE(texts(u"cardTitle"_s), QStringList{u"Große Runde"_s});
        m_view->press(Qt::Key_Escape);
        QTRY_VERIFY(texts(u"cardTitle"_s).isEmpty());
        QDesktopServices::unsetUrlHandler(u"https"_s);
    }

    void opensDetailsWithTheKeyboard()
    {
        show({FakeCalendarStore::allDay(u"Messe"_s, today),
              FakeCalendarStore::make(u"Kino"_s, at(1, 20), at(2, 1))});
        QTRY_COMPARE(texts(u"eventTitle"_s).size(), 2);
        const auto focused = [this] { return m_view->window().activeFocusItem(); };
        for (int press = 0; press < 5 && focused()->objectName() != u"eventRow"_s; ++press)
            m_view->press(Qt::Key_Tab);
        QCOMPARE(focused()->objectName(), u"eventRow"_s);
        m_view->press(Qt::Key_Down);
        m_view->press(Qt::Key_Return);
        QTRY_COMPARE(texts(u"cardTitle"_s), QStringList{u"Kino"_s});
        QCOMPARE(texts(u"cardWhen"_s),
                 QStringList{u"Dienstag, 17. November, 20:00 – Mittwoch, 18. November, 01:00"_s});
        QVERIFY(texts(u"cardPlace"_s).isEmpty());
        m_view->press(Qt::Key_Escape);
        QTRY_VERIFY(texts(u"cardTitle"_s).isEmpty());
        QTRY_COMPARE(focused()->objectName(), u"eventRow"_s);
        QCOMPARE(focused()->property("title").toString(), u"Kino"_s);
        QVERIFY(focused()->property("visualFocus").toBool());
        // An event that goes takes its card along.
        m_view->press(Qt::Key_Up);
        m_view->press(Qt::Key_Return);
        QTRY_COMPARE(texts(u"cardWhen"_s), QStringList{u"Montag, 16. November, ganztägig"_s});
        m_store->answer->removeFirst();
        m_module->service()->reload();
        QTRY_VERIFY(texts(u"cardTitle"_s).isEmpty());
    }

    void addsAWholeDayToAnotherCalendar()
    {
        m_store = std::make_unique<FakeCalendarStore>();
        m_store->calendars = {{u"a"_s, u"Privat"_s, {}}, {u"b"_s, u"Arbeit"_s, {}}};
        showStore();
        draft().setStart(at(2, 8, 15));
        openForm();
        m_view->type(u"Messe"_s);
        QTRY_COMPARE(m_view->find(u"calendarPicker"_s)->property("displayText").toString(), u"Privat"_s);
        m_view->click(m_view->find(u"allDayBox"_s));
        QTRY_COMPARE(texts(u"dateTimeInput"_s), QStringList{u"18.11.2026"_s});
        QVERIFY(m_view->findAll(u"durationPicker"_s).isEmpty());
        m_view->click(m_view->find(u"calendarPicker"_s));
        QTRY_VERIFY(!m_view->findAll(u"calendar-1"_s).isEmpty());
        QVERIFY(QSignalSpy(&m_view->window(), &QQuickWindow::frameSwapped).wait());
        m_view->click(m_view->findAll(u"calendar-1"_s).first());
        typeStart(u"24.12."_s);
        m_view->click(m_view->find(u"addButton"_s));
        QTRY_COMPARE(m_store->saved.size(), 1);
        const NewCalendarEvent &saved = m_store->saved.first();
        QVERIFY(saved.allDay);
        QCOMPARE(saved.start, QDate(2026, 12, 24).startOfDay());
        QCOMPARE(saved.end, QDate(2026, 12, 25).startOfDay());
        QCOMPARE(saved.calendar, u"b"_s);
    }

    void addsAnEventWithTheKeyboardAlone()
    {
        show({});
        draft().setStart(at(0, 8, 15));
        while (m_view->window().activeFocusItem()->objectName() != u"formToggle"_s)
            m_view->press(Qt::Key_Tab);
        m_view->press(Qt::Key_Space);
        QTRY_COMPARE(m_view->window().activeFocusItem()->objectName(), u"titleField"_s);
        m_view->type(u" Zahnarzt"_s);
        m_view->press(Qt::Key_Tab);
        QCOMPARE(m_view->window().activeFocusItem()->objectName(), u"dateTimeInput"_s);
        m_view->press(Qt::Key_Home);
        m_view->press(Qt::Key_Up);
        QCOMPARE(start(), u"17.11.2026, 08:15"_s);
        m_view->press(Qt::Key_End);
        m_view->press(Qt::Key_Down);
        QCOMPARE(start(), u"17.11.2026, 08:14"_s);
        m_view->press(Qt::Key_Tab);
        QCOMPARE(m_view->window().activeFocusItem()->objectName(), u"monthButton"_s);
        m_view->press(Qt::Key_Tab);
        QCOMPARE(m_view->window().activeFocusItem()->objectName(), u"allDayBox"_s);
        m_view->press(Qt::Key_Tab);
        QCOMPARE(m_view->window().activeFocusItem()->objectName(), u"durationPicker"_s);
        m_view->press(Qt::Key_Down);
        m_view->press(Qt::Key_Tab);
        QCOMPARE(m_view->window().activeFocusItem()->objectName(), u"addButton"_s);
        m_view->press(Qt::Key_Space);

        QTRY_COMPARE(texts(u"eventTitle"_s), QStringList{u"Zahnarzt"_s});
        QCOMPARE(m_store->saved.size(), 1);
        QCOMPARE(m_store->saved.first().start, at(1, 8, 14));
        QCOMPARE(m_store->saved.first().end, at(1, 9, 44));
        QVERIFY(!draft().isOpen());
        openForm();
        QCOMPARE(texts(u"titleField"_s), QStringList{QString()});
        QCOMPARE(start(), u"17.11.2026, 08:14"_s);
        QCOMPARE(draft().durationMinutes(), 90);
    }

    void keepsTheFormWhenAnEventIsNotSaved()
    {
        show({});
        m_store->saves = false;
        m_store->reason = u"Kein freier Speicherplatz."_s;
        openForm();
        m_view->type(u"Zahnarzt"_s);
        m_view->press(Qt::Key_Return);
        QTRY_COMPARE(texts(u"statusMessage"_s),
                     QStringList{u"Kein freier Speicherplatz. Konnte Termin nicht speichern."_s});
        QCOMPARE(texts(u"addProblem"_s), QStringList{u"Kein freier Speicherplatz."_s});
        QVERIFY(draft().isOpen());
        QCOMPARE(texts(u"titleField"_s), QStringList{u"Zahnarzt"_s});
        m_view->type(u"!"_s);
        QVERIFY(texts(u"addProblem"_s).isEmpty());
    }

    void takesATypedStartWhateverIsClickedNext_data()
    {
        QTest::addColumn<QStringList>("clicks");
        QTest::newRow("the button at once") << QStringList{u"addButton"_s};
        QTest::newRow("a duration first")
            << QStringList{u"durationPicker"_s, u"duration-4"_s, u"addButton"_s};
        QTest::newRow("another day first") << QStringList{u"monthButton"_s, u"monthDay"_s, u"addButton"_s};
        QTest::newRow("the form is closed and opened")
            << QStringList{u"formToggle"_s, u"formToggle"_s, u"addButton"_s};
    }

    void takesATypedStartWhateverIsClickedNext()
    {
        QFETCH(QStringList, clicks);
        show({});
        openForm();
        m_view->type(u"Theater"_s);
        typeStart(u"24.12. 18:00"_s);
        for (const QString &name : clicks) {
            QTRY_VERIFY(!m_view->findAll(name).isEmpty());
            QTRY_COMPARE(m_view->find(u"addForm"_s)->parentItem()->property("progress").toReal(),
                         draft().isOpen() ? 1.0 : 0.0);
            m_view->click(m_view->findAll(name).first());
            // A list takes clicks from its first frame on.
            if (name == u"durationPicker"_s)
                QVERIFY(QSignalSpy(&m_view->window(), &QQuickWindow::frameSwapped).wait());
        }
        QTRY_COMPARE(m_store->saved.size(), 1);
        const bool isOtherDay = clicks.contains(u"monthDay"_s);
        QCOMPARE(m_store->saved.first().title, u"Theater"_s);
        QCOMPARE(m_store->saved.first().start,
                 QDateTime(QDate(2026, isOtherDay ? 11 : 12, isOtherDay ? 30 : 24), QTime(18, 0)));
    }

    void keepsAndMarksAStartThatIsNotUnderstood()
    {
        show({});
        draft().setStart(at(0, 8, 15));
        openForm();
        m_view->type(u"Theater"_s);
        typeStart(u"bald"_s);
        QVERIFY(texts(u"startProblem"_s).isEmpty());
        m_view->click(m_view->find(u"addButton"_s));
        const QString problem = u"„bald“ ist kein Tag und keine Uhrzeit."_s;
        QTRY_COMPARE(texts(u"startProblem"_s), QStringList{problem});
        QQuickItem *field = m_view->find(u"dateTimeInput"_s);
        QCOMPARE(QAccessible::queryAccessibleInterface(field)->text(QAccessible::Description), problem);
        QQuickItem *frame = m_view->find(u"startField"_s);
        QCOMPARE(QQmlProperty::read(frame, u"border.color"_s).value<QColor>(), QColor(0xff, 0xb3, 0xb3));
        m_view->press(Qt::Key_Tab);
        QCOMPARE(texts(u"dateTimeInput"_s), QStringList{u"bald"_s});
        QCOMPARE(texts(u"titleField"_s), QStringList{u"Theater"_s});
        QVERIFY(m_store->saved.isEmpty());

        // The mark goes with the letter that makes it a time.
        typeStart(u"morgen 1"_s);
        QVERIFY(texts(u"startProblem"_s).isEmpty());
        m_view->type(u"8:00"_s);
        m_view->press(Qt::Key_Return);
        QCOMPARE(texts(u"dateTimeInput"_s), QStringList{u"17.11.2026, 18:00"_s});
        m_view->click(m_view->find(u"addButton"_s));
        QTRY_COMPARE(m_store->saved.size(), 1);
        QCOMPARE(m_store->saved.first().start, at(1, 18));
    }

    void keepsWhatIsTypedWhileAnEventIsSaved()
    {
        show({});
        openForm();
        m_store->holds = true;
        m_view->type(u"Theater"_s);
        m_view->press(Qt::Key_Return);
        m_view->type(u"karten"_s);
        m_view->press(Qt::Key_Return);
        m_store->release(0);
        QVERIFY(draft().isOpen());
        QCOMPARE(texts(u"titleField"_s), QStringList{u"Theaterkarten"_s});
        QCOMPARE(m_store->saved.size(), 1);
    }

    void choosesADayFromTheMonth()
    {
        show({});
        draft().setStart(QDateTime(QDate(2026, 12, 31), QTime(8, 15)));
        openForm();
        m_view->click(m_view->find(u"monthButton"_s));
        QTRY_COMPARE(texts(u"monthTitle"_s), QStringList{u"Dezember 2026"_s});
        const auto days = texts(u"monthDay"_s);
        QCOMPARE(days.size(), 42);
        QCOMPARE(days.first(), u"30"_s); // 2026-11-30 is a Monday.
        m_view->press(Qt::Key_PageUp);
        QCOMPARE(texts(u"monthTitle"_s), QStringList{u"November 2026"_s});
        m_view->press(Qt::Key_Left);
        m_view->press(Qt::Key_Up);
        m_view->press(Qt::Key_Return);
        QTRY_VERIFY(texts(u"monthTitle"_s).isEmpty());
        QCOMPARE(start(), u"22.11.2026, 08:15"_s);

        m_view->click(m_view->find(u"monthButton"_s));
        QTRY_COMPARE(texts(u"monthTitle"_s), QStringList{u"November 2026"_s});
        m_view->click(m_view->find(u"nextMonth"_s));
        QCOMPARE(texts(u"monthTitle"_s), QStringList{u"Dezember 2026"_s});
        m_view->click(m_view->findAll(u"monthDay"_s).at(1));
        QTRY_COMPARE(start(), u"01.12.2026, 08:15"_s);
        QTRY_VERIFY(texts(u"monthTitle"_s).isEmpty());
        m_view->click(m_view->find(u"monthButton"_s));
        QTRY_VERIFY(!texts(u"monthTitle"_s).isEmpty());
        m_view->press(Qt::Key_Escape);
        QTRY_VERIFY(texts(u"monthTitle"_s).isEmpty());
        QCOMPARE(start(), u"01.12.2026, 08:15"_s);
    }

    void keepsItsPlaceWhenEventsComeAndGo()
    {
        QList<CalendarEvent> events;
        for (int number = 0; number < 500; ++number)
            events.append(FakeCalendarStore::make(QString::number(number), at(number / 100, 9, number % 60),
                                                  at(number / 100, 10, number % 60)));
        show(events, 300);
        QTRY_VERIFY(texts(u"eventTitle"_s).size() > 3);
        QQuickItem *agenda = m_view->find(u"agenda"_s);
        agenda->setProperty("contentY", 5000);
        QVERIFY(QTest::qWaitFor([&] { return !texts(u"eventTitle"_s).isEmpty(); }));
        const auto places = [&] {
            QMap<QString, double> found;
            for (const QQuickItem *title : m_view->findAll(u"eventTitle"_s)) {
                const double y = title->mapToScene({}).y();
                if (y > 0 && y < 300)
                    found.insert(title->property("text").toString(), y);
            }
            return found;
        };
        const auto before = places();
        QVERIFY(before.size() > 3);
        m_store->answer->prepend(FakeCalendarStore::allDay(u"neu"_s, today));
        m_store->answer->removeAt(20);
        const size_t fetches = m_store->fetches.size();
        Q_EMIT m_wake.woke();
        QTRY_COMPARE(m_store->fetches.size(), fetches + 1);
        QTRY_COMPARE(m_module->service()->events().first().title, u"neu"_s);
        QTest::qWait(50);
        QCOMPARE(places(), before);
    }
};

RANDBLATT_TEST_MAIN(CalendarViewTest, QGuiApplication)
#include "tst_calendarview.moc"
