#include "modules/notes/EditedText.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

// What is kept for undoing, in characters of all steps together; the latest step is always kept.
constexpr qsizetype mostRemembered = 8 * 1000 * 1000;
constexpr std::size_t mostSteps = 5000;
// What a key or an input method puts in at once; more was pasted.
constexpr qsizetype longestTyped = 8;

bool isUnwanted(QChar character)
{
    return (character.unicode() < 0x20 && character != u'\n' && character != u'\t') || character == u'\x7f';
}

} // namespace

QString EditedText::withLineFeeds(QString text)
{
    if (text.contains(QChar::CarriageReturn)) {
        text.replace("\r\n"_L1, "\n"_L1);
        text.replace(QChar::CarriageReturn, QChar::LineFeed);
    }
    return text;
}

QString EditedText::cleaned(const QString &text)
{
    QString clean = withLineFeeds(text);
    clean.replace(QChar::ParagraphSeparator, QChar::LineFeed);
    clean.replace(QChar::LineSeparator, QChar::LineFeed);
    clean.removeIf(isUnwanted);
    return clean;
}

EditedText::Change EditedText::difference(QStringView from, QStringView to)
{
    const auto begins = std::mismatch(from.cbegin(), from.cend(), to.cbegin(), to.cend());
    const auto start = begins.first - from.cbegin();
    const auto ends = std::mismatch(from.crbegin(), std::make_reverse_iterator(begins.first), to.crbegin(),
                                    std::make_reverse_iterator(begins.second));
    const auto tail = ends.first - from.crbegin();
    return {start, from.size() - tail - start, to.sliced(start, to.size() - tail - start).toString()};
}

void EditedText::load(const QString &text)
{
    const bool couldUndo = canUndo();
    m_text = withLineFeeds(text);
    m_undo.clear();
    m_redo.clear();
    m_cursor = std::min(m_cursor, m_text.size());
    if (couldUndo)
        Q_EMIT canUndoChanged();
    Q_EMIT loaded();
}

void EditedText::take(const QString &text)
{
    // What comes back of the user's own is compared as it is, at every key.
    if (text == m_text)
        return;
    const Change change = difference(m_text, withLineFeeds(text));
    if (change.length == 0 && change.inserted.isEmpty())
        return;
    m_isOpen = false;
    remember({change.at, m_text.sliced(change.at, change.length), change.inserted});
    m_isOpen = false;
    apply(change);
}

void EditedText::stepBack(const QString &text)
{
    const Change change = difference(m_text, withLineFeeds(text));
    const bool couldUndo = canUndo();
    m_undo.clear();
    m_redo.clear();
    m_redo.push_back({change.at, change.inserted, m_text.sliced(change.at, change.length)});
    if (couldUndo)
        Q_EMIT canUndoChanged();
    apply(change);
}

void EditedText::replace(const Change &change)
{
    if (change.length == 0 && change.inserted.isEmpty())
        return;
    remember({change.at, m_text.sliced(change.at, change.length), change.inserted});
    apply(change);
    Q_EMIT edited(m_text);
}

void EditedText::append(const QString &lines)
{
    const bool beginsLine = m_text.isEmpty() || m_text.endsWith(QChar::LineFeed);
    replace({m_text.size(), 0, beginsLine ? lines : QChar(QChar::LineFeed) + lines});
}

std::optional<EditedText::Change> EditedText::undo()
{
    return turn(m_undo, m_redo);
}

std::optional<EditedText::Change> EditedText::redo()
{
    return turn(m_redo, m_undo);
}

std::optional<EditedText::Change> EditedText::turn(std::vector<Step> &from, std::vector<Step> &to)
{
    if (from.empty())
        return std::nullopt;
    const bool couldUndo = canUndo();
    Step step = std::move(from.back());
    from.pop_back();
    // A step that is undone is one in the other direction, and the other way round.
    std::swap(step.removed, step.inserted);
    const Change change{step.at, step.removed.size(), step.inserted};
    to.push_back(std::move(step));
    m_isOpen = false;
    apply(change);
    if (canUndo() != couldUndo)
        Q_EMIT canUndoChanged();
    Q_EMIT edited(m_text);
    return change;
}

void EditedText::apply(const Change &change)
{
    m_text.replace(change.at, change.length, change.inserted);
    Q_EMIT replaced(change);
}

void EditedText::remember(Step step)
{
    m_redo.clear();
    if (continues(step)) {
        Step &last = m_undo.back();
        last.inserted += step.inserted;
        last.removed = step.at < last.at ? step.removed + last.removed : last.removed + step.removed;
        last.at = std::min(last.at, step.at);
        return;
    }
    m_isOpen = step.inserted.size() <= longestTyped && step.removed.size() <= longestTyped;
    m_undo.push_back(std::move(step));
    qsizetype kept = 0;
    const auto tooOld = std::find_if(m_undo.crbegin(), m_undo.crend(), [&](const Step &old) {
        kept += old.removed.size() + old.inserted.size();
        return kept > mostRemembered;
    });
    const auto fits = std::min<std::ptrdiff_t>(tooOld - m_undo.crbegin(), mostSteps);
    m_undo.erase(m_undo.begin(), m_undo.end() - std::max<std::ptrdiff_t>(fits, 1));
    if (m_undo.size() == 1)
        Q_EMIT canUndoChanged();
}

bool EditedText::continues(const Step &step) const
{
    if (!m_isOpen || m_undo.empty())
        return false;
    const Step &last = m_undo.back();
    if (step.removed.isEmpty()) {
        const bool beginsWord =
            !last.inserted.isEmpty() && last.inserted.back().isSpace() && !step.inserted.front().isSpace();
        return !last.inserted.isEmpty() && step.at == last.at + last.inserted.size() && !beginsWord &&
               step.inserted.size() <= longestTyped && !step.inserted.contains(u'\n');
    }
    return step.inserted.isEmpty() && last.inserted.isEmpty() && step.removed.size() <= longestTyped &&
           (step.at == last.at || step.at + step.removed.size() == last.at);
}

} // namespace randblatt
