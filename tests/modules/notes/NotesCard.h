#pragma once

#include "modules/notes/NotesModule.h"
#include "platform/notes/InterpreterScriptRunner.h"
#include "settings/AppSettings.h"
#include "settings/Preferences.h"
#include "support/CardView.h"
#include "support/Fakes.h"

#include <QSemaphore>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>

namespace randblatt {

/// The real facility on a library of its own; it counts scripts, lets them wait, and fails those that a test
/// wants to fail.
class WatchedRunner : public ScriptRunner
{
public:
    explicit WatchedRunner(const QString &library)
        : m_runner(NotesLibrary(library))
    {
    }

    ScriptOutcome run(const QString &source) override
    {
        ++scripts;
        if (source.contains(u"set body"))
            ++saves;
        if (source.contains(u"make new note"))
            ++creations;
        if (waits)
            gate.acquire();
        if (!failing.isEmpty() && source.contains(failing))
            return {.text = {}, .failure = ScriptFailure{QStringLiteral("Kein Platz"), -1}};
        return m_runner.run(source);
    }

    std::atomic_int scripts = 0;
    std::atomic_int saves = 0;
    std::atomic_int creations = 0;
    std::atomic_bool waits = false;
    QSemaphore gate;
    /// To be set while no script runs.
    QString failing;

private:
    InterpreterScriptRunner m_runner;
};

/// The notes card in a window, over a library and settings of its own, which outlive the program that shows
/// them.
class NotesCard
{
public:
    QTemporaryDir folder;
    Preferences preferences{Preferences::inMemory()};
    FakeLoginItem loginItem;
    AppSettings settings{preferences, loginItem};
    std::shared_ptr<WatchedRunner> runner = std::make_shared<WatchedRunner>(folder.path());
    std::unique_ptr<NotesModule> module = makeModule();
    NotesService *service = findService();
    std::unique_ptr<CardView> view;

    void show(NotesMode mode, const QSize &size = QSize(392, 320))
    {
        settings.setNotesMode(mode);
        view = std::make_unique<CardView>(*module, size);
    }
    /// As when the panel gets another width.
    void rebuildView()
    {
        view.reset();
        view = std::make_unique<CardView>(*module, QSize(420, 320));
    }
    /// As when the process was killed: nothing had the time to store anything.
    void restart()
    {
        view.reset();
        module = makeModule();
        service = findService();
        view = std::make_unique<CardView>(*module, QSize(392, 320));
    }

    void add(const QString &title, const QString &body = {}) const
    {
        bool done = false;
        service->createNote(title, body, NotesService::WriteCompletion([&](bool) { done = true; }));
        QTRY_VERIFY(done);
    }
    /// As another program does it.
    void write(const QString &name, const QString &body) const
    {
        bool done = false;
        service->saveBody(id(name), name, body, NotesService::WriteCompletion([&](bool) { done = true; }));
        QTRY_VERIFY(done);
    }

    [[nodiscard]] QQuickItem *first(const QString &name) const { return view->seen(name).value(0); }
    void click(const QString &name) const
    {
        QTRY_VERIFY2(first(name) != nullptr, qPrintable(name));
        view->click(first(name));
    }
    [[nodiscard]] QStringList rows() const { return view->texts(QStringLiteral("rowName")); }
    [[nodiscard]] QString heading() const { return view->texts(QStringLiteral("heading")).value(0); }
    /// The text area of the editor of that name; null while it is not seen.
    [[nodiscard]] QQuickItem *area(const QString &editor) const
    {
        for (QQuickItem *item : view->seen(QStringLiteral("textArea"))) {
            for (const QQuickItem *up = item; up != nullptr; up = up->parentItem()) {
                if (up->objectName() == editor)
                    return item;
            }
        }
        return nullptr;
    }
    [[nodiscard]] QString text(const QString &editor) const
    {
        const QQuickItem *item = area(editor);
        return item == nullptr ? QString() : item->property("text").toString();
    }
    void open(int row) const
    {
        QTRY_VERIFY(view->seen(QStringLiteral("noteRow")).size() > row);
        view->click(view->seen(QStringLiteral("noteRow")).at(row));
        QTRY_VERIFY(area(QStringLiteral("bodyEditor")) != nullptr);
    }
    void open(const QString &name) const
    {
        QTRY_VERIFY(rows().contains(name));
        open(static_cast<int>(rows().indexOf(name)));
    }
    /// Types at the end of the editor of that name.
    void typeInto(const QString &editor, const QString &text) const
    {
        QTRY_VERIFY(area(editor) != nullptr);
        view->click(area(editor));
        view->press(Qt::Key_End, Qt::ControlModifier);
        view->type(text);
    }

    [[nodiscard]] QString id(const QString &name) const
    {
        for (const NoteSummary &note : service->notes()) {
            if (note.name == name)
                return note.id;
        }
        return {};
    }
    /// What the library says the note with that name holds.
    [[nodiscard]] QString stored(const QString &name) const
    {
        QString text;
        bool done = false;
        service->loadBody(id(name), NotesService::BodyCompletion([&](const QString &body, bool) {
                              text = body;
                              done = true;
                          }));
        [&] { QTRY_VERIFY(done); }();
        return text;
    }

private:
    std::unique_ptr<NotesModule> makeModule()
    {
        return std::make_unique<NotesModule>(settings, preferences, runner);
    }
    [[nodiscard]] NotesService *findService() const
    {
        return module->makeView().properties.value(QStringLiteral("service")).value<NotesService *>();
    }
};

} // namespace randblatt
