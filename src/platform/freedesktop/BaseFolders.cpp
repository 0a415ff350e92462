#include "platform/freedesktop/BaseFolders.h"

#include <QByteArray>
#include <QDir>
#include <QFile>

namespace randblatt {

void ignoreRelativeBaseFolders()
{
    for (const char *folder :
         {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
        if (QDir::isRelativePath(QFile::decodeName(qgetenv(folder))))
            qunsetenv(folder);
    }
    for (const char *list : {"XDG_DATA_DIRS", "XDG_CONFIG_DIRS"}) {
        if (!qEnvironmentVariableIsSet(list))
            continue;
        QByteArrayList folders = qgetenv(list).split(':');
        folders.removeIf(
            [](const QByteArray &folder) { return QDir::isRelativePath(QFile::decodeName(folder)); });
        if (folders.isEmpty())
            qunsetenv(list);
        else
            qputenv(list, folders.join(':'));
    }
}

} // namespace randblatt
