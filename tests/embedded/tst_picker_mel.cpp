#include "picker_mel.h"
#include "picker_mel_quote.h"

#include <QtTest>

namespace {

// One line per statement: the command, then each word tagged b (bare), q (quoted) or `
// (backquoted).
QStringList describe(const picker_mel_script& script) {
    QStringList lines;
    for (const picker_mel_statement& statement : script.statements) {
        if (!statement.definedProcedure.isEmpty()) {
            lines << QStringLiteral("proc ") + statement.definedProcedure;
            continue;
        }
        QString line = statement.command;
        for (const picker_mel_word& word : statement.arguments) {
            const char* tag = word.type == picker_mel_word::kind::bare     ? " b:"
                              : word.type == picker_mel_word::kind::quoted ? " q:"
                                                                           : " `:";
            line += QLatin1String(tag) + word.text;
        }
        lines << line;
    }
    return lines;
}

} // namespace

class tst_picker_mel : public QObject {
    Q_OBJECT
private slots:
    void parse_data();
    void parse();
    void parseErrors_data();
    void parseErrors();
    void quoteSurvivesParsing_data();
    void quoteSurvivesParsing();
};

void tst_picker_mel::parse_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("statements");

    QTest::newRow("bare words") << QStringLiteral("TalvoraPicker select a:b c")
                                << QStringList{QStringLiteral("TalvoraPicker b:select b:a:b b:c")};
    QTest::newRow("escapes") << QStringLiteral("print \"q\\\"b\\\\n\\nt\\tx\\y\"")
                             << QStringList{QStringLiteral("print q:q\"b\\n\nt\tx") +
                                            QStringLiteral("y")};
    QTest::newRow("empty string") << QStringLiteral("TalvoraPicker restore \"\"")
                                  << QStringList{QStringLiteral("TalvoraPicker b:restore q:")};
    QTest::newRow("backquote with quotes inside")
        << QStringLiteral("TalvoraPicker restore `fileInfo -q \"TalvoraPickerData\"`;")
        << QStringList{
               QStringLiteral("TalvoraPicker b:restore `:fileInfo -q \"TalvoraPickerData\"")};
    QTest::newRow("backquote inside a quoted string is text")
        << QStringLiteral("print \"`x`\"") << QStringList{QStringLiteral("print q:`x`")};
    QTest::newRow("call form, two arguments")
        << QStringLiteral("TalvoraPicker( \"open\" , \"/a b.pkr\" )")
        << QStringList{QStringLiteral("TalvoraPicker q:open q:/a b.pkr")};
    QTest::newRow("comments") << QStringLiteral("// a\nselect -cl; /* b; c */ print \"d\" // e")
                              << QStringList{QStringLiteral("select b:-cl"),
                                             QStringLiteral("print q:d")};
    QTest::newRow("global procedures keep their names only")
        << QStringLiteral(
               "global proc string[] f(string $a) { if ($a == \"}\") { print \"x\"; } }\n"
               "global proc g() {}\nprint \"after\"")
        << QStringList{QStringLiteral("proc f"), QStringLiteral("proc g"),
                       QStringLiteral("print q:after")};
}

void tst_picker_mel::parse() {
    QFETCH(QString, text);
    QFETCH(QStringList, statements);
    const picker_mel_script script = picker_mel_parse(text);
    QCOMPARE(script.error, QString());
    QCOMPARE(describe(script), statements);
}

void tst_picker_mel::parseErrors_data() {
    QTest::addColumn<QString>("text");

    QTest::newRow("unterminated string") << QStringLiteral("print \"abc");
    QTest::newRow("unterminated backquote") << QStringLiteral("TalvoraPicker restore `fileInfo");
    QTest::newRow("variable") << QStringLiteral("print $x");
    QTest::newRow("text after a call") << QStringLiteral("TalvoraPicker(\"save\") x");
    QTest::newRow("brace") << QStringLiteral("{ print \"x\"; }");
    QTest::newRow("unterminated procedure") << QStringLiteral("global proc f() { print \"x\";");
}

void tst_picker_mel::parseErrors() {
    QFETCH(QString, text);
    const picker_mel_script script = picker_mel_parse(text);
    QVERIFY(!script.error.isEmpty());
    QVERIFY(script.statements.isEmpty());
}

void tst_picker_mel::quoteSurvivesParsing_data() {
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("quoted");

    QTest::newRow("quote") << QStringLiteral("x\"; print \"pwned")
                           << QStringLiteral("\"x\\\"; print \\\"pwned\"");
    QTest::newRow("backslash") << QStringLiteral("a\\") << QStringLiteral("\"a\\\\\"");
    QTest::newRow("control characters")
        << QStringLiteral("a\nb\r\t") << QStringLiteral("\"a\\nb\\r\\t\"");
    QTest::newRow("backquotes, semicolon, comment")
        << QStringLiteral("`file -modified 1`;//") << QStringLiteral("\"`file -modified 1`;//\"");
}

void tst_picker_mel::quoteSurvivesParsing() {
    QFETCH(QString, value);
    QFETCH(QString, quoted);
    QCOMPARE(picker_mel_quote(value), quoted);
    const picker_mel_script script =
        picker_mel_parse(QStringLiteral("select ") + quoted + QStringLiteral(";"));
    QCOMPARE(script.error, QString());
    QCOMPARE(describe(script), QStringList{QStringLiteral("select q:") + value});
}

QTEST_GUILESS_MAIN(tst_picker_mel)
#include "tst_picker_mel.moc"
