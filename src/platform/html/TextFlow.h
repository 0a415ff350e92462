#pragma once

#include <QString>
#include <QStringView>

#include <vector>

namespace randblatt {

/// Puts the text of a page together, line by line, as its elements come.
class TextFlow
{
public:
    enum class WhiteSpace {
        collapses,
        preserved,
        linesPreserved,  ///< blanks collapse
        blanksPreserved, ///< line breaks collapse
    };

    void addText(QStringView text, WhiteSpace whiteSpace);
    void addLineBreak();
    /// The edge of a block: what follows stands on another line.
    void addEdge();
    /// The edge of a paragraph, which has an empty line around it.
    void addParagraphEdge();
    void beginRow();
    void endRow();
    void beginCell();

    /// All the lines; the last one is not ended by a line feed.
    [[nodiscard]] QString text() const;

private:
    void addCharacter(QChar character);
    void openLine();
    void endLine();

    QString m_text;
    bool m_isLineOpen = false;
    bool m_isParagraphOver = false;
    /// White space that shows only if something follows on the line.
    QString m_pendingBlanks;
    /// Whether it shows also at the end of a line.
    bool m_areBlanksTyped = false;
    /// The cells that the rows around this place have so far.
    std::vector<int> m_cells{0};
};

} // namespace randblatt
