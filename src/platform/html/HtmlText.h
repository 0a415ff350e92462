#pragma once

#include <QLatin1StringView>
#include <QString>

namespace randblatt {

/// HTML as the plain text that a browser shows of it, by the rules of the HTML standard for what an element's
/// text is: blocks and line breaks make lines, a paragraph has an empty line around it, the cells of a row
/// are set apart by tabs, white space collapses where it does on the page. No-break spaces stay what they
/// are.
///
/// HTML that is plain text with `<br>` and escaped characters gives that very text. HTML that can't be read,
/// as for broken Unicode or for nesting that no page needs, is only rid of its tags. May be called on any
/// thread; loads nothing that the HTML names.
///
/// The parser is libxml2's, which hands out elements as it meets them: the nesting is bounded while it reads,
/// and no tree is built of pages that are made to be large. A parser by the standard's own algorithm
/// (libgumbo) builds the tree first and has no bounds; Qt's reader knows few elements and glues their text.
[[nodiscard]] QString htmlToPlainText(const QString &html);

/// Whether the HTML is plain text with `<br>` and escaped characters, and nothing else.
[[nodiscard]] bool isPlainTextHtml(const QString &html);

/// In an element with this attribute blanks and tabs count, as in text that was typed, but the line breaks of
/// the source do not.
inline constexpr QLatin1StringView typedTextAttribute("data-quillbar=\"text\"");

} // namespace randblatt
