#include "modules/notes/TextPieces.h"

#include <algorithm>

namespace randblatt {

namespace {

bool mayBreak(QStringView text, qsizetype at)
{
    constexpr QChar joiner(0x200d);
    return !text.at(at).isLowSurrogate() && !text.at(at).isMark() && text.at(at) != joiner &&
           text.at(at - 1) != joiner;
}

QString inPieces(QStringView text, int position, std::vector<int> &breaks)
{
    QString pieces;
    pieces.reserve(text.size() + text.size() / pieceLength + 1);
    for (qsizetype at = 0; at < text.size();) {
        qsizetype lineEnd = text.indexOf(u'\n', at);
        if (lineEnd < 0)
            lineEnd = text.size();
        while (at < lineEnd) {
            const qsizetype end = pieceEnd(text, at, lineEnd);
            pieces += text.sliced(at, end - at);
            at = end;
            if (at < lineEnd) {
                breaks.push_back(position + static_cast<int>(pieces.size()));
                pieces += u'\n';
            }
        }
        if (at < text.size()) {
            pieces += u'\n';
            ++at;
        }
    }
    return pieces;
}

} // namespace

qsizetype pieceEnd(QStringView text, qsizetype from, qsizetype end)
{
    if (end - from <= longestPiece)
        return end;
    const qsizetype wanted = from + pieceLength;
    for (qsizetype at = wanted; at > wanted - shortPiece; --at) {
        if (text.at(at - 1) == u' ' && mayBreak(text, at))
            return at;
    }
    for (qsizetype at = wanted; at > wanted - shortPiece; --at) {
        if (mayBreak(text, at))
            return at;
    }
    return wanted;
}

QString PieceBreaks::append(QStringView text, int position)
{
    return inPieces(text, position, m_positions);
}

QString PieceBreaks::replace(QStringView text, int from, int oldEnd)
{
    std::vector<int> added;
    const QString pieces = inPieces(text, from, added);
    move(from, oldEnd, from + static_cast<int>(pieces.size()));
    const auto place = std::lower_bound(m_positions.begin(), m_positions.end(), from);
    m_positions.insert(place, added.begin(), added.end());
    return pieces;
}

void PieceBreaks::insert(int position)
{
    move(position, position, position + 1);
    m_positions.insert(std::lower_bound(m_positions.begin(), m_positions.end(), position), position);
}

void PieceBreaks::move(int from, int oldEnd, int newEnd)
{
    const auto first = std::lower_bound(m_positions.begin(), m_positions.end(), from);
    const auto last = std::lower_bound(first, m_positions.end(), oldEnd);
    for (auto it = m_positions.erase(first, last); it != m_positions.end(); ++it)
        *it += newEnd - oldEnd;
}

bool PieceBreaks::contains(int position) const
{
    return std::binary_search(m_positions.cbegin(), m_positions.cend(), position);
}

bool PieceBreaks::isAnyWithin(int from, int end) const
{
    const auto first = std::lower_bound(m_positions.cbegin(), m_positions.cend(), from);
    return first != m_positions.cend() && *first < end;
}

void PieceBreaks::putInto(QString &text, int from, int end) const
{
    for (auto it = std::lower_bound(m_positions.cbegin(), m_positions.cend(), from);
         it != m_positions.cend() && *it < end; ++it)
        text.insert(*it - from, u'\n');
}

qsizetype PieceBreaks::offset(int position) const
{
    const auto next = std::lower_bound(m_positions.cbegin(), m_positions.cend(), position);
    return position - (next - m_positions.cbegin());
}

int PieceBreaks::position(qsizetype offset, bool afterBreak) const
{
    // The text's offset of the nth break is its position without the breaks before it.
    std::size_t low = 0;
    std::size_t high = m_positions.size();
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        const auto at = m_positions[middle] - static_cast<qsizetype>(middle);
        if (at < offset || (afterBreak && at == offset))
            low = middle + 1;
        else
            high = middle;
    }
    return static_cast<int>(offset + static_cast<qsizetype>(low));
}

} // namespace randblatt
