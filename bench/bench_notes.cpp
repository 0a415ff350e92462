// The notes library through its scripts: listing 80 of 10,000 notes, reading a note of 1 MB.

#include "modules/notes/NoteScripts.h"
#include "platform/html/HtmlText.h"
#include "platform/notes/InterpreterScriptRunner.h"
#include "platform/notes/NoteDocument.h"

#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

constexpr int noteCount = 10000;
constexpr qsizetype noteSize = 1000 * 1000;

/// A library with many notes in a few folders and one large note of each kind.
class Library
{
public:
    Library()
    {
        for (int i = 0; i < noteCount; ++i) {
            const NoteDocument note{u"Notiz %1"_s.arg(i), u"Zeile 1<br>Zeile 2 von %1"_s.arg(i)};
            write(u"Ordner %1/n%2.html"_s.arg(i % 8).arg(i), note.toFile());
        }
        const QString line = u"Eine Zeile mit etwas Text &amp; mehr, damit sie lang genug wird."_s;
        QString plain;
        QString blocks;
        while (plain.size() < noteSize)
            plain += line + u"<br>"_s;
        while (blocks.size() < noteSize)
            blocks += u"<p>"_s + line + u"</p>\n"_s;
        write(u"Notizen/eigene.html"_s, NoteDocument{u"Eigene"_s, plain}.toFile());
        write(u"Notizen/fremde.html"_s, NoteDocument{u"Fremde"_s, blocks}.toFile());
    }

    [[nodiscard]] NotesLibrary open() const { return NotesLibrary(m_folder.path()); }

private:
    void write(const QString &path, const QByteArray &content) const
    {
        const QString file = m_folder.filePath(path);
        QDir().mkpath(QFileInfo(file).absolutePath());
        QFile out(file);
        if (!out.open(QIODevice::WriteOnly) || out.write(content) != content.size())
            qFatal("Notiz nicht geschrieben");
    }

    QTemporaryDir m_folder;
};

const Library &library()
{
    static const Library instance;
    return instance;
}

void listTheFirstTime(benchmark::State &state)
{
    const QString script = notescripts::listNotes(std::nullopt, 80);
    for (auto _ : state) {
        InterpreterScriptRunner runner(library().open());
        const auto notes = notescripts::notes(runner.run(script).text.value_or(QString()), 80);
        if (notes.size() != 80)
            state.SkipWithError("falsche Liste");
    }
}

void listAgain(benchmark::State &state)
{
    const QString script = notescripts::listNotes(std::nullopt, 80);
    InterpreterScriptRunner runner(library().open());
    (void)runner.run(script);
    for (auto _ : state) {
        const auto notes = notescripts::notes(runner.run(script).text.value_or(QString()), 80);
        if (notes.size() != 80)
            state.SkipWithError("falsche Liste");
    }
}

void readLargeNote(benchmark::State &state, const QString &id)
{
    const QString script = notescripts::readBody(id);
    InterpreterScriptRunner runner(library().open());
    (void)runner.run(script);
    for (auto _ : state) {
        const QString text = htmlToPlainText(runner.run(script).text.value_or(QString()));
        if (text.size() < noteSize / 2)
            state.SkipWithError("falscher Text");
    }
}

void saveLargeNote(benchmark::State &state)
{
    InterpreterScriptRunner runner(library().open());
    const QString text =
        htmlToPlainText(runner.run(notescripts::readBody(u"eigene"_s)).text.value_or(QString()));
    int round = 0;
    for (auto _ : state) {
        const QString script =
            notescripts::setBody(u"eigene"_s, u"Eigene"_s, text + QString::number(++round));
        if (runner.run(script).failure)
            state.SkipWithError("nicht gespeichert");
    }
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    (void)library();
    const auto milliseconds = benchmark::kMillisecond;
    benchmark::RegisterBenchmark("list 80 of 10000 notes, first time", listTheFirstTime)->Unit(milliseconds);
    benchmark::RegisterBenchmark("list 80 of 10000 notes, again", listAgain)->Unit(milliseconds);
    benchmark::RegisterBenchmark("read 1 MB, own text", readLargeNote, u"eigene"_s)->Unit(milliseconds);
    benchmark::RegisterBenchmark("read 1 MB, blocks", readLargeNote, u"fremde"_s)->Unit(milliseconds);
    benchmark::RegisterBenchmark("save 1 MB", saveLargeNote)->Unit(milliseconds);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
