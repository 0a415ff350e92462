#include "modules/notes/NoteText.h"

#include <QRegularExpression>
#include <QStringEncoder>
#include <QTextDocument>
#include <QVariant>

#include <algorithm>
#include <optional>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

// The reader's time grows with the square of the nesting; no real note nests this deep.
constexpr int deepestNesting = 500;
// Stands for nothing; no text has this code point.
constexpr QChar placeholder(0xFDD5);

/// A document that reads nothing but the text that it is given.
class ClosedDocument : public QTextDocument
{
protected:
    QVariant loadResource(int, const QUrl &) override { return {}; }
};

bool isEncodable(const QString &html)
{
    QStringEncoder encoder(QStringEncoder::Utf8);
    (void)QByteArray(encoder(html));
    return !encoder.hasError();
}

bool isTooDeep(const QString &html)
{
    // Elements that are often left open, or never closed, do not count.
    static const QRegularExpression tags(
        u"<(/?)(?!(?:br|hr|img|input|meta|link|wbr|col|p|li|td|th|tr|dt|dd|option)\\b)[a-z]"_s,
        QRegularExpression::CaseInsensitiveOption);
    int depth = 0;
    for (auto matches = tags.globalMatch(html); matches.hasNext();) {
        const bool closes = matches.next().capturedLength(1) > 0;
        depth = closes ? std::max(depth - 1, 0) : depth + 1;
        if (depth > deepestNesting)
            return true;
    }
    return false;
}

/// The plain text that this module made the HTML from; none for HTML that has any other markup. The reader
/// would run its blanks together.
std::optional<QString> ownText(const QString &html)
{
    static const QRegularExpression foreign(u"<(?!br>)|&(?!amp;|lt;|gt;)|[\\n\\r]"_s);
    if (foreign.match(html).hasMatch())
        return std::nullopt;
    QString text = html;
    return text.replace("<br>"_L1, "\n"_L1)
        .replace("&lt;"_L1, "<"_L1)
        .replace("&gt;"_L1, ">"_L1)
        .replace("&amp;"_L1, "&"_L1);
}

/// Removes what matches "<[^>]+>". By hand, since regular expressions refuse broken Unicode.
QString withoutTags(const QString &html)
{
    QString text;
    qsizetype kept = 0;
    for (qsizetype tag = html.indexOf(u'<'); tag >= 0; tag = html.indexOf(u'<', tag)) {
        const qsizetype end = html.indexOf(u'>', tag);
        if (end < 0)
            break;
        if (end > tag + 1) {
            text += QStringView(html).sliced(kept, tag - kept);
            kept = end + 1;
        }
        tag = end;
    }
    return text + QStringView(html).sliced(kept);
}

} // namespace

QString htmlToPlainText(const QString &html)
{
    if (!isEncodable(html) || isTooDeep(html))
        return withoutTags(html);
    if (const auto text = ownText(html))
        return *text;
    // A line break that ends a block shows only as the line of a block that is empty without it.
    static const QRegularExpression lastBreak(u"<br\\s*/?>\\s*(?=</(?:div|p|li|h[1-6]|td|blockquote)>)"_s,
                                              QRegularExpression::CaseInsensitiveOption);
    // The reader takes what follows a link element for its content, and shows none of it.
    static const QRegularExpression link(u"<link\\b[^>]*>"_s, QRegularExpression::CaseInsensitiveOption);
    ClosedDocument document;
    document.setUndoRedoEnabled(false);
    document.setHtml(QString(html).remove(link).replace(lastBreak, placeholder));
    return document.toPlainText().remove(placeholder);
}

} // namespace randblatt
