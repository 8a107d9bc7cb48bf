// The Maya adapter, built from its own sources against the stand-in devkit: what reaches Maya's
// API on load, unload, command calls and selection changes.
#include "maya_fake.h"

#include "picker_main.h"
#include "picker_version.h"
#include "picker_window.h"

#include <maya/MObject.h>
#include <maya/MStatus.h>

#include <QDockWidget>
#include <QMainWindow>
#include <QStandardPaths>
#include <QtTest>

#include <string>
#include <vector>

MStatus initializePlugin(MObject obj);
MStatus uninitializePlugin(MObject obj);

namespace {

QStringList toQt(const std::vector<std::string>& strings) {
    QStringList list;
    for (const std::string& text : strings)
        list.append(QString::fromStdString(text));
    return list;
}

std::vector<std::string> toStd(const QStringList& strings) {
    std::vector<std::string> list;
    for (const QString& text : strings)
        list.push_back(text.toStdString());
    return list;
}

// A slot is a string, "[a,b]" an array slot, "?" a slot no string read accepts.
std::vector<maya_fake::arg> argSlots(const QStringList& written) {
    std::vector<maya_fake::arg> args;
    for (const QString& slot : written) {
        if (slot == QLatin1String("?"))
            args.push_back(maya_fake::unreadable());
        else if (slot.startsWith(QLatin1Char('[')))
            args.push_back(maya_fake::array(
                toStd(slot.mid(1, slot.size() - 2).split(QLatin1Char(','), Qt::SkipEmptyParts))));
        else
            args.push_back(maya_fake::str(slot.toStdString()));
    }
    return args;
}

QString failed(const char* message) {
    return QStringLiteral("TalvoraPicker - %1: (kFailure): Unexpected Internal Failure ")
        .arg(QLatin1String(message));
}

const QStringList allEvents = {QStringLiteral("SelectionChanged"),
                               QStringLiteral("quitApplication"), QStringLiteral("deleteAll"),
                               QStringLiteral("NewSceneOpened"), QStringLiteral("SceneOpened")};

} // namespace

class tst_picker_maya_adapter : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void loadAndUnloadGoThroughMaya();
    void failedLoadUndoesItself_data();
    void failedLoadUndoesItself();
    void unloadReportsEachFailedRemoval();
    void commandWithoutArgumentsOpensDockOnMainWindow();
    void commandArguments_data();
    void commandArguments();
    void noWindowOutsideInteractiveMaya_data();
    void noWindowOutsideInteractiveMaya();
    void selectionIsReadItemByItem_data();
    void selectionIsReadItemByItem();

private:
    void load();
    void openDock();
    bool loaded_ = false;
};

void tst_picker_maya_adapter::initTestCase() {
    QStandardPaths::setTestModeEnabled(true);
}

void tst_picker_maya_adapter::init() {
    maya_fake::reset();
    maya_fake::setMainWindow(nullptr);
    for (const char* node : {"b", "c", "d", "hero:root_ctrl", "n\xc5\x93ud_\xc3\xa9"})
        maya_fake::addNode(node);
    loaded_ = false;
}

void tst_picker_maya_adapter::cleanup() {
    if (loaded_)
        uninitializePlugin(MObject());
    loaded_ = false;
}

void tst_picker_maya_adapter::load() {
    QVERIFY(initializePlugin(MObject()));
    loaded_ = true;
    QCOMPARE(toQt(maya_fake::takeErrors()), QStringList());
    maya_fake::takeIdleQueue();
}

void tst_picker_maya_adapter::openDock() {
    QVERIFY(maya_fake::runCommand("TalvoraPicker", {}));
    QVERIFY(picker_main::dock());
    maya_fake::takeIdleQueue();
}

void tst_picker_maya_adapter::loadAndUnloadGoThroughMaya() {
    maya_fake::setLoadPath("/opt/modules/TalvoraPicker/plug-ins/2025");
    QVERIFY(initializePlugin(MObject()));

    QCOMPARE(maya_fake::pluginOpens().size(), std::size_t(1));
    QCOMPARE(maya_fake::pluginOpens()[0].vendor, std::string("Talvora"));
    QCOMPARE(maya_fake::pluginOpens()[0].version, std::string(PICKER_VERSION));
    QCOMPARE(maya_fake::pluginOpens()[0].requiredApiVersion, std::string("Any"));
    QCOMPARE(toQt(maya_fake::registeredCommands()), QStringList{QStringLiteral("TalvoraPicker")});
    QCOMPARE(toQt(maya_fake::registeredEvents()), allEvents);
    const std::vector<maya_fake::idle_command> queued = maya_fake::takeIdleQueue();
    QCOMPARE(queued.size(), std::size_t(1));
    QVERIFY(!queued[0].python);
    QVERIFY(QString::fromStdString(queued[0].text)
                .contains(QLatin1String("global proc string[] picker_ListNamespaces")));

    QVERIFY(uninitializePlugin(MObject()));
    QCOMPARE(maya_fake::pluginOpens().size(), std::size_t(2));
    QCOMPARE(maya_fake::pluginOpens()[1].vendor, std::string("Talvora"));
    QCOMPARE(maya_fake::pluginOpens()[1].version, std::string("1.0"));
    QVERIFY(maya_fake::registeredCommands().empty());
    QVERIFY(maya_fake::registeredEvents().empty());
    QCOMPARE(toQt(maya_fake::takeErrors()), QStringList());
}

void tst_picker_maya_adapter::failedLoadUndoesItself_data() {
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("error");

    QTest::newRow("function set") << QStringLiteral("MFnPlugin")
                                  << failed("could not initialize the plugin");
    QTest::newRow("command") << QStringLiteral("registerCommand")
                             << failed("could not initialize the plugin");
    QTest::newRow("first callback") << QStringLiteral("addEventCallback:SelectionChanged")
                                    << failed("could not install SelectionChanged callback");
    QTest::newRow("last callback") << QStringLiteral("addEventCallback:SceneOpened")
                                   << failed("could not install the SceneOpened callback");
}

void tst_picker_maya_adapter::failedLoadUndoesItself() {
    QFETCH(QString, operation);
    QFETCH(QString, error);

    maya_fake::failOperation(operation.toStdString());
    QVERIFY(!initializePlugin(MObject()));

    // Nothing is left registered that could call into an unloaded library.
    QCOMPARE(toQt(maya_fake::takeErrors()), QStringList{error});
    QVERIFY(maya_fake::registeredCommands().empty());
    QVERIFY(maya_fake::registeredEvents().empty());
    QVERIFY(maya_fake::takeIdleQueue().empty());
}

void tst_picker_maya_adapter::unloadReportsEachFailedRemoval() {
    load();
    for (const QString& event : allEvents)
        maya_fake::failOperation("removeCallback:" + event.toStdString());
    uninitializePlugin(MObject());
    loaded_ = false;

    QCOMPARE(toQt(maya_fake::takeErrors()),
             (QStringList{failed("could not remove selectionChanged callback"),
                          failed("could not remove the quitApplicaiton callback"),
                          failed("could not remove the deleteAll callback"),
                          failed("could not remove the newSceneOpened callback"),
                          failed("could not remove the sceneOpened callback")}));
    QCOMPARE(toQt(maya_fake::registeredEvents()), allEvents);
    QVERIFY(maya_fake::registeredCommands().empty());
}

void tst_picker_maya_adapter::commandWithoutArgumentsOpensDockOnMainWindow() {
    QMainWindow mainWindow;
    maya_fake::setMainWindow(&mainWindow);
    load();
    maya_fake::setSelection({{"c"}});

    QVERIFY(maya_fake::runCommand("TalvoraPicker", {}));

    QDockWidget* dock = picker_main::dock();
    QVERIFY(dock);
    QCOMPARE(dock->parentWidget(), static_cast<QWidget*>(&mainWindow));
    QVERIFY(dock->isVisible());
    QCOMPARE(picker_window::selection(), QStringList{QStringLiteral("c")});
    QCOMPARE(toQt(maya_fake::takeErrors()), QStringList());
}

void tst_picker_maya_adapter::commandArguments_data() {
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<bool>("succeeds");
    QTest::addColumn<QStringList>("selection");
    QTest::addColumn<QStringList>("errors");

    const QString unparsable =
        QStringLiteral("TalvoraPicker - could not parse the command: (kInvalidParameter): Object "
                       "is incompatible with this method ");
    const QString select = QStringLiteral("select");
    QTest::newRow("one array") << QStringList{select, QStringLiteral("[b,hero:root_ctrl]")} << true
                               << QStringList{QStringLiteral("b"), QStringLiteral("hero:root_ctrl")}
                               << QStringList();
    QTest::newRow("several strings, first missing")
        << QStringList{select, QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}
        << true << QStringList{QStringLiteral("b"), QStringLiteral("c")} << QStringList();
    // A lone string is read as an array of the strings from there on.
    QTest::newRow("one string, utf-8 name")
        << QStringList{select, QString::fromUtf8("n\xc5\x93ud_\xc3\xa9")} << true
        << QStringList{QString::fromUtf8("n\xc5\x93ud_\xc3\xa9")} << QStringList();
    QTest::newRow("utf-8 unknown directive")
        << QStringList{QString::fromUtf8("s\xc3\xa9lect"), QStringLiteral("b")} << false
        << QStringList{QStringLiteral("d")}
        << QStringList{QString::fromUtf8("TalvoraPicker - unknown directive: s\xc3\xa9lect")};
    QTest::newRow("unreadable argument")
        << QStringList{select, QStringLiteral("?")} << false << QStringList{QStringLiteral("d")}
        << QStringList{unparsable};
    QTest::newRow("array as directive")
        << QStringList{QStringLiteral("[select,b]")} << false << QStringList{QStringLiteral("d")}
        << QStringList{unparsable};
}

void tst_picker_maya_adapter::commandArguments() {
    QFETCH(QStringList, args);
    QFETCH(bool, succeeds);
    QFETCH(QStringList, selection);
    QFETCH(QStringList, errors);

    load();
    openDock();
    maya_fake::setSelection({{"d"}});

    QCOMPARE(bool(maya_fake::runCommand("TalvoraPicker", argSlots(args))), succeeds);

    QCOMPARE(toQt(maya_fake::selectedNames()), selection);
    QCOMPARE(toQt(maya_fake::takeErrors()), errors);
}

void tst_picker_maya_adapter::noWindowOutsideInteractiveMaya_data() {
    QTest::addColumn<int>("state");
    QTest::newRow("mayabatch") << int(MGlobal::kBatch);
    QTest::newRow("mayapy") << int(MGlobal::kLibraryApp);
}

void tst_picker_maya_adapter::noWindowOutsideInteractiveMaya() {
    QFETCH(int, state);
    maya_fake::setMayaState(static_cast<MGlobal::MMayaState>(state));
    QMainWindow mainWindow;
    maya_fake::setMainWindow(&mainWindow);
    load();

    QVERIFY(!maya_fake::runCommand("TalvoraPicker", {}));
    QVERIFY(!maya_fake::runCommand("TalvoraPicker",
                                   argSlots({QStringLiteral("restore"), QStringLiteral("x")})));
    QVERIFY(maya_fake::runCommand("TalvoraPicker",
                                  argSlots({QStringLiteral("select"), QStringLiteral("c")})));
    maya_fake::fireEvent("SceneOpened");

    const QString refused = QStringLiteral("TalvoraPicker - no user interface in this session");
    QCOMPARE(toQt(maya_fake::takeErrors()), (QStringList{refused, refused}));
    QCOMPARE(toQt(maya_fake::selectedNames()), QStringList{QStringLiteral("c")});
    QVERIFY(!picker_main::dock());
    QVERIFY(!mainWindow.findChild<QDockWidget*>());
    QVERIFY(maya_fake::takeIdleQueue().empty());
}

void tst_picker_maya_adapter::selectionIsReadItemByItem_data() {
    QTest::addColumn<QList<QStringList>>("items");
    QTest::addColumn<QStringList>("names");

    QTest::newRow("nodes") << QList<QStringList>{{QStringLiteral("b")}, {QStringLiteral("c")}}
                           << QStringList{QStringLiteral("b"), QStringLiteral("c")};
    QTest::newRow("components") << QList<QStringList>{{QStringLiteral("b")},
                                                      {QStringLiteral("c.vtx[0]"),
                                                       QStringLiteral("c.vtx[4:5]")}}
                                << QStringList{QStringLiteral("b"), QStringLiteral("c.vtx[0]"),
                                               QStringLiteral("c.vtx[4:5]")};
}

void tst_picker_maya_adapter::selectionIsReadItemByItem() {
    QFETCH(QList<QStringList>, items);
    QFETCH(QStringList, names);

    load();
    openDock();
    std::vector<std::vector<std::string>> selection;
    for (const QStringList& item : items)
        selection.push_back(toStd(item));
    maya_fake::setSelection(selection);
    const int stringReadsBefore = maya_fake::itemStringReads();

    maya_fake::fireEvent("SelectionChanged");

    QCOMPARE(maya_fake::itemStringReads() - stringReadsBefore, items.size());
    QCOMPARE(picker_window::selection(), names);
}

QTEST_MAIN(tst_picker_maya_adapter)
#include "tst_picker_maya_adapter.moc"
