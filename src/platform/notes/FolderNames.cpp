#include "platform/notes/FolderNames.h"

#include <QByteArray>
#include <QStringEncoder>

namespace randblatt::foldernames {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestName = 255;

bool isPlain(char byte)
{
    const auto code = static_cast<unsigned char>(byte);
    return code >= 0x20 && code != 0x7f && byte != '/' && byte != '%' && byte != '\\';
}

} // namespace

QString directoryName(const QString &folderName)
{
    QStringEncoder encoder(QStringEncoder::Utf8);
    const QByteArray utf8 = encoder(folderName);
    if (utf8.isEmpty() || encoder.hasError())
        return {};
    QByteArray encoded;
    for (qsizetype i = 0; i < utf8.size(); ++i) {
        const char byte = utf8.at(i);
        // A point at the front hides a directory; a blank or point at the end is lost on some file systems.
        const bool isEdge = (i == 0 && byte == '.') || (i == utf8.size() - 1 && (byte == '.' || byte == ' '));
        if (isPlain(byte) && !isEdge)
            encoded += byte;
        else
            encoded += '%' + QByteArray(1, byte).toHex();
    }
    return encoded.size() <= longestName ? QString::fromUtf8(encoded) : QString();
}

QString folderName(const QString &directory)
{
    const QString decoded = QString::fromUtf8(QByteArray::fromPercentEncoding(directory.toUtf8()));
    return directoryName(decoded) == directory ? decoded : directory;
}

} // namespace randblatt::foldernames
