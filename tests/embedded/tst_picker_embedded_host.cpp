#include "picker_embedded_host.h"

#include <QtTest>

namespace {

const QString testCommand = QStringLiteral("TalvoraTest");
picker_embedded_host* currentHost = nullptr;

// What the registered test command was handed, slot by slot: "s:text" or "a:[x,y]".
QStringList receivedSlots;

host_status record_arguments(const picker_arg_list& args) {
    for (unsigned index = 0; index < args.length(); ++index) {
        host_status status;
        const QString text = args.asString(index, &status);
        unsigned arrayIndex = index;
        receivedSlots
            << (status ? QStringLiteral("s:") + text
                       : QStringLiteral("a:[%1]").arg(
                             args.asStringArray(arrayIndex, &status).join(QLatin1Char(','))));
    }
    // Queued while the idle queue runs: it runs after what was queued before.
    currentHost->executeCommandOnIdle(QStringLiteral("print \"follow-up\""));
    return host_status();
}

const QStringList sceneNodes{QStringLiteral("hero:L_hand_ctrl"), QStringLiteral("prop:box"),
                             QStringLiteral("root")};

} // namespace

class tst_picker_embedded_host : public QObject {
    Q_OBJECT

    picker_embedded_host host_;

private slots:
    void initTestCase() {
        currentHost = &host_;
        QVERIFY(host_.registerCommand(testCommand, &record_arguments).ok());
    }

    void init() {
        host_.openScene(sceneNodes, {{QStringLiteral("k"), QStringLiteral("v")}});
        host_.clearScriptLog();
        receivedSlots.clear();
    }

    void runMel_data() {
        QTest::addColumn<QString>("mel");
        QTest::addColumn<QStringList>("log");
        QTest::addColumn<QStringList>("selection");
        QTest::addColumn<QStringList>("commandSlots");

        const QStringList none;
        QTest::newRow("missing node stops the text")
            << QStringLiteral("select -r root; print \"x\"; select -add nope; print \"never\"")
            << QStringList{QStringLiteral("x"),
                           QStringLiteral("// Error: No object matches name: nope")}
            << QStringList{QStringLiteral("root")} << none;
        QTest::newRow("syntax error runs nothing")
            << QStringLiteral("select -r root; print \"b")
            << QStringList{QStringLiteral("// Error: Unterminated string.")} << none << none;
        QTest::newRow("registered command, bare and quoted")
            << testCommand + QStringLiteral(" a \"b c\"") << none << none
            << QStringList{QStringLiteral("s:a"), QStringLiteral("s:b c")};
        QTest::newRow("array alone after the first argument is one slot")
            << testCommand + QStringLiteral(" restore `fileInfo -q \"k\"`;") << none << none
            << QStringList{QStringLiteral("s:restore"), QStringLiteral("a:[v]")};
        QTest::newRow("array among other arguments is spliced")
            << testCommand + QStringLiteral(" x `fileInfo -q \"k\"` y") << none << none
            << QStringList{QStringLiteral("s:x"), QStringLiteral("s:v"), QStringLiteral("s:y")};
        QTest::newRow("ls, selected")
            << QStringLiteral("select -r root; select -add prop:box; ") + testCommand +
                   QStringLiteral(" list `ls -sl`")
            << none << QStringList{QStringLiteral("root"), QStringLiteral("prop:box")}
            << QStringList{QStringLiteral("s:list"), QStringLiteral("a:[root,prop:box]")};
        QTest::newRow("ls, pattern")
            << testCommand + QStringLiteral(" list `ls \"*:*_ctrl\"`") << none << none
            << QStringList{QStringLiteral("s:list"), QStringLiteral("a:[hero:L_hand_ctrl]")};
        QTest::newRow("error inside a backquote stops the command")
            << testCommand + QStringLiteral(" bind `nonesuch`")
            << QStringList{QStringLiteral("// Error: Cannot find procedure \"nonesuch\".")} << none
            << none;
    }

    void runMel() {
        QFETCH(QString, mel);
        QFETCH(QStringList, log);
        QFETCH(QStringList, selection);
        QFETCH(QStringList, commandSlots);
        QCOMPARE(host_.executeCommand(mel).ok(),
                 !log.join(QLatin1Char(' ')).contains(QLatin1String("// Error")));
        QCOMPARE(host_.scriptLog(), log);
        QCOMPARE(host_.selection(), selection);
        QCOMPARE(receivedSlots, commandSlots);
        host_.processIdle();
    }

    void idleTextsRunInOrderFromTheEventLoop() {
        QVERIFY(host_.executeCommandOnIdle(testCommand + QStringLiteral(" a")).ok());
        QVERIFY(host_.executePythonCommandOnIdle(QStringLiteral("print('two')")).ok());
        QVERIFY(host_.executeCommandOnIdle(QStringLiteral("print \"three\"")).ok());
        QVERIFY(host_.scriptLog().isEmpty());
        QTRY_COMPARE(host_.scriptLog(),
                     (QStringList{QStringLiteral("python: print('two')"), QStringLiteral("three"),
                                  QStringLiteral("follow-up")}));
        QCOMPARE(host_.pendingIdleCount(), 0);
    }
};

QTEST_MAIN(tst_picker_embedded_host)
#include "tst_picker_embedded_host.moc"
