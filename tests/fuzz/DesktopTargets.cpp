#include "fuzz/Targets.h"
#include "platform/freedesktop/ApplicationAdaptor.h"
#include "platform/freedesktop/DesktopEntry.h"
#include "platform/freedesktop/SingleInstance.h"
#include "platform/freedesktop/XdgAutostartLoginItem.h"
#include "platform/mpris/PlayerChoice.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace randblatt {

using namespace Qt::StringLiterals;

void fuzzDesktopEntries(const QByteArray &bytes)
{
    const QString path = XdgAutostartLoginItem::entryPath();
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    require(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size(), "there is space");
    file.close();
    (void)XdgAutostartLoginItem(u"/usr/bin/quillbar"_s).isRegistered();
    require(file.open(QFile::ReadOnly) && file.readAll() == bytes, "reading changes nothing");
    file.close();

    const QString executable = u'/' + QString::fromUtf8(bytes) + "/quillbar"_L1;
    XdgAutostartLoginItem item(executable);
    require(item.registerItem().has_value() == !fitsDesktopEntry(executable), "what does not fit is refused");
    if (!fitsDesktopEntry(executable))
        return;
    require(item.isRegistered(), "what was registered is");
    require(file.open(QFile::ReadOnly) && file.readAll().count('\n') == 8, "no path makes lines of its own");
}

void fuzzBus(const QByteArray &bytes)
{
    const QList<QByteArray> parts = bytes.split('\n');
    QList<PlayerState> players;
    QStringList uris;
    for (const QByteArray &part : parts) {
        const QString text = QString::fromUtf8(part);
        uris.append(text);
        players.append({.service = text.mid(3),
                        // Those that hang count as silent.
                        .isPlaying = text.startsWith(u'p') && part.mid(2, 1) != "h",
                        .lastPlayed = static_cast<std::uint64_t>(part.mid(1, 1).toUInt()),
                        .isHung = part.mid(2, 1) == "h"});
    }
    const auto chosen = choosePlayer(players, uris.first());
    require(chosen && *chosen >= 0 && *chosen < players.size(), "one of the players is chosen");
    const bool anyAnswers = std::any_of(players.cbegin(), players.cend(),
                                        [](const PlayerState &player) { return !player.isHung; });
    require(!anyAnswers || !players.at(*chosen).isHung, "one that hangs is chosen only if all do");

    static SingleInstance instance{QDBusConnection(u"none"_s)};
    static ApplicationAdaptor *adaptor = new ApplicationAdaptor(&instance);
    adaptor->Open(uris, {{uris.first(), uris}});
    adaptor->ActivateAction(uris.first(), {uris}, {});
}

} // namespace randblatt
