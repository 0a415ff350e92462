#include "platform/notes/NoteDocument.h"

#include "platform/html/HtmlText.h"

#include <QHash>
#include <QRegularExpression>
#include <QStringDecoder>

#include <algorithm>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

constexpr auto titleOpening = "<div><b>"_L1;
constexpr auto titleClosing = "</b></div>"_L1;
constexpr auto plainOpening = "<body>\n"_L1;
constexpr auto plainClosing = "\n</body>"_L1;
constexpr auto typedClosing = "</body>"_L1;
constexpr qsizetype longestFirstLine = 200;

/// Around plain text: its blanks and tabs show, also in a browser and after other programs' changes.
constexpr auto typedOpening = "<body data-quillbar=\"text\" style=\"white-space: pre-wrap\">"_L1;

struct Range
{
    qsizetype start = 0;
    qsizetype length = 0;

    [[nodiscard]] qsizetype end() const { return start + length; }
};

QString decode(const QByteArray &file)
{
    // Asks for a byte order mark and for a charset that the document declares; else UTF-8.
    QStringDecoder decoder = QStringDecoder::decoderForHtml(file);
    QString text = decoder.isValid() ? decoder(file) : QString();
    if (!decoder.isValid() || decoder.hasError())
        text = QString::fromLatin1(file);
    return text;
}

/// What stands between <tag …> and </tag>, looked for before `limit`; where it is never closed, all the rest
/// if `isWhole`.
std::optional<Range> elementContent(const QString &html, QLatin1StringView tag, qsizetype limit, bool isWhole)
{
    const QRegularExpression opening(u"<%1(?:\\s[^>]*)?>"_s.arg(tag),
                                     QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = opening.match(html);
    if (!match.hasMatch() || match.capturedStart() >= limit)
        return std::nullopt;
    const qsizetype start = match.capturedEnd();
    const qsizetype end = html.indexOf("</"_L1 + tag, start, Qt::CaseInsensitive);
    if (end < 0 && !isWhole)
        return std::nullopt;
    return Range{start, (end < 0 ? html.size() : end) - start};
}

/// The body element's content, up to the last closing tag.
std::optional<Range> bodyContent(const QString &html)
{
    static const QRegularExpression opening(u"<body(?:\\s[^>]*)?>"_s,
                                            QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = opening.match(html);
    if (!match.hasMatch())
        return std::nullopt;
    qsizetype start = match.capturedEnd();
    qsizetype end = html.lastIndexOf("</body>"_L1, -1, Qt::CaseInsensitive);
    if (end < start)
        end = html.size();
    if (match.capturedView() == typedOpening)
        return Range{start, end - start};
    // The line breaks that toFile() sets around the body are not part of it.
    const auto breakAt = [&](qsizetype position) { return position < end && html.at(position) == u'\n'; };
    if (breakAt(start))
        ++start;
    else if (start < end && html.at(start) == u'\r' && breakAt(start + 1))
        start += 2;
    if (end > start && html.at(end - 1) == u'\n')
        --end;
    if (end > start && html.at(end - 1) == u'\r')
        --end;
    return Range{start, end - start};
}

qsizetype headLength(const QString &html)
{
    const auto body = bodyContent(html);
    return body ? body->start : html.size();
}

QString escaped(const QString &text)
{
    QString result = text.toHtmlEscaped();
    result.replace(u'\r', "&#13;"_L1);
    result.replace(u'\n', "&#10;"_L1);
    return result;
}

QString withoutEntities(const QString &html)
{
    if (!html.contains(u'&'))
        return html;
    static const QHash<QString, char32_t> named{
        {u"amp"_s, U'&'},   {u"lt"_s, U'<'},     {u"gt"_s, U'>'},    {u"quot"_s, U'"'},   {u"apos"_s, U'\''},
        {u"nbsp"_s, U' '},  {u"auml"_s, U'ä'},   {u"ouml"_s, U'ö'},  {u"uuml"_s, U'ü'},   {u"Auml"_s, U'Ä'},
        {u"Ouml"_s, U'Ö'},  {u"Uuml"_s, U'Ü'},   {u"szlig"_s, U'ß'}, {u"eacute"_s, U'é'}, {u"ndash"_s, U'–'},
        {u"mdash"_s, U'—'}, {u"hellip"_s, U'…'}, {u"bdquo"_s, U'„'}, {u"ldquo"_s, U'“'},  {u"rdquo"_s, U'”'},
        {u"lsquo"_s, U'‘'}, {u"rsquo"_s, U'’'},  {u"euro"_s, U'€'},  {u"middot"_s, U'·'},
    };
    static const QRegularExpression entity(u"&(?:#(\\d{1,7})|#[xX]([0-9a-fA-F]{1,6})|([a-zA-Z]{2,8}));"_s);
    QString result;
    qsizetype position = 0;
    for (auto matches = entity.globalMatch(html); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        char32_t code = named.value(match.captured(3), 0);
        if (match.hasCaptured(1) && !match.capturedView(1).isEmpty())
            code = match.capturedView(1).toUInt();
        else if (match.hasCaptured(2) && !match.capturedView(2).isEmpty())
            code = match.capturedView(2).toUInt(nullptr, 16);
        result += QStringView(html).sliced(position, match.capturedStart() - position);
        const bool isCharacter = code != 0 && code <= QChar::LastValidCodePoint && !QChar::isSurrogate(code);
        result += isCharacter ? QString::fromUcs4(&code, 1) : match.captured();
        position = match.capturedEnd();
    }
    return result + QStringView(html).sliced(position);
}

/// The body of a document that has no body element.
QString bareBody(const QString &html)
{
    static const QRegularExpression around(
        u"<!doctype[^>]*>|<head(?:\\s[^>]*)?>.*?</head>|<title(?:\\s[^>]*)?>.*?</title>|</?html(?:\\s[^>]*)?>"_s,
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    return QString(html).remove(around).trimmed();
}

QString titleOf(const QString &html, qsizetype limit, bool isWhole)
{
    const auto title = elementContent(html, "title"_L1, limit, isWhole);
    return title ? withoutEntities(html.sliced(title->start, title->length)) : QString();
}

} // namespace

NoteDocument NoteDocument::fromFile(const QByteArray &file)
{
    const QString html = decode(file);
    const auto content = bodyContent(html);
    NoteDocument document;
    document.body = content ? html.sliced(content->start, content->length) : bareBody(html);
    const bool isTyped = content && QStringView(html).first(content->start).endsWith(typedOpening);
    if (isTyped && !isPlainTextHtml(document.body))
        document.body = "<div "_L1 + typedTextAttribute + u'>' + document.body + "</div>"_L1;
    document.name = titleOf(html, content ? content->start : html.size(), true);
    if (document.name.trimmed().isEmpty())
        document.name = firstLine(document.body);
    return document;
}

std::optional<QString> NoteDocument::nameFromHead(const QByteArray &head)
{
    const QString html = decode(head);
    const QString title = titleOf(html, headLength(html), false);
    if (title.trimmed().isEmpty())
        return std::nullopt;
    return title;
}

QByteArray NoteDocument::toFile() const
{
    return isPlainTextHtml(body) ? toFile(typedOpening, typedClosing) : toFile(plainOpening, plainClosing);
}

QByteArray NoteDocument::toFile(QLatin1StringView bodyOpening, QLatin1StringView bodyClosing) const
{
    const QString html = "<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title>"_L1 +
                         escaped(name) + "</title>\n</head>\n"_L1 + bodyOpening + body + bodyClosing +
                         "\n</html>\n"_L1;
    return html.toUtf8();
}

std::optional<QByteArray> NoteDocument::renamed(const QByteArray &file, const QString &name)
{
    QString html = decode(file);
    const QByteArray encoded = html.toUtf8();
    // A document in another encoding declares it, so it can't be written as UTF-8.
    if (encoded != file)
        return std::nullopt;
    if (const auto title = elementContent(html, "title"_L1, headLength(html), false))
        return html.replace(title->start, title->length, escaped(name)).toUtf8();
    return NoteDocument{name, fromFile(file).body}.toFile();
}

bool NoteDocument::isOwn(const QByteArray &file)
{
    const NoteDocument document = fromFile(file);
    return isPlainTextHtml(document.body) &&
           (file == document.toFile() || file == document.toFile(plainOpening, plainClosing));
}

std::optional<NoteDocument> NoteDocument::fromTitledBody(const QString &html)
{
    if (!html.startsWith(titleOpening))
        return std::nullopt;
    const qsizetype end = html.indexOf(titleClosing, titleOpening.size());
    if (end < 0)
        return std::nullopt;
    QString title = html.sliced(titleOpening.size(), end - titleOpening.size());
    title.replace("<br>"_L1, "\n"_L1);
    return NoteDocument{withoutEntities(title), html.sliced(end + titleClosing.size())};
}

QString NoteDocument::firstLine(const QString &html)
{
    // Only the beginning matters, and a note may be long.
    constexpr qsizetype beginning = 4096;
    const QStringList lines = htmlToPlainText(html.first(std::min(html.size(), beginning))).split(u'\n');
    for (const QString &line : lines) {
        if (const QString shown = line.simplified(); !shown.isEmpty())
            return shown.size() <= longestFirstLine ? shown : shown.first(longestFirstLine) + u'…';
    }
    return u"Neue Notiz"_s;
}

} // namespace randblatt
