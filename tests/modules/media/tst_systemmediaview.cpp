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
    QList<MediaKey> keys;

    void postMediaKey(MediaKey key) override { keys.append(key); }
};

} // namespace

class TestSystemMediaView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachButtonPostsItsKey()
    {
        Preferences preferences(Preferences::inMemory());
        FakeLoginItem loginItem;
        AppSettings settings(preferences, loginItem);
        RecordingSink sink;
        ScriptedSession session;
        SpotifyModule module({settings, preferences, sink, session, ServiceHosts(), QString()});
        CardView view(module);

        const QList<std::pair<QString, MediaKey>> buttons{{u"previousButton"_s, MediaKey::previous},
                                                          {u"playPauseButton"_s, MediaKey::play},
                                                          {u"nextButton"_s, MediaKey::next}};
        for (const auto &[name, key] : buttons) {
            sink.keys.clear();
            view.click(view.find(name));
            QCOMPARE(sink.keys, QList{key});
            sink.keys.clear();
            view.find(name)->forceActiveFocus(Qt::TabFocusReason);
            view.press(Qt::Key_Space);
            QCOMPARE(sink.keys, QList{key});
        }
    }
};

RANDBLATT_TEST_MAIN(TestSystemMediaView, QGuiApplication)
#include "tst_systemmediaview.moc"
