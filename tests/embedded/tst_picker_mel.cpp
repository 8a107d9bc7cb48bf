#include "picker_mel.h"

#include <QtTest>

class tst_picker_mel : public QObject {
    Q_OBJECT

    // One line per statement: the command, then each word tagged b (bare), q (quoted) or `
    // (backquoted).
    static QStringList describe(const picker_mel_script& script) {
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

private slots:
    void parse_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("statements"); // none: the text is refused whole

        QTest::newRow("escapes") << QStringLiteral("print \"q\\\"b\\\\n\\nt\\tx\\y\" \"\"")
                                 << QStringList{QStringLiteral("print q:q\"b\\n\nt\tx") +
                                                QStringLiteral("y q:")};
        QTest::newRow("backquote with quotes inside")
            << QStringLiteral("TalvoraPicker restore `fileInfo -q \"TalvoraPickerData\"`;")
            << QStringList{
                   QStringLiteral("TalvoraPicker b:restore `:fileInfo -q \"TalvoraPickerData\"")};
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
        QTest::newRow("unterminated string")
            << QStringLiteral("print \"a\"; print \"abc") << QStringList();
        QTest::newRow("variable") << QStringLiteral("print $x") << QStringList();
        QTest::newRow("text after a call")
            << QStringLiteral("TalvoraPicker(\"save\") x") << QStringList();
        QTest::newRow("unterminated procedure")
            << QStringLiteral("global proc f() { print \"x\";") << QStringList();
    }

    void parse() {
        QFETCH(QString, text);
        QFETCH(QStringList, statements);
        const picker_mel_script script = picker_mel_parse(text);
        QCOMPARE(script.error.isEmpty(), !statements.isEmpty());
        QCOMPARE(describe(script), statements);
    }
};

QTEST_GUILESS_MAIN(tst_picker_mel)
#include "tst_picker_mel.moc"
