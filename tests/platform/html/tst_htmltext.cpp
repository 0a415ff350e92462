#include "platform/html/HtmlText.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

class HtmlTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsHtml_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, const QString &html, const QString &text) {
            QTest::newRow(name) << html << text;
        };
        // Lines
        row("text after a block", u"<div>a</div>b"_s, u"a\nb"_s);
        row("text before a block", u"a<div>b</div>"_s, u"a\nb"_s);
        row("nested blocks", u"<div><div>a</div><section>b<article>c</article>d</section></div>e"_s,
            u"a\nb\nc\nd\ne"_s);
        row("headings", u"<h1>a</h1><h2>b</h2>c"_s, u"a\nb\nc"_s);
        row("paragraphs", u"<p>a &uuml; &amp; b</p>\n<p>c</p>d"_s, u"a ü & b\n\nc\n\nd"_s);
        row("an empty paragraph", u"<p>a</p><p></p><p>b</p>"_s, u"a\n\nb"_s);
        row("a block in a paragraph", u"<p>a<div>b</div>c"_s, u"a\n\nb\nc"_s);
        row("lists", u"a<ul><li>x<li>y<ol><li>z</ol></ul>b"_s, u"a\nx\ny\nz\nb"_s);
        row("terms", u"<dl><dt>a<dd>b<dt>c<dd>d</dl>"_s, u"a\nb\nc\nd"_s);
        row("tables", u"<table><tr><td>a</td> <td>b <tr><th>c<td> d<table><tr><td>e</table></table>f"_s,
            u"a\tb\nc\td\ne\nf"_s);
        row("a line between", u"a<hr>b"_s, u"a\nb"_s);
        row("elements in the line", u"<b>a</b><i>b</i><my-tag>c</my-tag> <font>d</font>"_s, u"abc d"_s);
        // Line breaks
        row("line breaks", u"<p>a<br/>b<BR>c"_s, u"a\nb\nc"_s);
        row("one at the end of a block", u"<div>a<br></div><div>b<br></div>"_s, u"a\nb"_s);
        row("an empty line", u"<div>a</div><div><br></div><div>b</div>"_s, u"a\n\nb"_s);
        row("an empty line with style", u"<div>a</div><div><b><br></b></div><div>b</div>"_s, u"a\n\nb"_s);
        row("two of them", u"a<br><br><br>b"_s, u"a\n\n\nb"_s);
        row("one at the beginning", u"<br><b>a</b>"_s, u"\na"_s);
        // White space
        row("of the source", u"<p> a\n\t  b <b> c</b> </p>"_s, u"a b c"_s);
        row("between blocks", u"<div>a</div>\n  <div>b</div>\n"_s, u"a\nb"_s);
        row("around a line break", u"<i>a</i> <br>\n b"_s, u"a\nb"_s);
        row("no-break spaces", u"<i>a&nbsp;&#160; b</i>\u00A0c&thinsp;d"_s,
            u"a\u00A0\u00A0 b\u00A0c\u2009d"_s);
        row("preformatted", u"<pre>\n  a\n\tb  c\n\n</pre>d"_s, u"  a\n\tb  c\n\nd"_s);
        row("kept by a style", u"<div style=\"color: red; white-space:pre-wrap\">a  b\n c</div>d  e"_s,
            u"a  b\n c\nd e"_s);
        row("lines kept by a style", u"<p style='white-space: pre-line'>a  b \n c"_s, u"a b\nc"_s);
        row("typed text that was changed",
            u"<div data-quillbar=\"text\">  if  x<br>\n\ty;  <br> <b>z</b>\n<p>neu</p>\n </div>"_s,
            u"  if  x\n\ty;  \n z\n\nneu"_s);
        // What does not show
        row("scripts and styles", u"<style>p{}</style><p>a<script>if (a<b) x('</p>')</script></p>"_s, u"a"_s);
        row("comments", u"a<!-- b > c -->d<!---->e<![if x]>f<![endif]>"_s, u"adef"_s);
        row("a document",
            u"<!DOCTYPE html><html><head><meta charset=latin1><title>t</title></head><body class=x>😀ü</body></html>\n"_s,
            u"😀ü"_s);
        row("a page that wants to be read",
            u"<link rel=\"stylesheet\" href=\"file:///dev/zero\"><img src=\"http://127.0.0.1:9/\" alt=x><p>a</p>"_s,
            u"a"_s);
        // What is not well formed
        row("characters in the text", u"<i>a < b && c > d &unbekannt; &amp; &lt;e&gt;</i>"_s,
            u"a < b && c > d &unbekannt; & <e>"_s);
        row("attributes", u"<p title=\"a > b\" x='<br>' y=z>c</p>"_s, u"c"_s);
        row("tags that do not fit", u"</div></p><b><p>a</b>b</i></p></table>c"_s, u"ab\n\nc"_s);
        row("cut off", u"<p>a &uuml;<b"_s, u"a ü"_s);
        row("a zero byte", u"<p>a"_s + QChar(0) + u"b</p>c"_s, u"a\uFFFDb\n\nc"_s);
        row("nothing", u"<p> </p>"_s, QString());
        // What is only rid of its tags
        row("broken Unicode", u"<p>a&amp;b"_s + QChar(0xd800) + u"</p>"_s, u"a&amp;b"_s + QChar(0xd800));
        row("absurd nesting", u"<table><tr><td>"_s.repeated(20000) + u"a&amp;b"_s, u"a&amp;b"_s);
        row("absurd nesting in disguise", u"<i></u>"_s.repeated(20000) + u"a&amp;b"_s, u"a&amp;b"_s);
    }

    void readsHtml()
    {
        QFETCH(const QString, html);
        QFETCH(const QString, text);
        QCOMPARE(htmlToPlainText(html), text);
    }

    void readsAllOfLargePages()
    {
        const QString block = u"<div style=\"x\">Zeile &amp; mehr</div>"_s;
        const QString image = u"<img src=\"data:image/png;base64,"_s + QString(12'000'000, u'A') + u"\">"_s;
        QString text =
            htmlToPlainText(block.repeated(100'000) + image + QString(11'000'000, u'x') + u"<p>Ende"_s);
        QVERIFY(text.startsWith(u"Zeile & mehr\nZeile"));
        QVERIFY(text.endsWith(u"xxx\n\nEnde"));
        QCOMPARE(text.count(u'x'), 11'000'000);
        // What is made to take for ever does not.
        for (const auto &part : {u"<b>"_s, u"</x>"_s, u"<p>"_s, u"<!--"_s, u"<a b='"_s, u"&"_s, u"<table>"_s,
                                 u"<p></x>"_s, u"<b><p></b>"_s, u"<"_s, u"</"_s, u"<!"_s})
            text += htmlToPlainText(u"<i>"_s.repeated(400) + part.repeated(400'000 / part.size()));
        QVERIFY(text.size() > 11'000'000);
    }
};

RANDBLATT_TEST_MAIN(HtmlTextTest, QCoreApplication)
#include "tst_htmltext.moc"
