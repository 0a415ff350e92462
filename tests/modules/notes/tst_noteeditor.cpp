#include "NotesCard.h"
#include "support/TestEnvironment.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QQuickTextDocument>
#include <QRandomGenerator>
#include <QTest>
#include <QTextDocument>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

/// The scratch pad with the keyboard in it.
struct Pad
{
    NotesCard card;
    QQuickItem *area = nullptr;

    explicit Pad(const QString &text)
    {
        card.settings.setNotesScratch(text);
        card.show(NotesMode::scratch);
        area = card.view->find(u"textArea"_s);
        this->text()->load(text);
        area->forceActiveFocus();
        // Long texts are shown bit by bit.
        [&] { QTRY_VERIFY(card.view->window().activeFocusItem() == area); }();
    }

    /// The document as it is, with line feeds.
    [[nodiscard]] QString shown() const
    {
        const auto *document = area->property("textDocument").value<QQuickTextDocument *>();
        return document->textDocument()->toRawText().replace(QChar::ParagraphSeparator, QChar::LineFeed);
    }
    [[nodiscard]] QString stored() const
    {
        return card.preferences.get<QString>(u"notesScratch"_s).value_or(QString());
    }
    [[nodiscard]] EditedText *text() const
    {
        return card.module->makeView().properties.value(u"pad"_s).value<EditedText *>();
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const { card.view->press(key, modifiers); }
    void select(int start, int end) const
    {
        QMetaObject::invokeMethod(area, "select", Q_ARG(int, start), Q_ARG(int, end));
    }
};

/// Whether the editor shows the text, with line breaks of its own only in paragraphs that are long without.
bool shows(const QString &shown, const QString &text)
{
    qsizetype at = 0;
    qsizetype piece = 0;
    for (const QChar character : shown) {
        // The document takes these for ends of paragraphs as well.
        const bool endsParagraph = at < text.size() && u"\u2029\ufdd0"_s.contains(text.at(at));
        const bool isNext =
            at < text.size() && (text.at(at) == character || (endsParagraph && character == u'\n'));
        if (!isNext && (character != u'\n' || piece == 0))
            return false;
        piece = character == u'\n' ? 0 : piece + 1;
        if (piece > 4000)
            return false;
        at += isNext ? 1 : 0;
    }
    return at == text.size();
}

} // namespace

/// The editor and the text that it shows.
class NoteEditorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsTheTextInStep_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("lines") << u"Eine Zeile\nund noch eine\n\n"_s.repeated(300);
        QTest::newRow("one line") << u"Wörter ohne Ende "_s.repeated(800);
        QTest::newRow("no blanks") << u"x"_s.repeated(12'000);
        QTest::newRow("no letters") << u"👩‍👩‍👧é"_s.repeated(1500);
        QTest::newRow("odd characters") << u"a\u2028b\u2029c\ufdd0d\0e\u00a0f\ufffcg"_s.repeated(600);
    }

    void keepsTheTextInStep()
    {
        QFETCH(QString, text);
        const quint32 seed = QRandomGenerator::global()->generate();
        qInfo("seed %u", seed);
        QRandomGenerator random(seed);
        Pad pad(text);
        const EditedText *edited = pad.text();
        QTRY_VERIFY(shows(pad.shown(), text));
        QString expected = text;
        for (int step = 0; step < 120; ++step) {
            const auto length = static_cast<int>(pad.shown().size());
            // No person's cursor parts a pair of surrogates.
            const auto whole = [shown = pad.shown()](int place) {
                return place < shown.size() && shown.at(place).isLowSurrogate() ? place - 1 : place;
            };
            const int place = whole(random.bounded(length + 1));
            pad.area->setProperty("cursorPosition", place);
            const qsizetype at = edited->cursor();
            const auto replace = [&](qsizetype start, qsizetype end, const QString &inserted) {
                expected.replace(start, end - start, inserted);
            };
            const int action = random.bounded(8);
            switch (action) {
            case 0:
                pad.press(Qt::Key_Return);
                replace(at, at, u"\n"_s);
                break;
            case 1:
                if (at == 0 || expected.at(at - 1).isSurrogate())
                    continue;
                pad.press(Qt::Key_Backspace);
                replace(at - 1, at, {});
                break;
            case 2:
            case 3: {
                const int end = whole(std::min(length, place + random.bounded(action == 2 ? 20 : 5000)));
                pad.area->setProperty("cursorPosition", end);
                const qsizetype last = edited->cursor();
                pad.select(place, end);
                QGuiApplication::clipboard()->setText(action == 2 ? u"neu\r\n"_s : u"y"_s.repeated(6000));
                pad.press(Qt::Key_V, Qt::ControlModifier);
                replace(at, last, action == 2 ? u"neu\n"_s : u"y"_s.repeated(6000));
                break;
            }
            case 4: {
                const int end = whole(std::min(length, place + random.bounded(3000)));
                pad.area->setProperty("cursorPosition", end);
                const qsizetype last = edited->cursor();
                pad.select(place, end);
                pad.press(Qt::Key_X, Qt::ControlModifier);
                if (last > at)
                    QCOMPARE(QGuiApplication::clipboard()->text(), expected.sliced(at, last - at));
                replace(at, last, {});
                break;
            }
            case 5:
                expected = expected.left(expected.size() / 14 * 7) + u"von anderswo\n"_s +
                           expected.mid(expected.size() / 14 * 7);
                pad.card.settings.setNotesScratch(expected);
                break;
            default:
                pad.card.view->type(u"z"_s);
                replace(at, at, u"z"_s);
            }
            QVERIFY2(
                edited->text() == expected,
                qPrintable(u"step %1: action %2 at %3 of %4"_s.arg(step).arg(action).arg(place).arg(length)));
            QCOMPARE(pad.stored(), expected);
        }
        QVERIFY(shows(pad.shown(), expected));
        // All the way back, and forth again.
        while (edited->canUndo())
            pad.press(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(pad.stored(), text);
        QVERIFY(shows(pad.shown(), text));
        QString before;
        do {
            before = edited->text();
            QTest::keySequence(&pad.card.view->window(), QKeySequence::Redo);
        } while (before != edited->text());
        QCOMPARE(pad.stored(), expected);
    }

    void breaksOfLongParagraphsAreNotInTheText()
    {
        const QString text = u"x"_s.repeated(9000);
        Pad pad(text);
        const auto atBreak = static_cast<int>(pad.shown().indexOf(u'\n'));
        QVERIFY(atBreak > 0);
        pad.area->setProperty("cursorPosition", atBreak + 1);
        pad.press(Qt::Key_Backspace);
        QCOMPARE(pad.stored().size(), 8999);
        pad.area->setProperty("cursorPosition", static_cast<int>(pad.shown().indexOf(u'\n')));
        pad.press(Qt::Key_Delete);
        QCOMPARE(pad.stored().size(), 8998);
        pad.press(Qt::Key_A, Qt::ControlModifier);
        pad.press(Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), text.first(8998));
        pad.press(Qt::Key_Delete);
        QCOMPARE(pad.stored(), QString());
        pad.press(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(pad.stored(), text.first(8998));
    }

    void cleansWhatIsPasted_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("expected");
        QTest::newRow("controls") << u"a\0b\x1b[31mc\bd\x7f\te"_s << QString() << u"ab[31mcd\te"_s;
        QTest::newRow("line ends") << u"a\r\nb\rc\u2028d\u2029e\n"_s << QString() << u"a\nb\nc\nd\ne\n"_s;
        QTest::newRow("rich text") << u"fett"_s << u"<b>fett</b>"_s << u"fett"_s;
        QTest::newRow("no-break space") << u"10\u00a0€"_s << QString() << u"10\u00a0€"_s;
    }

    void cleansWhatIsPasted()
    {
        QFETCH(QString, text);
        QFETCH(QString, html);
        QFETCH(QString, expected);
        auto *data = new QMimeData;
        data->setText(text);
        if (!html.isEmpty())
            data->setHtml(html);
        QGuiApplication::clipboard()->setMimeData(data);
        Pad pad({});
        pad.press(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(pad.stored(), expected);
        // By other ways than the keyboard as well.
        pad.press(Qt::Key_A, Qt::ControlModifier);
        QMetaObject::invokeMethod(pad.area, "paste");
        QCOMPARE(pad.stored(), expected);
        QCOMPARE(pad.shown().replace(QChar::LineSeparator, QChar::LineFeed), expected);
    }

    void whatCanBeUndoneOutlivesTheView()
    {
        Pad pad(u"alles"_s);
        pad.press(Qt::Key_End, Qt::ControlModifier);
        pad.card.view->type(u" und mehr"_s);
        pad.press(Qt::Key_A, Qt::ControlModifier);
        pad.press(Qt::Key_Delete);
        pad.card.rebuildView();
        pad.area = pad.card.view->find(u"textArea"_s);
        pad.card.view->click(pad.area);
        pad.press(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(pad.shown(), u"alles und mehr"_s);
        QCOMPARE(pad.stored(), u"alles und mehr"_s);
        pad.press(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(pad.stored(), u"alles und "_s);
    }

    void typedWhileALongTextIsBeingShown()
    {
        const QString text = u"Zeile um Zeile\n"_s.repeated(20'000);
        Pad pad(text);
        QVERIFY(pad.shown().size() < text.size());
        pad.card.view->type(u"x"_s);
        QCOMPARE(pad.stored(), u"x"_s + text);
        pad.press(Qt::Key_Z, Qt::ControlModifier);
        pad.card.settings.setNotesScratch(text + u"Ende"_s);
        pad.card.settings.setNotesScratch(text.first(100) + u"Ende"_s);
        QTRY_COMPARE(pad.shown(), text.first(100) + u"Ende"_s);
    }
};

RANDBLATT_TEST_MAIN(NoteEditorTest, QGuiApplication)
#include "tst_noteeditor.moc"
