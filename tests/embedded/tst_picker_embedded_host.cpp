#include "picker_embedded_host.h"

#include <QtTest>

namespace {

const QString testCommand = QStringLiteral("TalvoraTest");

// What the registered test command was handed, slot by slot: "s:text" or "a:[x,y]".
QStringList receivedSlots;

host_status record_arguments(const picker_arg_list& args) {
    receivedSlots.clear();
    for (unsigned index = 0; index < args.length(); ++index) {
        host_status status;
        const QString text = args.asString(index, &status);
        if (status) {
            receivedSlots << QStringLiteral("s:") + text;
            continue;
        }
        unsigned arrayIndex = index;
        const QStringList items = args.asStringArray(arrayIndex, &status);
        receivedSlots << (status ? QStringLiteral("a:[%1]").arg(items.join(QLatin1Char(',')))
                                 : QStringLiteral("unreadable"));
    }
    return host_status();
}

struct event_probe {
    QString event;
    QStringList* sink = nullptr;
};

void record_event(void* clientData) {
    auto* probe = static_cast<event_probe*>(clientData);
    probe->sink->append(probe->event);
}

const QStringList sceneNodes{QStringLiteral("hero:L_hand_ctrl"), QStringLiteral("hero:R_hand_ctrl"),
                             QStringLiteral("prop:box"), QStringLiteral("root")};

// Runs the event loop until the host's idle queue is empty; bounded, never timed.
void spin_until_idle(const picker_embedded_host& host) {
    for (int round = 0; round < 100 && host.pendingIdleCount() > 0; ++round)
        QCoreApplication::processEvents();
}

} // namespace

class tst_picker_embedded_host : public QObject {
    Q_OBJECT
private slots:
    void init() { receivedSlots.clear(); }
    void runMel_data();
    void runMel();
    void namespacesDepthFirst();
    void fileInfoStorage();
    void deferredTextsRunInOrderAfterTheCall();
    void queuedWhileRunningRunsInTheSamePass();
    void sceneEvents();
};

void tst_picker_embedded_host::runMel_data() {
    QTest::addColumn<QString>("mel");
    QTest::addColumn<QStringList>("log");
    QTest::addColumn<QStringList>("selection");
    QTest::addColumn<QStringList>("commandSlots");

    const QStringList none;
    QTest::newRow("select add")
        << QStringLiteral("select -r hero:L_hand_ctrl; select -add prop:box") << none
        << QStringList{QStringLiteral("hero:L_hand_ctrl"), QStringLiteral("prop:box")} << none;
    QTest::newRow("missing node stops the text")
        << QStringLiteral("select -r root; print \"x\"; select -add nope; print \"never\"")
        << QStringList{QStringLiteral("x"),
                       QStringLiteral("// Error: No object matches name: nope")}
        << QStringList{QStringLiteral("root")} << none;
    QTest::newRow("unknown procedure")
        << QStringLiteral("frobnicate 1; print \"never\"")
        << QStringList{QStringLiteral("// Error: Cannot find procedure \"frobnicate\".")} << none
        << none;
    QTest::newRow("syntax error runs nothing")
        << QStringLiteral("print \"a\"; print \"b")
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
    QTest::newRow("error inside a backquote stops the command")
        << testCommand + QStringLiteral(" bind `nonesuch`")
        << QStringList{QStringLiteral("// Error: Cannot find procedure \"nonesuch\".")} << none
        << none;
}

void tst_picker_embedded_host::runMel() {
    QFETCH(QString, mel);
    QFETCH(QStringList, log);
    QFETCH(QStringList, selection);
    QFETCH(QStringList, commandSlots);

    picker_embedded_host host;
    host.openScene(sceneNodes, {{QStringLiteral("k"), QStringLiteral("v")}});
    QVERIFY(host.registerCommand(testCommand, &record_arguments).ok());

    const bool expectFailure = !log.isEmpty() && log.last().startsWith(QLatin1String("// Error"));
    QCOMPARE(host.executeCommand(mel).ok(), !expectFailure);
    QCOMPARE(host.scriptLog(), log);
    QCOMPARE(host.selection(), selection);
    QCOMPARE(receivedSlots, commandSlots);
}

void tst_picker_embedded_host::namespacesDepthFirst() {
    picker_embedded_host host;
    for (const char* node : {"a:x", "b:c:y", "plain", "a:d:z", "b:w", "a:d:e:f"})
        QVERIFY(host.addNode(QString::fromUtf8(node)));
    QVERIFY(!host.addNode(QStringLiteral("a:x")));
    QVERIFY(!host.addNode(QString()));
    QCOMPARE(host.namespaces(),
             (QStringList{QStringLiteral("a"), QStringLiteral("a:d"), QStringLiteral("a:d:e"),
                          QStringLiteral("b"), QStringLiteral("b:c")}));
}

void tst_picker_embedded_host::fileInfoStorage() {
    picker_embedded_host host;
    QVERIFY(host.executeCommand(
                    QStringLiteral("fileInfo \"TalvoraPickerImage_k\" \"AAAA\"; file -modified 1;"))
                .ok());
    QCOMPARE(host.fileInfo(QStringLiteral("TalvoraPickerImage_k")), QStringLiteral("AAAA"));
    QVERIFY(host.isModified());

    QVERIFY(host.executeCommand(QStringLiteral("fileInfo -remove \"TalvoraPickerImage_k\"; "
                                               "file -modified 0"))
                .ok());
    QVERIFY(!host.hasFileInfo(QStringLiteral("TalvoraPickerImage_k")));
    QVERIFY(!host.isModified());
    QVERIFY(!host.executeCommand(QStringLiteral("fileInfo \"only-key\"")).ok());
    QVERIFY(!host.executeCommand(QStringLiteral("file -open \"x.ma\"")).ok());
}

void tst_picker_embedded_host::deferredTextsRunInOrderAfterTheCall() {
    picker_embedded_host host;
    QVERIFY(host.executeCommandOnIdle(QStringLiteral("print \"one\"")).ok());
    QVERIFY(host.executePythonCommandOnIdle(QStringLiteral("print('two')")).ok());
    QVERIFY(host.executeCommandOnIdle(QStringLiteral("print \"three\"")).ok());
    QVERIFY(host.scriptLog().isEmpty());
    QCOMPARE(host.pendingIdleCount(), 3);

    spin_until_idle(host);
    QCOMPARE(host.pendingIdleCount(), 0);
    QCOMPARE(host.scriptLog(),
             (QStringList{QStringLiteral("one"), QStringLiteral("python: print('two')"),
                          QStringLiteral("three")}));
}

namespace {
picker_embedded_host* queueingHost = nullptr;

host_status queue_follow_up(const picker_arg_list& args) {
    queueingHost->executeCommandOnIdle(QStringLiteral("print \"follow-up ") + args.asString(0) +
                                       QStringLiteral("\""));
    return host_status();
}
} // namespace

void tst_picker_embedded_host::queuedWhileRunningRunsInTheSamePass() {
    picker_embedded_host host;
    queueingHost = &host;
    QVERIFY(host.registerCommand(testCommand, &queue_follow_up).ok());
    host.executeCommandOnIdle(testCommand + QStringLiteral(" a"));
    host.executeCommandOnIdle(QStringLiteral("print \"b\""));
    host.processIdle();
    queueingHost = nullptr;
    QCOMPARE(host.scriptLog(), (QStringList{QStringLiteral("b"), QStringLiteral("follow-up a")}));
    QCOMPARE(host.pendingIdleCount(), 0);
}

void tst_picker_embedded_host::sceneEvents() {
    picker_embedded_host host;
    QStringList events;
    const QStringList names{QStringLiteral("SelectionChanged"), QStringLiteral("quitApplication"),
                            QStringLiteral("deleteAll"), QStringLiteral("NewSceneOpened"),
                            QStringLiteral("SceneOpened")};
    QVector<event_probe> probes;
    for (const QString& name : names)
        probes.append(event_probe{name, &events});
    for (event_probe& probe : probes) {
        host_status status;
        QVERIFY(host.addEventCallback(probe.event, &record_event, &probe, &status) != 0);
        QVERIFY(status.ok());
    }

    host.openScene(sceneNodes, {{QStringLiteral("TalvoraPickerData"), QStringLiteral("abc")}});
    QCOMPARE(events, QStringList{QStringLiteral("SceneOpened")});
    QCOMPARE(host.nodes(), sceneNodes);
    QCOMPARE(host.fileInfo(QStringLiteral("TalvoraPickerData")), QStringLiteral("abc"));

    events.clear();
    QVERIFY(host.setSelection({QStringLiteral("root")}));
    host.executeCommand(QStringLiteral("file -modified 1"));
    host.newScene();
    QCOMPARE(events,
             (QStringList{QStringLiteral("SelectionChanged"), QStringLiteral("deleteAll"),
                          QStringLiteral("SelectionChanged"), QStringLiteral("NewSceneOpened")}));
    QVERIFY(host.nodes().isEmpty());
    QVERIFY(host.selection().isEmpty());
    QVERIFY(host.fileInfoEntries().isEmpty());
    QVERIFY(!host.isModified());

    events.clear();
    host.quit();
    QCOMPARE(events, QStringList{QStringLiteral("quitApplication")});
}

QTEST_MAIN(tst_picker_embedded_host)
#include "tst_picker_embedded_host.moc"
