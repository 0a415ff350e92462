#include "modules/media/ScriptedSession.h"
#include "modules/media/SpotifyModule.h"
#include "platform/MediaKeySink.h"
#include "settings/AppSettings.h"
#include "settings/Preferences.h"
#include "support/CardView.h"
#include "support/Fakes.h"
#include "support/TestEnvironment.h"

#include <QGuiApplication>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

class RecordingSink : public MediaKeySink
{
public:
    QList<MediaKeyEvent> events;

    void post(const MediaKeyEvent &event) override { events.append(event); }
};

MediaKeyEvent half(std::int64_t code, std::uint32_t state)
{
    return {.type = 14,
            .location = QPointF(0, 0),
            .modifierFlags = state,
            .timestamp = 0.0,
            .windowNumber = 0,
            .subtype = 8,
            .data1 = code * 65536 + state,
            .data2 = -1};
}

} // namespace

class TestSystemMediaView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachButtonPostsItsKeyDownAndUp()
    {
        Preferences preferences(Preferences::inMemory());
        FakeLoginItem loginItem;
        AppSettings settings(preferences, loginItem);
        RecordingSink sink;
        ScriptedSession session;
        SpotifyModule module({settings, preferences, sink, session, ServiceHosts(), QString()});
        CardView view(module);

        const QList<std::pair<QString, int>> buttons{
            {u"previousButton"_s, 18}, {u"playPauseButton"_s, 16}, {u"nextButton"_s, 17}};
        for (const auto &[name, code] : buttons) {
            sink.events.clear();
            view.click(view.find(name));
            QCOMPARE(sink.events, QList({half(code, 0xa00), half(code, 0xb00)}));
            sink.events.clear();
            view.find(name)->forceActiveFocus(Qt::TabFocusReason);
            view.press(Qt::Key_Space);
            QCOMPARE(sink.events.size(), 2);
        }
    }
};

RANDBLATT_TEST_MAIN(TestSystemMediaView, QGuiApplication)
#include "tst_systemmediaview.moc"
