#include "modules/media/SpotifyWebPlayer.h"

#include <QCoreApplication>

using namespace randblatt;

// An application with a web player, to be killed: webplayer-parent HELPER.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    SpotifyWebPlayer player(QCoreApplication::arguments().at(1), QUrl(), {});
    player.start();
    return QCoreApplication::exec();
}
