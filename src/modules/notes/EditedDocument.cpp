#include "modules/notes/EditedDocument.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QQuickTextDocument>
#include <QScopedValueRollback>
#include <QTextBlock>
#include <QTextCursor>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// More than a card shows; and what is laid out between two events.
constexpr qsizetype firstSlice = 16'000;
constexpr qsizetype nextSlice = 32'000;

bool endsLine(QChar character)
{
    switch (character.unicode()) {
    case u'\n':
    case QChar::LineSeparator:
    case QChar::ParagraphSeparator:
    // The document takes these two for ends of frames.
    case u'\xfdd0':
    case u'\xfdd1':
        return true;
    default:
        return false;
    }
}

/// Whether the document and the text say the same.
bool same(QChar a, QChar b)
{
    return a == b || (endsLine(a) && endsLine(b));
}

} // namespace

EditedDocument::EditedDocument(QObject *parent)
    : QObject(parent)
{
    m_more.setInterval(0ms);
    connect(&m_more, &QTimer::timeout, this, [this] { showMore(nextSlice); });
}

void EditedDocument::setEditor(QQuickItem *editor)
{
    if (m_editor == editor)
        return;
    if (m_editor)
        m_editor->removeEventFilter(this);
    if (m_document)
        m_document->disconnect(this);
    m_editor = editor;
    m_document = nullptr;
    if (m_editor) {
        m_editor->installEventFilter(this);
        // Else it draws all of the text, as it can't see how long that is.
        m_editor->setFlag(QQuickItem::ItemObservesViewport);
        m_document = m_editor->property("textDocument").value<QQuickTextDocument *>()->textDocument();
        connect(m_document, &QTextDocument::contentsChange, this, &EditedDocument::noteChange);
        connect(m_document, &QTextDocument::contentsChanged, this, &EditedDocument::follow);
    }
    show();
    Q_EMIT editorChanged();
}

void EditedDocument::setText(EditedText *text)
{
    if (m_text == text)
        return;
    if (m_text)
        m_text->disconnect(this);
    m_text = text;
    if (m_text) {
        connect(m_text, &EditedText::loaded, this, &EditedDocument::show);
        connect(m_text, &EditedText::replaced, this, &EditedDocument::followText);
    }
    show();
    Q_EMIT textChanged();
}

void EditedDocument::show()
{
    if (!m_document || !m_text)
        return;
    const qsizetype cursor = m_text->cursor();
    m_changed.reset();
    {
        const QScopedValueRollback applying(m_isApplying, true);
        // What can be undone is the text's.
        m_document->setUndoRedoEnabled(false);
        QTextCursor all(m_document);
        all.select(QTextCursor::Document);
        all.removeSelectedText();
    }
    m_breaks.clear();
    m_length = 0;
    m_shown = 0;
    m_more.start();
    showMore(std::max(cursor, qsizetype(0)) + firstSlice);
    moveCursor(cursor);
}

void EditedDocument::showMore(qsizetype least)
{
    const QStringView rest =
        m_document && m_text ? QStringView(m_text->text()).sliced(m_shown) : QStringView();
    // A slice ends with a line, or within one that is longer.
    qsizetype end = std::min(least, rest.size());
    if (end < rest.size()) {
        const qsizetype lineEnd = rest.indexOf(u'\n', end - 1);
        end = lineEnd < 0 ? rest.size() : lineEnd + 1;
        if (end > least + longestPiece)
            end = pieceEnd(rest, least, rest.size());
    }
    if (end == rest.size())
        m_more.stop();
    if (end == 0)
        return;
    const bool breaksLine = end < rest.size() && rest.at(end - 1) != u'\n';
    QString slice = m_breaks.append(rest.first(end), m_length);
    if (breaksLine) {
        m_breaks.append(m_length + static_cast<int>(slice.size()));
        slice += u'\n';
    }
    const QScopedValueRollback applying(m_isApplying, true);
    QTextCursor cursor(m_document);
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(slice);
    m_length += static_cast<int>(slice.size());
    m_shown += end;
}

void EditedDocument::noteChange(int from, int removed, int added)
{
    if (m_isApplying)
        return;
    if (!m_changed) {
        m_changed = {from, from + removed, from + added};
        return;
    }
    const int grown = m_changed->newEnd - m_changed->oldEnd;
    const int oldEnd = std::max(m_changed->oldEnd, from + removed - grown);
    m_changed = {std::min(m_changed->from, from), oldEnd, oldEnd + grown + added - removed};
}

void EditedDocument::follow()
{
    if (m_isApplying || !m_changed || !m_text)
        return;
    Range range = *std::exchange(m_changed, std::nullopt);
    const int length = m_document->characterCount() - 1;
    // The document counts its end as a character now and then.
    range.oldEnd = std::min(range.oldEnd, m_length);
    range.newEnd = std::min(range.newEnd, length);
    if (range.newEnd - range.oldEnd != length - m_length)
        range = {0, m_length, length};
    narrow(range);
    const QString typed = shown(range.from, range.newEnd);
    const qsizetype at = m_breaks.offset(range.from);
    const EditedText::Change change{at, m_breaks.offset(range.oldEnd) - at, EditedText::cleaned(typed)};
    m_breaks.move(range.from, range.oldEnd, range.newEnd);
    m_length = length;
    m_shown += change.inserted.size() - change.length;
    {
        const QScopedValueRollback applying(m_isApplying, true);
        m_text->replace(change);
        if (change.inserted != typed)
            replace(range.from, range.newEnd, change.inserted);
    }
    evenOut(range.from, range.from + static_cast<int>(change.inserted.size()));
    keepCursor();
}

// The document tells of whole paragraphs and more. What is the same before and after did not change.
void EditedDocument::narrow(Range &range) const
{
    const qsizetype at = m_breaks.offset(range.from);
    QString before = m_text->text().sliced(at, m_breaks.offset(range.oldEnd) - at);
    m_breaks.putInto(before, range.from, range.oldEnd);
    const QString after = shown(range.from, range.newEnd);
    const auto begins = std::mismatch(before.cbegin(), before.cend(), after.cbegin(), after.cend(), same);
    const auto ends = std::mismatch(before.crbegin(), std::make_reverse_iterator(begins.first),
                                    after.crbegin(), std::make_reverse_iterator(begins.second), same);
    range.from += static_cast<int>(begins.first - before.cbegin());
    const auto tail = static_cast<int>(ends.first - before.crbegin());
    range.oldEnd -= tail;
    range.newEnd -= tail;
}

void EditedDocument::followText(const EditedText::Change &change)
{
    if (m_isApplying || !m_document)
        return;
    // What is not shown yet will be shown as it is then.
    if (change.at > m_shown || (change.at == m_shown && m_more.isActive()))
        return;
    if (change.at + change.length > m_shown) {
        replace(m_breaks.position(change.at, true), m_length, {});
        m_shown = change.at;
        m_more.start();
        return;
    }
    const int from = m_breaks.position(change.at, true);
    const int end = change.length == 0 ? from : m_breaks.position(change.at + change.length, false);
    m_shown += change.inserted.size() - change.length;
    replace(from, end, change.inserted);
    evenOut(from, from + static_cast<int>(change.inserted.size()));
    keepCursor();
}

// From `from` to `end` the document shows `text` instead.
void EditedDocument::replace(int from, int end, const QString &text)
{
    const QScopedValueRollback applying(m_isApplying, true);
    const QString pieces = m_breaks.replace(text, from, end);
    QTextCursor cursor(m_document);
    cursor.setPosition(from);
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    cursor.insertText(pieces);
    m_length += static_cast<int>(pieces.size()) - (end - from);
}

// Pieces that became too long are broken, and short ones joined.
void EditedDocument::evenOut(int from, int end)
{
    const QScopedValueRollback applying(m_isApplying, true);
    // With the one behind, of which the changed one may be the beginning.
    for (QTextBlock block = m_document->findBlock(from); block.isValid() && block.position() <= end + 1;
         block = block.next()) {
        const int start = block.position();
        const int size = block.length() - 1;
        const int previous = block.previous().length() - 1;
        const bool isShort = std::min(size, previous) < shortPiece && size + previous <= longestPiece;
        QTextCursor cursor(m_document);
        if (size > longestPiece) {
            const int at = start + static_cast<int>(pieceEnd(block.text(), 0, size));
            cursor.setPosition(at);
            cursor.insertBlock();
            m_breaks.insert(at);
            ++m_length;
            ++end;
            block = m_document->findBlock(start);
        } else if (m_breaks.contains(start - 1) && (isShort || size + previous < pieceLength)) {
            cursor.setPosition(start);
            cursor.deletePreviousChar();
            m_breaks.move(start - 1, start, start - 1);
            --m_length;
            --end;
            block = m_document->findBlock(start - 1);
        }
    }
}

// What the document has there, with line feeds.
QString EditedDocument::shown(int from, int end) const
{
    QTextCursor cursor(m_document);
    cursor.setPosition(from);
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    QString text = cursor.selectedText();
    text.replace(QChar::ParagraphSeparator, QChar::LineFeed);
    return text;
}

bool EditedDocument::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_editor || !m_document || !m_text)
        return false;
    switch (event->type()) {
    case QEvent::KeyPress:
        return handleKey(*static_cast<QKeyEvent *>(event));
    case QEvent::MouseButtonRelease:
        return handleRelease(*static_cast<QMouseEvent *>(event));
    default:
        return false;
    }
}

bool EditedDocument::handleRelease(const QMouseEvent &mouse)
{
    const QClipboard *clipboard = QGuiApplication::clipboard();
    if (mouse.button() != Qt::MiddleButton || !clipboard->supportsSelection()) {
        // Once the editor has offered its own.
        QMetaObject::invokeMethod(
            this, [this] { cleanPrimarySelection(); }, Qt::QueuedConnection);
        return false;
    }
    int place = 0;
    QMetaObject::invokeMethod(m_editor, "positionAt", Q_RETURN_ARG(int, place),
                              Q_ARG(qreal, mouse.position().x()), Q_ARG(qreal, mouse.position().y()));
    m_editor->setProperty("cursorPosition", place);
    insert(clipboard->text(QClipboard::Selection));
    return true;
}

bool EditedDocument::handleKey(const QKeyEvent &key)
{
    if (key.matches(QKeySequence::Undo) || key.matches(QKeySequence::Redo)) {
        if (const auto change = key.matches(QKeySequence::Undo) ? m_text->undo() : m_text->redo())
            moveCursor(change->at + change->inserted.size());
        return true;
    }
    const bool cuts = key.matches(QKeySequence::Cut);
    if (cuts || key.matches(QKeySequence::Copy)) {
        const EditedText::Change selected = selection();
        if (selected.length == 0)
            return true;
        QGuiApplication::clipboard()->setText(m_text->text().sliced(selected.at, selected.length));
        if (cuts)
            insert({});
        return true;
    }
    if (key.matches(QKeySequence::Paste)) {
        insert(QGuiApplication::clipboard()->text());
        return true;
    }
    skipBreak(key);
    return false;
}

// Keys that delete go by the text: what they meet is the character behind a break.
void EditedDocument::skipBreak(const QKeyEvent &key)
{
    if (selection().length > 0)
        return;
    const int cursor = m_editor->property("cursorPosition").toInt();
    if (key.key() == Qt::Key_Backspace && m_breaks.contains(cursor - 1))
        m_editor->setProperty("cursorPosition", cursor - 1);
    else if (key.key() == Qt::Key_Delete && m_breaks.contains(cursor))
        m_editor->setProperty("cursorPosition", cursor + 1);
}

EditedText::Change EditedDocument::selection() const
{
    const qsizetype start = m_breaks.offset(m_editor->property("selectionStart").toInt());
    return {start, m_breaks.offset(m_editor->property("selectionEnd").toInt()) - start, {}};
}

// In the selection's place, as the user's change.
void EditedDocument::insert(const QString &text)
{
    EditedText::Change change = selection();
    change.inserted = EditedText::cleaned(text);
    m_text->replace(change);
    moveCursor(change.at + change.inserted.size());
}

void EditedDocument::moveCursor(qsizetype offset)
{
    if (offset > m_shown)
        showMore(offset - m_shown + firstSlice);
    m_editor->setProperty("cursorPosition", m_breaks.position(std::min(offset, m_shown), true));
}

void EditedDocument::keepCursor()
{
    if (m_text && m_editor && !m_isApplying)
        m_text->setCursor(m_breaks.offset(m_editor->property("cursorPosition").toInt()));
}

// The toolkit offers the document's text to other programs' middle click.
void EditedDocument::cleanPrimarySelection() const
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    if (!m_editor || !m_text || !clipboard->supportsSelection() || !clipboard->ownsSelection())
        return;
    const int start = m_editor->property("selectionStart").toInt();
    if (!m_breaks.isAnyWithin(start, m_editor->property("selectionEnd").toInt()))
        return;
    const EditedText::Change selected = selection();
    clipboard->setText(m_text->text().sliced(selected.at, selected.length), QClipboard::Selection);
}

} // namespace randblatt
