#include "platform/notes/AppleScriptError.h"
#include "platform/notes/InterpreterScriptRunner.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace randblatt;

/// The language: what scripts compute, and which errors they end with.
class AppleScriptTest : public QObject
{
    Q_OBJECT

private:
    static ScriptOutcome run(const QString &source, const AppleScriptLimits &limits = {})
    {
        const QTemporaryDir folder;
        return InterpreterScriptRunner(NotesLibrary(folder.filePath(u"notes"_s)), limits).run(source);
    }

    static void addResult(const char *name, const QString &source, const QString &result)
    {
        QTest::newRow(name) << source << result;
    }

    static void addError(const char *name, const QString &source, int number)
    {
        QTest::newRow(name) << source << number;
    }

private Q_SLOTS:
    void computes_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("result");
        addResult("escapes", u"return \"a\\\"b\\\\c\" & \"ü😀\""_s, u"a\"b\\cü😀"_s);
        addResult("raw line feed", u"return \"a\nb\""_s, u"a\nb"_s);
        addResult("numbers into text", u"return \"\" & 3 & 007 & (1 ≥ 1)"_s, u"37true"_s);
        addResult("sums bind tighter than &", u"return 1 & 2 + 3 & 4"_s, u"154"_s);
        addResult("& binds tighter than contains", u"return \"ab\" contains \"A\" & \"B\""_s, u"true"_s);
        addResult("or is the loosest", u"return 1 ≥ 2 or \"x\" contains \"X\""_s, u"true"_s);
        addResult("right side of or is not computed", u"return 1 ≥ 1 or \"x\" ≥ 1"_s, u"true"_s);
        addResult("at least", u"return \"\" & (1 ≥ 2) & (2 ≥ 2) & (3 ≥ 2)"_s, u"falsetruetrue"_s);
        addResult("case", u"SET Wert TO 7\nReTuRn wERT"_s, u"7"_s);
        addResult("nothing after return", u"return 1\nreturn 2"_s, u"1"_s);
        addResult("if", u"set x to \"a\"\nif 1 ≥ 2 then set x to \"b\"\nif 2 ≥ 1 then return x"_s, u"a"_s);
        addResult("exit leaves the inner loop",
                  u"tell application \"Notes\"\nset s to \"\"\nrepeat with a in folders\n"
                  "repeat with b in folders\nset s to s & name of b\nexit repeat\nend repeat\n"
                  "set s to s & \"!\"\nend repeat\nreturn s\nend tell"_s,
                  u"Notizen!"_s);
        addResult("the object that is addressed",
                  u"tell application \"Notes\"\ntell folder \"Notizen\" of account 1\nreturn name & id\n"
                  "end tell\nend tell"_s,
                  u"NotizenNotizen"_s);
        addResult("windows line ends", u"set x to 1\r\nreturn x\r\n"_s, u"1"_s);
    }

    void computes()
    {
        QFETCH(QString, source);
        QFETCH(QString, result);
        const ScriptOutcome outcome = run(source);
        QVERIFY2(!outcome.failure,
                 qPrintable(outcome.failure ? outcome.failure->message.value_or(QString()) : u""_s));
        QCOMPARE(outcome.text, result);
    }

    void givesNoTextForValuesWithoutATextForm()
    {
        for (const auto &source :
             {u""_s, u"set x to 1"_s, u"tell application \"Notes\"\nreturn folder \"Notizen\"\nend tell"_s,
              u"tell application \"Notes\"\nreturn folders\nend tell"_s}) {
            const ScriptOutcome outcome = run(source);
            QVERIFY2(!outcome.failure && !outcome.text, qPrintable(source));
        }
    }

    void endsWithTheFacilitysErrors_data()
    {
        using namespace applescripterror;
        QTest::addColumn<QString>("source");
        QTest::addColumn<int>("number");
        addError("undefined variable", u"if 1 ≥ 2 then set x to 1\nreturn x"_s, undefinedVariable);
        addError("no number", u"return \"x\" + 1"_s, cannotCoerce);
        addError("too large a sum", u"return 9223372036854775807 + 1"_s, cannotCoerce);
        addError("too large a number", u"return 9223372036854775808"_s, syntax);
        addError("no text", u"tell application \"Notes\"\nreturn \"x\" & folders\nend tell"_s, cannotCoerce);
        addError("no boolean", u"if 7 then return 1"_s, cannotCoerce);
        addError("no list", u"repeat with x in \"abc\"\nend repeat"_s, cannotCoerce);
        addError("nothing is addressed", u"return name"_s, cannotCoerce);
        addError("another application", u"tell application \"Fenster\"\nend tell"_s, noSuchObject);
        addError("another account", u"tell application \"Notes\"\ntell account 2\nend tell\nend tell"_s,
                 invalidIndex);
        addError("no such property",
                 u"tell application \"Notes\"\nreturn body of folder \"Notizen\"\nend tell"_s, noSuchObject);
        addError("a property that cannot be set",
                 u"tell application \"Notes\"\nset name of folder \"Notizen\" to 1\nend tell"_s, cannotSet);
        addError("a folder is not deleted",
                 u"tell application \"Notes\"\ndelete folder \"Notizen\"\nend tell"_s, notUnderstood);
        addError("missing end", u"tell application \"Notes\"\nreturn 1"_s, syntax);
        addError("wrong end", u"tell application \"Notes\"\nend repeat"_s, syntax);
        addError("keyword as variable", u"set repeat to 1"_s, syntax);
        addError("unknown escape", u"return \"\\q\""_s, syntax);
        addError("literal without end", u"return \"abc"_s, syntax);
    }

    void endsWithTheFacilitysErrors()
    {
        QFETCH(QString, source);
        QFETCH(int, number);
        const ScriptOutcome outcome = run(source);
        QVERIFY(outcome.failure && !outcome.text);
        QCOMPARE(outcome.failure->number, number);
        QVERIFY(!outcome.failure->message.value_or(QString()).isEmpty());
    }

    void namesTheWordThatItDoesNotKnow_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("message");
        const auto row = [](const char *name, const QString &source, const QString &message) {
            QTest::newRow(name) << source << message;
        };
        row("missing word", u"set x to 1\n\nset y 2"_s,
            u"Syntaxfehler in Zeile 3: Erwartet wird „to“, gefunden wurde „2“."_s);
        row("operator", u"return 1 div 2"_s,
            u"Syntaxfehler in Zeile 1: Erwartet wird das Ende der Zeile, gefunden wurde „div“."_s);
        row("loop", u"repeat while 1 ≥ 2\nend repeat"_s,
            u"Syntaxfehler in Zeile 1: Erwartet wird „with“, gefunden wurde „while“."_s);
        row("statement", u"try\nend try"_s, u"Syntaxfehler in Zeile 1: „try“ ist hier keine Anweisung."_s);
        row("command", u"return count of notes"_s,
            u"Syntaxfehler in Zeile 1: „count“ ist hier nicht bekannt."_s);
        row("sign", u"return 1 ^ 2"_s, u"Syntaxfehler in Zeile 1: Das Zeichen „^“ ist hier nicht möglich."_s);
    }

    void namesTheWordThatItDoesNotKnow()
    {
        QFETCH(QString, source);
        QFETCH(QString, message);
        const ScriptOutcome outcome = run(source);
        QVERIFY(outcome.failure);
        QCOMPARE(outcome.failure->message, message);
    }

    void endsScriptsThatUseTooMuch()
    {
        const QString loop = u"repeat with f in folders\n"_s;
        QString source = u"tell application \"Notes\"\nset s to \"x\"\n"_s;
        for (int i = 0; i < 40; ++i)
            source += loop + u"set s to s & s\n"_s;
        source += u"end repeat\n"_s.repeated(40) + u"end tell"_s;
        const ScriptOutcome large = run(source, {.longestText = 16'000'000});
        QVERIFY(large.failure);
        QCOMPARE(large.failure->number, applescripterror::outOfMemory);
        const ScriptOutcome slow = run(u"return 1"_s, {.time = std::chrono::milliseconds(0)});
        QVERIFY(slow.failure);
        QCOMPARE(slow.failure->number, applescripterror::timedOut);
    }

    void survivesDeepNesting_data()
    {
        QTest::addColumn<QString>("source");
        constexpr qsizetype many = 100'000;
        QTest::newRow("brackets") << u"return "_s + QString(many, u'(');
        QTest::newRow("sum") << u"return 1"_s + u" + 1"_s.repeated(many);
        QTest::newRow("or") << u"return 1 ≥ 2"_s + u" or 1 ≥ 2"_s.repeated(many);
        QTest::newRow("of") << u"return name"_s + u" of name"_s.repeated(many);
        QTest::newRow("whose") << u"return notes"_s + u" whose notes"_s.repeated(many);
        QTest::newRow("tell") << u"tell 1\n"_s.repeated(many);
        QTest::newRow("if") << u"if 1 ≥ 1 then "_s.repeated(many);
        const QString sum = u"1"_s + u" + 1"_s.repeated(999) + u')';
        QTest::newRow("sums in brackets") << u"return "_s + u"("_s.repeated(140) + sum.repeated(140);
    }

    void survivesDeepNesting()
    {
        QFETCH(QString, source);
        QVERIFY(run(source).failure);
    }

    void joinsLongChains()
    {
        QCOMPARE(run(u"return \"a\""_s + u" & \"b\""_s.repeated(900)).text, u'a' + QString(900, u'b'));
    }
};

RANDBLATT_TEST_MAIN(AppleScriptTest, QCoreApplication)
#include "tst_applescript.moc"
