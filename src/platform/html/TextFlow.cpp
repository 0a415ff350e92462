#include "platform/html/TextFlow.h"

#include <utility>

namespace randblatt {

namespace {

/// The standard's white space; a no-break space is none.
bool isWhiteSpace(QChar character)
{
    return character == u' ' || character == u'\t' || character == u'\n' || character == u'\r' ||
           character == u'\f';
}

bool endsLine(QChar character)
{
    return character == u'\n' || character == u'\r';
}

} // namespace

void TextFlow::addText(QStringView text, WhiteSpace whiteSpace)
{
    using enum WhiteSpace;
    const bool keepsLines = whiteSpace == preserved || whiteSpace == linesPreserved;
    const bool keepsBlanks = whiteSpace == preserved || whiteSpace == blanksPreserved;
    for (const QChar character : text) {
        if (!isWhiteSpace(character)) {
            addCharacter(character);
        } else if (endsLine(character) && keepsLines) {
            addLineBreak();
        } else if (!endsLine(character) && keepsBlanks) {
            if (!std::exchange(m_areBlanksTyped, true))
                m_pendingBlanks.clear();
            m_pendingBlanks += character;
        } else if (m_isLineOpen && m_pendingBlanks.isEmpty() && !m_text.endsWith(u'\t')) {
            m_pendingBlanks = QStringLiteral(" ");
            m_areBlanksTyped = false;
        }
    }
}

void TextFlow::addCharacter(QChar character)
{
    openLine();
    m_text += m_pendingBlanks;
    m_pendingBlanks.clear();
    m_text += character;
}

void TextFlow::addLineBreak()
{
    openLine();
    endLine();
}

void TextFlow::addEdge()
{
    endLine();
}

void TextFlow::addParagraphEdge()
{
    endLine();
    m_isParagraphOver = true;
}

void TextFlow::beginRow()
{
    addEdge();
    m_cells.push_back(0);
}

void TextFlow::endRow()
{
    addEdge();
    if (m_cells.size() > 1)
        m_cells.pop_back();
}

void TextFlow::beginCell()
{
    m_pendingBlanks.clear();
    if (m_cells.back()++ == 0)
        return;
    openLine();
    m_text += u'\t';
}

void TextFlow::openLine()
{
    if (m_isLineOpen)
        return;
    if (m_isParagraphOver && !m_text.isEmpty())
        m_text += u'\n';
    m_isParagraphOver = false;
    m_isLineOpen = true;
}

void TextFlow::endLine()
{
    if (m_isLineOpen)
        m_text += (m_areBlanksTyped ? m_pendingBlanks : QString()) + u'\n';
    m_pendingBlanks.clear();
    m_isLineOpen = false;
}

QString TextFlow::text() const
{
    if (m_isLineOpen)
        return m_areBlanksTyped ? QString(m_text + m_pendingBlanks) : m_text;
    // What ends a line is not the beginning of another one.
    return m_text.isEmpty() ? m_text : m_text.chopped(1);
}

} // namespace randblatt
