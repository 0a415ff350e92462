#include "FakePlayer.h"

#include <QCoreApplication>

#include <cstdio>

// A media player as a process of its own, which plays until it is killed: mpris-player ADDRESS.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const randblatt::FakePlayer player(QCoreApplication::arguments().at(1), QStringLiteral("own"),
                                       QStringLiteral("Playing"));
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
