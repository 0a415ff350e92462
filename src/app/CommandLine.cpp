#include "app/CommandLine.h"

namespace randblatt {

using namespace Qt::StringLiterals;

CommandLine CommandLine::read(const QStringList &arguments)
{
    CommandLine line;
    for (const QString &argument : arguments) {
        if (argument == "--version"_L1)
            return {.urls = {}, .answer = u"Quillbar " QUILLBAR_VERSION "\n"_s};
        if (argument == "--help"_L1)
            return {.urls = {},
                    .answer = u"Aufruf: quillbar [ADRESSE]\n\n"
                              "Startet die Seitenleiste oder zeigt die, die schon läuft. Die ADRESSE, "
                              "„randblatt:…“, wird ihr übergeben.\n\n"
                              "  --help     diese Hilfe\n"
                              "  --version  die Version\n\n"
                              "Eingestellt wird alles im Fenster „Einstellungen“.\n"_s};
        const QUrl url(argument);
        if (url.scheme() != "randblatt"_L1)
            return {.urls = {},
                    .answer = u"quillbar: unbekannt: %1 (siehe quillbar --help)\n"_s.arg(argument),
                    .isError = true};
        line.urls.append(url);
    }
    return line;
}

} // namespace randblatt
