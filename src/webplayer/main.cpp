#include "webplayer/PlayerPage.h"
#include "webplayer/Protocol.h"
#include "webplayer/Sandbox.h"

#include <QGuiApplication>
#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

void send(const QJsonObject &line)
{
    const QByteArray text = protocolLine(line);
    std::fwrite(text.constData(), 1, static_cast<size_t>(text.size()), stdout);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char **argv)
{
    // The page is never shown, so it needs no display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QByteArray flags =
        "--disable-gpu --autoplay-policy=no-user-gesture-required " + qgetenv("QTWEBENGINE_CHROMIUM_FLAGS");
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", flags);
    // An application that is gone is noticed by the end of the input.
    std::signal(SIGPIPE, SIG_IGN);
    if (!canConfineEngine()) {
        send({{u"type"_s, u"noSandbox"_s}, {u"isRoot"_s, geteuid() == 0}});
        return EXIT_FAILURE;
    }
    // The engine's media player on the session bus has this name.
    QGuiApplication::setApplicationName(u"Quillbar"_s);
    QGuiApplication::setDesktopFileName(u"com.randblatt.Quillbar"_s);
    const QGuiApplication application(argc, argv);

    PlayerPage page;
    QObject::connect(&page, &PlayerPage::loaded, &page, [] { send({{u"type"_s, u"loaded"_s}}); });
    QObject::connect(&page, &PlayerPage::messagePosted, &page, [](const QJsonValue &body) {
        send({{u"type"_s, u"message"_s}, {u"body"_s, body}});
    });
    QObject::connect(&page, &PlayerPage::protectedAudioChecked, &page, [](bool isAvailable) {
        send({{u"type"_s, u"protectedAudio"_s}, {u"available"_s, isAvailable}});
    });
    QObject::connect(&page, &PlayerPage::answered, &page, [] { send({{u"type"_s, u"pong"_s}}); });
    // The application starts the helper anew.
    QObject::connect(&page, &PlayerPage::died, &page, [] { std::_Exit(EXIT_FAILURE); });

    LineReader reader;
    const auto receive = [&page](const QJsonObject &line) {
        const QString type = line.value("type"_L1).toString();
        if (type == "load"_L1)
            page.load(line.value("sdk"_L1).toString());
        else if (type == "token"_L1)
            page.pushToken(line.value("token"_L1).toString());
        else if (type == "ping"_L1)
            page.ask();
    };
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &page, [&] {
        std::array<char, 4096> data{};
        const ssize_t size = read(STDIN_FILENO, data.data(), data.size());
        if (size > 0)
            reader.add(QByteArray(data.data(), size), receive);
        else
            // There is nothing to be kept, and taking the engine down in order may hang.
            std::_Exit(EXIT_SUCCESS);
    });
    return QGuiApplication::exec();
}
