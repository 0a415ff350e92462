#pragma once

#include <QByteArray>

#include <array>
#include <cstdio>
#include <cstdlib>

namespace randblatt {

// Parsers of what others wrote. Each takes any bytes; what they promise of any bytes is said with require().

void fuzzTasks(const QByteArray &bytes);
void fuzzThemes(const QByteArray &bytes);
/// A store's file, or type and value of a row of one.
void fuzzRows(const QByteArray &bytes);
void fuzzAnswers(const QByteArray &bytes);
void fuzzHelperLines(const QByteArray &bytes);
void fuzzRedirects(const QByteArray &bytes);
/// A file in the place of the autostart entry, and a program's path in one.
void fuzzDesktopEntries(const QByteArray &bytes);
/// What others call over the bus, and what players say of themselves.
void fuzzBus(const QByteArray &bytes);
void fuzzOsascript(const QByteArray &bytes);
void fuzzAppleScript(const QByteArray &bytes);
void fuzzNoteHtml(const QByteArray &bytes);
void fuzzCalendar(const QByteArray &bytes);

struct FuzzTarget
{
    const char *name;
    void (*run)(const QByteArray &bytes);
};

/// A target's name is that of its folder in corpus/.
inline constexpr std::array fuzzTargets{
    FuzzTarget{"tasks", fuzzTasks},
    FuzzTarget{"themes", fuzzThemes},
    FuzzTarget{"rows", fuzzRows},
    FuzzTarget{"answers", fuzzAnswers},
    FuzzTarget{"helper-lines", fuzzHelperLines},
    FuzzTarget{"redirects", fuzzRedirects},
    FuzzTarget{"desktop-entries", fuzzDesktopEntries},
    FuzzTarget{"bus", fuzzBus},
    FuzzTarget{"osascript", fuzzOsascript},
    FuzzTarget{"applescript", fuzzAppleScript},
    FuzzTarget{"note-html", fuzzNoteHtml},
    FuzzTarget{"calendar", fuzzCalendar},
};

/// Ends the process where a promise does not hold.
inline void require(bool holds, const char *promise)
{
    if (holds)
        return;
    std::fprintf(stderr, "Gebrochen: %s\n", promise);
    std::abort();
}

} // namespace randblatt
