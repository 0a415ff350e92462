#include "modules/notes/EditedDocument.h"

#include <QScopedValueRollback>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>

namespace randblatt {

namespace {

/// As many characters as the document has positions. Its own conversion would turn no-break spaces into
/// blanks.
QString plainText(const QTextDocument &document)
{
    QString text = document.toRawText();
    // Every character is written, so that the compiler takes many at a time.
    std::transform(text.cbegin(), text.cend(), text.begin(), [](QChar character) {
        const bool endsLine = character == QChar::ParagraphSeparator || character == QChar::LineSeparator;
        return endsLine ? QChar(QChar::LineFeed) : character;
    });
    return text;
}

QString withLineFeeds(QString text)
{
    if (text.contains(QChar::CarriageReturn)) {
        text.replace(QLatin1StringView("\r\n"), QLatin1StringView("\n"));
        text.replace(QChar::CarriageReturn, QChar::LineFeed);
    }
    return text;
}

} // namespace

void EditedDocument::setDocument(QQuickTextDocument *document)
{
    if (m_document == document)
        return;
    if (m_document)
        m_document->textDocument()->disconnect(this);
    m_document = document;
    if (m_document) {
        m_text = plainText(*m_document->textDocument());
        connect(m_document->textDocument(), &QTextDocument::contentsChanged, this, &EditedDocument::follow);
    }
    Q_EMIT documentChanged();
}

void EditedDocument::follow()
{
    QString text = plainText(*m_document->textDocument());
    if (text == m_text)
        return;
    m_text = std::move(text);
    if (!m_isTaking)
        Q_EMIT edited(m_text);
}

void EditedDocument::take(const QString &text)
{
    // What comes back of the user's own is compared as it is, at every key.
    if (!m_document || text == m_text)
        return;
    const QString wanted = withLineFeeds(text);
    if (wanted == m_text)
        return;
    const auto begins = std::mismatch(m_text.cbegin(), m_text.cend(), wanted.cbegin(), wanted.cend());
    const auto start = begins.first - m_text.cbegin();
    const auto ends = std::mismatch(m_text.crbegin(), std::make_reverse_iterator(begins.first),
                                    wanted.crbegin(), std::make_reverse_iterator(begins.second));
    const auto tail = ends.first - m_text.crbegin();

    const QScopedValueRollback taking(m_isTaking, true);
    QTextCursor cursor(m_document->textDocument());
    cursor.setPosition(static_cast<int>(start));
    cursor.setPosition(static_cast<int>(m_text.size() - tail), QTextCursor::KeepAnchor);
    cursor.insertText(wanted.mid(start, wanted.size() - tail - start));
}

} // namespace randblatt
