// The Maya adapter, built from its own sources against the stand-in devkit: what reaches Maya's
// API on load, unload, command calls and selection changes.
#include "../support/picker_test_vectors.h"
#include "maya_fake.h"

#include "picker_main.h"
#include "picker_version.h"
#include "picker_window.h"

#include <maya/MObject.h>
#include <maya/MStatus.h>

#include <QDockWidget>
#include <QMainWindow>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QtTest>

#include <string>
#include <vector>

using namespace picker_test_vectors;

MStatus initializePlugin(MObject obj);
MStatus uninitializePlugin(MObject obj);

namespace {

QStringList toQt(const std::vector<std::string>& strings) {
    QStringList list;
    for (const std::string& text : strings)
        list.append(QString::fromStdString(text));
    return list;
}

// A slot is a string, "[a,b]" an array slot, "?" a slot no string read accepts.
std::vector<maya_fake::arg> argSlots(const QStringList& written) {
    std::vector<maya_fake::arg> args;
    for (const QString& slot : written) {
        if (slot == QLatin1String("?")) {
            args.push_back(maya_fake::unreadable());
        } else if (slot.startsWith(QLatin1Char('['))) {
            std::vector<std::string> items;
            for (const QString& item : slot.mid(1, slot.size() - 2).split(QLatin1Char(',')))
                items.push_back(item.toStdString());
            args.push_back(maya_fake::array(items));
        } else {
            args.push_back(maya_fake::str(slot.toStdString()));
        }
    }
    return args;
}

QString failed(const char* message) {
    return "TalvoraPicker - %1: (kFailure): Unexpected Internal Failure "_q.arg(
        QLatin1String(message));
}

const QStringList allEvents =
    words("SelectionChanged quitApplication deleteAll NewSceneOpened SceneOpened");

} // namespace

class tst_picker_maya_adapter : public QObject {
    Q_OBJECT

    bool loaded_ = false;
    QMainWindow mainWindow_;

    void load() {
        QVERIFY(initializePlugin(MObject()));
        loaded_ = true;
        QCOMPARE(toQt(maya_fake::takeErrors()), QStringList());
        maya_fake::takeIdleQueue();
    }

private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    void init() {
        maya_fake::reset();
        maya_fake::setMainWindow(&mainWindow_);
        for (const char* node : {"b", "c", "d", "hero:root_ctrl", "n\xc5\x93ud_\xc3\xa9"})
            maya_fake::addNode(node);
    }

    void cleanup() {
        if (loaded_)
            uninitializePlugin(MObject());
        loaded_ = false;
    }

    void loadAndUnloadGoThroughMaya() {
        maya_fake::setLoadPath("/maya/modules/TalvoraPicker/plug-ins/2025");
        QVERIFY(initializePlugin(MObject()));
        // Maya's objects live in the entry point only; the load path stays known.
        QCOMPARE(maya_fake::liveObjects(), 0);
        QCOMPARE(maya_fake::liveFunctionSets(), 0);
        QCOMPARE(picker_main::host()->loadPath(), "/maya/modules/TalvoraPicker/plug-ins/2025"_q);
        QCOMPARE(maya_fake::pluginOpens().size(), std::size_t(1));
        QCOMPARE(maya_fake::pluginOpens()[0].version, std::string(PICKER_VERSION));
        QCOMPARE(toQt(maya_fake::registeredCommands()), QStringList{"TalvoraPicker"_q});
        QCOMPARE(toQt(maya_fake::registeredEvents()), allEvents);
        const std::vector<maya_fake::idle_command> queued = maya_fake::takeIdleQueue();
        QCOMPARE(queued.size(), std::size_t(1));
        QVERIFY(!queued[0].python);
        const QString script = QString::fromStdString(queued[0].text);
        QVERIFY(script.contains(QLatin1String("global proc string[] picker_ListNamespaces")));
        // Namespaces are listed from the root whichever is current, without Maya's own.
        QVERIFY(script.contains(QLatin1String("picker_ListOneNamespace(\":\", $result);")));
        QVERIFY(!script.contains(QRegularExpression("namespaceInfo -listOnlyNamespaces *`"_q)));
        QVERIFY(script.contains(QLatin1String("($child == \"UI\" || $child == \"shared\")")));

        // The selection is read item by item, so components come through whole.
        QVERIFY(maya_fake::runCommand("TalvoraPicker", {}));
        maya_fake::setSelection({{"b"}, {"c.vtx[0]", "c.vtx[4:5]"}});
        const int stringReadsBefore = maya_fake::itemStringReads();
        maya_fake::fireEvent("SelectionChanged");
        QCOMPARE(maya_fake::itemStringReads() - stringReadsBefore, 2);
        QCOMPARE(dynamic_cast<picker_window*>(picker_main::window())->selection(),
                 (QStringList{"b"_q, "c.vtx[0]"_q, "c.vtx[4:5]"_q}));

        QVERIFY(uninitializePlugin(MObject()));
        QCOMPARE(maya_fake::liveFunctionSets(), 0);
        QCOMPARE(maya_fake::pluginOpens().at(1).version, std::string("1.0"));
        QVERIFY(maya_fake::registeredCommands().empty());
        QVERIFY(maya_fake::registeredEvents().empty());
        QCOMPARE(toQt(maya_fake::takeErrors()), QStringList());
    }

    void failedLoadUndoesItself() {
        maya_fake::failOperation("addEventCallback:SceneOpened");
        QVERIFY(!initializePlugin(MObject()));
        // Nothing is left registered that could call into an unloaded library.
        QCOMPARE(toQt(maya_fake::takeErrors()),
                 QStringList{failed("could not install the SceneOpened callback")});
        QVERIFY(maya_fake::registeredCommands().empty());
        QVERIFY(maya_fake::registeredEvents().empty());
        QVERIFY(maya_fake::takeIdleQueue().empty());
    }

    void commandArguments_data() {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QStringList>("selection");
        QTest::addColumn<QString>("error");

        const QString select = "select"_q;
        QTest::newRow("one array") << QStringList{select, "[b,hero:root_ctrl]"_q}
                                   << QStringList{"b"_q, "hero:root_ctrl"_q} << QString();
        // A lone string is read as an array of the strings from there on.
        QTest::newRow("one string, utf-8 name")
            << QStringList{select, QString::fromUtf8("n\xc5\x93ud_\xc3\xa9")}
            << QStringList{QString::fromUtf8("n\xc5\x93ud_\xc3\xa9")} << QString();
        QTest::newRow("unreadable argument")
            << QStringList{select, "?"_q} << QStringList{"d"_q}
            << "TalvoraPicker - could not parse the command: (kInvalidParameter): "
               "Object is incompatible with this method "_q;
    }

    void commandArguments() {
        QFETCH(QStringList, args);
        QFETCH(QStringList, selection);
        QFETCH(QString, error);
        load();
        QVERIFY(maya_fake::runCommand("TalvoraPicker", {}));
        QCOMPARE(picker_main::dock()->parentWidget(), static_cast<QWidget*>(&mainWindow_));
        maya_fake::setSelection({{"d"}});

        QCOMPARE(bool(maya_fake::runCommand("TalvoraPicker", argSlots(args))), error.isEmpty());
        QCOMPARE(toQt(maya_fake::selectedNames()), selection);
        QCOMPARE(toQt(maya_fake::takeErrors()),
                 error.isEmpty() ? QStringList() : QStringList{error});
    }

    // Maya asks isUndoable after doIt and keeps the call for Ctrl+Z: undo puts back exactly the
    // selection before, components included, and the picker lights it.
    void picksGoOnMayasUndoQueue_data() {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QStringList>("picked");
        QTest::addColumn<bool>("undoable");
        const QStringList before{"b"_q, "c.vtx[0]"_q, "c.vtx[4:5]"_q};
        QTest::newRow("select") << QStringList{"select"_q, "d"_q, "hero:root_ctrl"_q}
                                << QStringList{"d"_q, "hero:root_ctrl"_q} << true;
        QTest::newRow("clear") << QStringList{"clear"_q} << QStringList() << true;
        QTest::newRow("open the window") << QStringList() << before << false;
        QTest::newRow("select, nothing found")
            << QStringList{"select"_q, "nope"_q} << before << false;
    }

    void picksGoOnMayasUndoQueue() {
        QFETCH(QStringList, args);
        QFETCH(QStringList, picked);
        QFETCH(bool, undoable);
        load();
        QVERIFY(maya_fake::runCommand("TalvoraPicker", {}));
        const std::vector<std::vector<std::string>> before{{"b"}, {"c.vtx[0]", "c.vtx[4:5]"}};
        maya_fake::setSelection(before);
        maya_fake::fireEvent("SelectionChanged");

        maya_fake::runCommand("TalvoraPicker", argSlots(args));
        QCOMPARE(toQt(maya_fake::selectedNames()), picked);
        QCOMPARE(bool(maya_fake::undo()), undoable);
        QCOMPARE(toQt(maya_fake::selectedNames()), toQt({"b", "c.vtx[0]", "c.vtx[4:5]"}));
        QCOMPARE(dynamic_cast<picker_window*>(picker_main::window())->selection(),
                 toQt({"b", "c.vtx[0]", "c.vtx[4:5]"}));
        if (undoable) {
            QVERIFY(maya_fake::redo());
            QCOMPARE(toQt(maya_fake::selectedNames()), picked);
            QCOMPARE(dynamic_cast<picker_window*>(picker_main::window())->selection(), picked);
        }
    }

    // Maya quits without unloading: the plug-in lets go of everything it holds of Maya then.
    void quitReleasesTheBridge() {
        load();
        QVERIFY(maya_fake::runCommand("TalvoraPicker", {}));
        maya_fake::fireEvent("quitApplication");
        loaded_ = false;
        QVERIFY(!picker_main::dock());
        QVERIFY(!picker_main::host());
        QVERIFY(maya_fake::registeredEvents().empty());
        QVERIFY(!maya_fake::runCommand("TalvoraPicker", argSlots({"select"_q, "b"_q})));
        QCOMPARE(toQt(maya_fake::takeErrors()), QStringList());
    }

    void noWindowInBatchMaya() {
        maya_fake::setMayaState(MGlobal::kBatch);
        load();
        QVERIFY(!maya_fake::runCommand("TalvoraPicker", {}));
        maya_fake::fireEvent("SceneOpened");

        QCOMPARE(toQt(maya_fake::takeErrors()),
                 QStringList{"TalvoraPicker - no user interface in this session"_q});
        QVERIFY(!mainWindow_.findChild<QDockWidget*>());
        QVERIFY(maya_fake::takeIdleQueue().empty());
    }
};

QTEST_MAIN(tst_picker_maya_adapter)
#include "tst_picker_maya_adapter.moc"
