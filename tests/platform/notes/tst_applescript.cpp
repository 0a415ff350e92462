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
        // Text and its literals
        addResult("escapes", u"return \"a\\\"b\\\\c\\n\\t\" & \"ü😀\""_s, u"a\"b\\c\n\tü😀"_s);
        addResult("raw line feed", u"return \"a\nb\""_s, u"a\nb"_s);
        addResult("numbers into text", u"return \"\" & 3 & 2.5 & -1 & true"_s, u"32.5-1true"_s);
        addResult("list into text", u"return \"x\" & {1, {\"a\"}, 2.0}"_s, u"x1a2.0"_s);
        addResult("large integers are reals", u"return 1000000 * 1000000"_s, u"1.0E+12"_s);
        addResult("coercions", u"return (\"5\" as integer) + (\"1.5\" as real) + (3.6 as integer)"_s,
                  u"10.5"_s);
        addResult("coercion binds looser than &", u"return 1 & 2 as string"_s, u"12"_s);
        // Operators
        addResult("precedence", u"return 2 + 3 * 4 ^ 2 / 8 - 7 div 2"_s, u"5.0"_s);
        addResult("power is right associative", u"return 2 ^ 3 ^ 2 as integer"_s, u"512"_s);
        addResult("minus binds tightest", u"return -2 ^ 2 as integer"_s, u"4"_s);
        addResult("div and mod", u"return \"\" & -7 div 2 & -7 mod 2"_s, u"-3-1"_s);
        addResult("text ignores case", u"return \"ABC\" = \"abc\" and \"a\" ≠ \"b\""_s, u"true"_s);
        addResult("types are not equal", u"return 1 = \"1\""_s, u"false"_s);
        addResult("signs of comparison", u"return 1 ≤ 1 and 1 <= 2 and 2 ≥ 1 and 2 >= 2 and 1 /= 2"_s,
                  u"true"_s);
        addResult("words of comparison",
                  u"return 2 is greater than or equal to 2 and 1 is less than 2 and 1 isn't 2 and "
                  "not (1 is not less than or equal to 2) and 1 is equal to 1 and \"a\" comes before \"b\""_s,
                  u"true"_s);
        addResult("right side follows the left's type", u"return 9 < \"10\" and \"9\" > 10"_s, u"true"_s);
        addResult("containment",
                  u"return \"Hallo\" contains \"ALL\" and {1, 2, 3} contains {2, 3} and 4 is not in {1} and "
                  "\"ab\" starts with \"a\" and \"ab\" ends with \"B\" and \"x\" is in \"xyz\""_s,
                  u"true"_s);
        addResult("right side of or is not computed", u"return true or nirgends"_s, u"true"_s);
        // Lists and records
        addResult("items",
                  u"set l to {10, 20, 30}\nreturn \"\" & item 2 of l & last item of l & item -3 of l"_s,
                  u"203010"_s);
        addResult("item by variable", u"set i to 2\nreturn item i of {1, \"b\"}"_s, u"b"_s);
        addResult("ranges and counts",
                  u"return \"\" & (items 2 thru 3 of {1, 2, 3, 4}) & (count {1, 2}) & "
                  "length of \"ä😀\" & number of items of {1}"_s,
                  u"23221"_s);
        addResult("joining", u"set l to {1} & 2 & {3, {4}}\nreturn count l"_s, u"4"_s);
        addResult("records",
                  u"set r to {name:\"x\", |Ort|:{stadt:\"Y\"}}\nreturn name of r & stadt of ort of r & "
                  "r's name"_s,
                  u"xYx"_s);
        addResult("joining records keeps the left's values", u"return b of ({a:1, b:2} & {b:3, c:4})"_s,
                  u"2"_s);
        // Statements
        addResult("result of the last statement", u"set x to 4\nx + 1"_s, u"5"_s);
        addResult("case and continuation", u"SET Wert TO ¬\n  7\nReTuRn wERT"_s, u"7"_s);
        addResult("comments", u"-- eins\n# zwei\n(* drei (* vier *) fünf *)\nreturn 1 -- \"sechs"_s, u"1"_s);
        addResult("repeat times",
                  u"set s to \"\"\nrepeat 3 times\nset s to s & \"x\"\nend repeat\nreturn s"_s, u"xxx"_s);
        addResult("repeat from by",
                  u"set s to \"\"\nrepeat with i from 10 to 1 by -4\nset s to s & i & \" \"\n"
                  "end repeat\ns"_s,
                  u"10 6 2 "_s);
        addResult("repeat while and until",
                  u"set i to 0\nrepeat while i < 5\nset i to i + 2\nend repeat\n"
                  "repeat until i = 1\nset i to i - 1\nend\nreturn i"_s,
                  u"1"_s);
        addResult("exit leaves the inner loop",
                  u"set s to \"\"\nrepeat with a in {1, 2}\nrepeat\nset s to s & a\nexit repeat\nend repeat\n"
                  "end repeat\nreturn s"_s,
                  u"12"_s);
        addResult("else if",
                  u"set x to 2\nif x = 1 then\nreturn \"a\"\nelse if x = 2 then\nreturn \"b\"\nelse\n"
                  "return \"c\"\nend if"_s,
                  u"b"_s);
        addResult("if in one line", u"if 1 > 2 then return \"a\" else return \"b\""_s, u"b"_s);
        addResult("on error",
                  u"try\nerror \"kaputt\" number 42\non error m number n\nreturn m & n\nend try"_s,
                  u"kaputt42"_s);
        addResult("errors of the language can be caught",
                  u"try\nreturn 1 / 0\non error number n\nreturn n\nend try"_s, u"-2701"_s);
        addResult("copy", u"copy 3 to x\nreturn x"_s, u"3"_s);
        addResult("barred names are no keywords", u"set |repeat| to 1\nreturn |REPEAT|"_s, u"1"_s);
        addResult("dictionary words are variables outside",
                  u"set notes to 1\nset folder to 2\nreturn notes + folder"_s, u"3"_s);
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
             {u""_s, u"return"_s, u"return {1, 2}"_s, u"return {a:1}"_s, u"missing value"_s,
              u"tell application \"Notes\" to return folder \"Notizen\""_s}) {
            const ScriptOutcome outcome = run(source);
            QVERIFY2(!outcome.failure && !outcome.text, qPrintable(source));
        }
    }

    void endsWithTheFacilitysErrors_data()
    {
        using namespace applescripterror;
        QTest::addColumn<QString>("source");
        QTest::addColumn<int>("number");
        addError("undefined variable", u"return nirgends"_s, undefinedVariable);
        addError("no number", u"return \"x\" + 1"_s, cannotCoerce);
        addError("no text", u"return \"x\" & {a:1}"_s, cannotCoerce);
        addError("no boolean", u"if 7 then return 1"_s, cannotCoerce);
        addError("no item", u"return item 3 of {1, 2}"_s, invalidIndex);
        addError("item zero", u"return item 0 of {1, 2}"_s, invalidIndex);
        addError("no such field", u"return b of {a:1}"_s, noSuchObject);
        addError("another application", u"tell application \"Fenster\"\nend tell"_s, noSuchObject);
        addError("another account", u"tell application \"Notes\" to return name of account 2"_s,
                 invalidIndex);
        addError("property of a text", u"set name of \"x\" to 1"_s, cannotSet);
        addError("comparisons do not chain", u"return 1 < 2 < 3"_s, syntax);
        addError("missing end", u"repeat\n1"_s, syntax);
        addError("wrong end", u"repeat\nend tell"_s, syntax);
        addError("keyword as variable", u"set repeat to 1"_s, syntax);
        addError("unknown escape", u"return \"\\q\""_s, syntax);
        addError("literal without end", u"return \"abc"_s, syntax);
        addError("comment without end", u"(* (* *)"_s, syntax);
        addError("lists in lists without end", u"set l to {}\nrepeat\nset l to {l}\nend repeat"_s,
                 nestedTooDeep);
        addError("lists that double", u"set l to {1}\nrepeat\nset l to {l, l}\nend repeat"_s, outOfMemory);
        addError("raised by the script", u"error \"x\""_s, raisedByScript);
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

    void saysWhereASyntaxErrorIs()
    {
        const ScriptOutcome outcome = run(u"set x to 1\n\nset y 2"_s);
        QCOMPARE(outcome.failure->message,
                 u"Syntaxfehler in Zeile 3: Erwartet wird „to“, gefunden wurde „2“."_s);
    }

    void endsScriptsThatUseTooMuch_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<int>("number");
        addError("endless", u"repeat\nend repeat"_s, applescripterror::timedOut);
        addError("endless with try", u"repeat\ntry\nrepeat\nend repeat\nend try\nend repeat"_s,
                 applescripterror::timedOut);
        addError("doubling text", u"set s to \"x\"\nrepeat\nset s to s & s\nend repeat"_s,
                 applescripterror::outOfMemory);
        addError("hoarded texts",
                 u"set s to \"x\"\nrepeat 18 times\nset s to s & s\nend repeat\nset l to {}\nrepeat\n"
                 "set l to l & {s & (count l)}\nend repeat"_s,
                 applescripterror::outOfMemory);
    }

    void endsScriptsThatUseTooMuch()
    {
        QFETCH(QString, source);
        QFETCH(int, number);
        const AppleScriptLimits limits{
            .steps = 300'000, .time = std::chrono::seconds(60), .memory = 16'000'000};
        const ScriptOutcome outcome = run(source, limits);
        QVERIFY(outcome.failure);
        QCOMPARE(outcome.failure->number, number);
    }

    void endsAtTheTimeLimit()
    {
        const AppleScriptLimits limits{.steps = std::numeric_limits<qint64>::max(),
                                       .time = std::chrono::milliseconds(50)};
        const ScriptOutcome outcome = run(u"repeat\nend repeat"_s, limits);
        QVERIFY(outcome.failure);
        QCOMPARE(outcome.failure->number, applescripterror::timedOut);
    }

    void survivesDeepNesting_data()
    {
        QTest::addColumn<QString>("source");
        constexpr qsizetype many = 100'000;
        QTest::newRow("brackets") << u"return "_s + QString(many, u'(');
        QTest::newRow("braces") << u"return "_s + QString(many, u'{');
        QTest::newRow("minus") << u"return "_s + u"- "_s.repeated(many) + u"1"_s;
        QTest::newRow("not") << u"return "_s + u"not "_s.repeated(many) + u"true"_s;
        QTest::newRow("sum") << u"return 1"_s + u" + 1"_s.repeated(many);
        QTest::newRow("coercions") << u"return 1"_s + u" as text"_s.repeated(many);
        QTest::newRow("of") << u"return a"_s + u" of a"_s.repeated(many);
        QTest::newRow("possessive") << u"return a"_s + u"'s a"_s.repeated(many);
        QTest::newRow("power") << u"return 1"_s + u" ^ 1"_s.repeated(many);
        QTest::newRow("tell") << u"tell 1\n"_s.repeated(many);
        QTest::newRow("tell to") << u"tell 1 to "_s.repeated(many);
        QTest::newRow("if") << u"if true then "_s.repeated(many);
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
