#include "platform/html/HtmlText.h"

#include "platform/html/TextFlow.h"

#include <QByteArray>
#include <QHash>
#include <QRegularExpression>
#include <QStringEncoder>

#include <limits>
#include <memory>
#include <optional>
#include <vector>

#include <libxml/HTMLparser.h>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

using WhiteSpace = TextFlow::WhiteSpace;

// The parser's time grows with the nesting at each tag; no real page nests this deep.
constexpr std::size_t deepestNesting = 500;

enum class ElementKind { block, paragraph, lineBreak, row, cell, preformatted, hidden };

/// How the standard's style sheet shows elements; those that are missing stand in the line.
std::optional<ElementKind> kindOf(const char *name)
{
    using enum ElementKind;
    static const QHash<QByteArray, ElementKind> kinds = [] {
        QHash<QByteArray, ElementKind> table{
            {"p", paragraph},
            {"br", lineBreak},
            {"tr", row},
            {"td", cell},
            {"th", cell},
            {"pre", preformatted},
            {"xmp", preformatted},
            {"listing", preformatted},
            {"plaintext", preformatted},
        };
        for (const char *element :
             {"address", "article", "aside",  "blockquote", "body",   "caption", "center",   "dd",
              "details", "dialog",  "dir",    "div",        "dl",     "dt",      "fieldset", "figcaption",
              "figure",  "footer",  "form",   "h1",         "h2",     "h3",      "h4",       "h5",
              "h6",      "header",  "hgroup", "hr",         "html",   "legend",  "li",       "main",
              "menu",    "nav",     "ol",     "optgroup",   "option", "search",  "section",  "summary",
              "table",   "tbody",   "tfoot",  "thead",      "ul"})
            table.insert(element, block);
        for (const char *element : {"datalist", "head", "iframe", "noembed", "noframes", "rp", "script",
                                    "style", "template", "title"})
            table.insert(element, hidden);
        return table;
    }();
    const auto found = kinds.constFind(QByteArray::fromRawData(name, static_cast<qsizetype>(qstrlen(name))));
    return found != kinds.cend() ? std::optional(*found) : std::nullopt;
}

/// What an element's attributes say of white space; none if nothing.
std::optional<WhiteSpace> whiteSpaceOf(const xmlChar **attributes)
{
    static const QRegularExpression property(u"(?:^|[;\\s])white-space\\s*:\\s*([a-z-]+)"_s,
                                             QRegularExpression::CaseInsensitiveOption);
    static const QHash<QString, WhiteSpace> values{
        {u"normal"_s, WhiteSpace::collapses},       {u"nowrap"_s, WhiteSpace::collapses},
        {u"pre"_s, WhiteSpace::preserved},          {u"pre-wrap"_s, WhiteSpace::preserved},
        {u"break-spaces"_s, WhiteSpace::preserved}, {u"pre-line"_s, WhiteSpace::linesPreserved},
    };
    for (; attributes != nullptr && *attributes != nullptr; attributes += 2) {
        const QLatin1StringView name(reinterpret_cast<const char *>(attributes[0]));
        const QString value = QString::fromUtf8(reinterpret_cast<const char *>(attributes[1]));
        if (QString(name + "=\""_L1 + value + u'"') == typedTextAttribute)
            return WhiteSpace::blanksPreserved;
        if (name != "style"_L1)
            continue;
        const auto found = values.constFind(property.match(value).captured(1).toLower());
        if (found != values.cend())
            return *found;
    }
    return std::nullopt;
}

/// Takes what the parser meets.
class Page
{
public:
    explicit Page(xmlParserCtxt *parser)
        : m_parser(parser)
    {
    }

    void begin(const char *name, const xmlChar **attributes)
    {
        if (m_open.size() >= deepestNesting) {
            m_isBroken = true;
            xmlStopParser(m_parser);
            return;
        }
        Element element = m_open.empty() ? Element{} : m_open.back();
        const auto kind = kindOf(name);
        if (kind == ElementKind::hidden)
            element.isHidden = true;
        if (kind == ElementKind::preformatted)
            element.whiteSpace = WhiteSpace::preserved;
        if (const auto whiteSpace = whiteSpaceOf(attributes))
            element.whiteSpace = *whiteSpace;
        m_open.push_back(element);
        m_isAtStart = kind == ElementKind::preformatted;
        if (!element.isHidden)
            addEdge(kind, true);
    }

    void end(const char *name)
    {
        if (m_open.empty())
            return;
        if (!m_open.back().isHidden)
            addEdge(kindOf(name), false);
        m_open.pop_back();
        m_isAtStart = false;
    }

    void addText(const char *text, int length)
    {
        if (m_isBroken || m_open.empty() || m_open.back().isHidden)
            return;
        const QString decoded = QString::fromUtf8(text, length);
        QStringView shown = decoded;
        // The line break after the tag is the source's.
        if (m_isAtStart && shown.startsWith(u'\n'))
            shown = shown.sliced(1);
        m_isAtStart = false;
        m_flow.addText(shown, m_open.back().whiteSpace);
    }

    void setBroken() { m_isBroken = true; }
    [[nodiscard]] std::optional<QString> text() const
    {
        return m_isBroken ? std::nullopt : std::optional(m_flow.text());
    }

private:
    struct Element
    {
        bool isHidden = false;
        WhiteSpace whiteSpace = WhiteSpace::collapses;
    };

    void addEdge(std::optional<ElementKind> kind, bool isBegin)
    {
        if (!kind)
            return;
        switch (*kind) {
        case ElementKind::block:
        case ElementKind::preformatted:
            m_flow.addEdge();
            break;
        case ElementKind::paragraph:
            m_flow.addParagraphEdge();
            break;
        case ElementKind::lineBreak:
            if (isBegin)
                m_flow.addLineBreak();
            break;
        case ElementKind::row:
            isBegin ? m_flow.beginRow() : m_flow.endRow();
            break;
        case ElementKind::cell:
            if (isBegin)
                m_flow.beginCell();
            break;
        case ElementKind::hidden:
            break;
        }
    }

    xmlParserCtxt *m_parser;
    TextFlow m_flow;
    std::vector<Element> m_open;
    bool m_isAtStart = false;
    bool m_isBroken = false;
};

/// No exception may pass through the parser, which is no C++.
template <typename Action>
void guarded(void *page, Action action) noexcept
{
    auto *self = static_cast<Page *>(page);
    try {
        action(*self);
    } catch (const std::bad_alloc &) {
        self->setBroken();
    }
}

void takeText(void *page, const xmlChar *text, int length)
{
    guarded(page, [&](Page &self) { self.addText(reinterpret_cast<const char *>(text), length); });
}

/// None, if the parser gave up.
std::optional<QString> shownText(const QByteArray &html)
{
    struct FreeParser
    {
        void operator()(xmlParserCtxt *parser) const { htmlFreeParserCtxt(parser); }
    };
    const std::unique_ptr<xmlParserCtxt, FreeParser> parser(htmlNewParserCtxt());
    if (!parser || html.size() > std::numeric_limits<int>::max())
        return std::nullopt;
    Page page(parser.get());
    htmlSAXHandler handler{};
    handler.initialized = XML_SAX2_MAGIC; // else it looks for no handler of errors
    handler.startElement = [](void *self, const xmlChar *name, const xmlChar **attributes) {
        guarded(self, [&](Page &open) { open.begin(reinterpret_cast<const char *>(name), attributes); });
    };
    handler.endElement = [](void *self, const xmlChar *name) {
        guarded(self, [&](Page &open) { open.end(reinterpret_cast<const char *>(name)); });
    };
    handler.characters = takeText;
    handler.ignorableWhitespace = takeText;
    handler.cdataBlock = takeText;
    handler.serror = [](void *self, auto *error) {
        // Any page has errors, but only of these the parser does not recover.
        if (error->level == XML_ERR_FATAL)
            static_cast<Page *>(self)->setBroken();
    };
    *parser->sax = handler;
    parser->userData = &page;
    htmlCtxtReadMemory(parser.get(), html.constData(), static_cast<int>(html.size()), nullptr, "UTF-8",
                       HTML_PARSE_RECOVER | HTML_PARSE_NONET | HTML_PARSE_IGNORE_ENC);
    return page.text();
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

bool isPlainTextHtml(const QString &html)
{
    static const QRegularExpression foreign(u"<(?!br>)|&(?!amp;|lt;|gt;)|[\\n\\r]"_s);
    return !foreign.match(html).hasMatch();
}

QString htmlToPlainText(const QString &html)
{
    QStringEncoder encoder(QStringEncoder::Utf8);
    QByteArray encoded = encoder(html);
    if (encoder.hasError())
        return withoutTags(html);
    if (isPlainTextHtml(html)) {
        QString text = html;
        return text.replace("<br>"_L1, "\n"_L1)
            .replace("&lt;"_L1, "<"_L1)
            .replace("&gt;"_L1, ">"_L1)
            .replace("&amp;"_L1, "&"_L1);
    }
    if (html.contains("<!["_L1)) {
        // To the standard a comment, to the parser text.
        static const QRegularExpression marks(u"<!\\[[^>]*>"_s);
        encoded = QString(html).remove(marks).toUtf8();
    }
    // The parser takes this character for the end.
    encoded.replace('\0', "\xef\xbf\xbd");
    encoded.replace("\r\n", "\n");
    // Text without an element around it would be put into a paragraph.
    return shownText("<!DOCTYPE html><html><body>" + encoded).value_or(withoutTags(html));
}

} // namespace randblatt
