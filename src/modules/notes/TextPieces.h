#pragma once

#include <QString>
#include <QStringView>

#include <vector>

namespace randblatt {

/// The length that a piece of a long paragraph is given, and the one up to which it is left whole, in UTF-16
/// units.
///
/// An editor lays a paragraph out anew at each key in it, in a time that grows with the square of its length
/// where it has no blanks.
constexpr qsizetype pieceLength = 2000;
constexpr qsizetype longestPiece = 2 * pieceLength;
/// What is too short to be a piece; and how far before a piece's end a blank is looked for.
constexpr qsizetype shortPiece = 200;

/// Where the piece that begins at `from` ends, in a paragraph of `text` that ends at `end`: behind a blank if
/// there is one near, and never within what a reader takes for one character.
[[nodiscard]] qsizetype pieceEnd(QStringView text, qsizetype from, qsizetype end);

/// The breaks that divide an editor's paragraphs into pieces and are not in the text: positions are the
/// document's, offsets the text's, and a position is the offset and the number of breaks before it.
class PieceBreaks
{
public:
    void clear() { m_positions.clear(); }
    /// The text with line feeds at its breaks, which are added; it is to stand at `position`, behind all
    /// breaks that are known.
    [[nodiscard]] QString append(QStringView text, int position);
    /// One more behind all that are known.
    void append(int position) { m_positions.push_back(position); }
    /// As append(), where the document had the text from `from` to `oldEnd` till now.
    [[nodiscard]] QString replace(QStringView text, int from, int oldEnd);
    /// One more where the document got a character at `position` for it.
    void insert(int position);
    /// What was from `from` to `oldEnd` is now from `from` to `newEnd`, without a break.
    void move(int from, int oldEnd, int newEnd);

    [[nodiscard]] bool contains(int position) const;
    /// Whether there is one from `from` to before `end`.
    [[nodiscard]] bool isAnyWithin(int from, int end) const;
    /// Puts line feeds for the breaks from `from` to before `end` into the text that stands there.
    void putInto(QString &text, int from, int end) const;
    [[nodiscard]] qsizetype offset(int position) const;
    /// At a break, the end of the first piece or the beginning of the second.
    [[nodiscard]] int position(qsizetype offset, bool afterBreak) const;

private:
    /// In their order.
    std::vector<int> m_positions;
};

} // namespace randblatt
