#pragma once

#include <QString>

namespace randblatt {

/// HTML as the plain text that it shows: blocks and line breaks become line feeds, entities are decoded. What
/// this module made from plain text gives that very text. HTML that can't be read, as for broken Unicode or
/// for nesting that no page needs, is only rid of its tags. May be called on any thread; loads nothing that
/// the HTML names.
[[nodiscard]] QString htmlToPlainText(const QString &html);

} // namespace randblatt
