#include "../support/picker_test_vectors.h"
#include "picker_embedded_host.h"
#include "picker_main.h"

#include <QApplication>
#include <QDataStream>
#include <QDockWidget>
#include <QPixmap>
#include <QScreen>
#include <QSettings>
#include <QStandardPaths>
#include <QtTest>

#include <memory>

using namespace picker_test_vectors;

namespace {

using operation = picker_embedded_host::operation;

// Stands in for the picker window: records what the command asks of it.
class test_window : public QWidget, public picker_window_link {
public:
    explicit test_window(QWidget* parent) : QWidget(parent) {}
    QStringList calls;

    void setSelection(const QStringList& names) override {
        calls << "setSelection:"_q + names.join(QLatin1Char(','));
    }
    void reset() override { calls << "reset"_q; }
    void streamFrom(QDataStream& stream) override {
        calls << "streamFrom:"_q + QString::fromLatin1(stream.device()->readAll().toHex());
    }
    void fetchFrontImageData() override { calls << "fetchFrontImageData"_q; }
    void setBackgroundImage(const QString& key, const QPixmap&) override { calls << key; }
    bool save_current() override {
        calls << "save_current"_q;
        return true;
    }
    bool saveas_current(const QString& path) override {
        calls << "saveas_current:"_q + path;
        return true;
    }
    // A file named "missing" does not open.
    bool load_pickers(const QStringList& paths) override {
        calls << "load_pickers:"_q + paths.join(QLatin1Char('|'));
        return !paths.contains("missing"_q);
    }
    void rebindFront(const QStringList& namespaces, bool rebind) override {
        calls << "rebindFront:%1:%2"_q.arg(namespaces.join(QLatin1Char(','))).arg(rebind ? 1 : 0);
    }
};

QPointer<test_window> lastWindow;

QWidget* make_test_window(QDockWidget* dock) {
    auto* window = new test_window(dock);
    lastWindow = window;
    return window;
}

QString compressed_base64(const QByteArray& bytes) {
    return QString::fromLatin1(qCompress(bytes, 9).toBase64());
}

QSettings settings() {
    return QSettings("Talvora"_q, "picker"_q);
}

} // namespace

class tst_picker_main : public QObject {
    Q_OBJECT

    std::unique_ptr<picker_embedded_host> host_;

    test_window* openWindow() {
        if (!picker_main::host())
            picker_main::initialize(*host_, &make_test_window);
        host_->processIdle();
        host_->executeCommand("TalvoraPicker"_q);
        host_->processIdle();
        host_->clearScriptLog();
        if (lastWindow)
            lastWindow->calls.clear();
        return lastWindow;
    }

private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    void init() {
        settings().clear();
        host_ = std::make_unique<picker_embedded_host>();
        host_->openScene({"b"_q, "c"_q, "hero:x"_q, "hero:sub:y"_q}, {});
    }

    void cleanup() {
        host_->clearFailures();
        if (picker_main::host())
            picker_main::uninitialize();
        host_.reset();
    }

    // Refused after the dock is gone: the command and its callbacks stay for a later unload.
    void unloadStopsWhenRefused() {
        QVERIFY(openWindow());
        host_->setFailing(operation::deregisterCommand, true);
        QVERIFY(!picker_main::uninitialize().ok());
        QCOMPARE(host_->scriptLog(),
                 QStringList{"// Error: TalvoraPicker - could not deregister the plugin: "
                             "(kFailure): Unexpected Internal Failure "_q});
        QVERIFY(host_->isCommandRegistered("TalvoraPicker"_q));
        QCOMPARE(host_->callbackCount("SceneOpened"_q), 1);
        QVERIFY(!picker_main::dock());
    }

    // The dock the command makes, and the scene events it then serves.
    void dockFollowsTheScene() {
        QVERIFY(picker_main::initialize(*host_, &make_test_window).ok());
        QVERIFY(host_->executeCommand("TalvoraPicker"_q).ok());

        QDockWidget* dock = picker_main::dock();
        QVERIFY(dock);
        QCOMPARE(dock->windowTitle(), "TalvoraPicker"_q);
        QCOMPARE(dock->parentWidget(), host_->mainWindow());
        QVERIFY(dock->isFloating());
        QCOMPARE(dock->allowedAreas(), Qt::DockWidgetAreas(Qt::NoDockWidgetArea));
        // The scene restore waits for idle; the current selection is shown at once.
        QCOMPARE(host_->pendingMel().last(),
                 "TalvoraPicker restore `fileInfo -q \"TalvoraPickerData\"`;"_q);
        test_window* window = lastWindow;
        QCOMPARE(window->calls, QStringList{"setSelection:"_q});
        host_->processIdle();
        QCOMPARE(window->calls.last(), "reset"_q);

        window->calls.clear();
        host_->openScene({"b"_q}, {{"TalvoraPickerData"_q,
                                    compressed_base64(QByteArray("\x00\x00\x00\x04tabs", 8))}});
        QVERIFY(window->calls.isEmpty());
        host_->processIdle();
        QCOMPARE(window->calls, (QStringList{"streamFrom:0000000474616273"_q, "setSelection:"_q,
                                             "fetchFrontImageData"_q}));
        window->calls.clear();
        host_->raiseEvent("deleteAll"_q);
        host_->newScene();
        QCOMPARE(window->calls, QStringList({"reset"_q, "reset"_q, "reset"_q}));
    }

    void batchSession_data() {
        QTest::addColumn<QString>("mel");
        QTest::addColumn<QStringList>("selected");
        QTest::addColumn<bool>("refused");
        const QStringList before{"b"_q};
        QTest::newRow("no arguments") << "TalvoraPicker"_q << before << true;
        for (const char* directive : {"restore", "bind", "open"})
            QTest::newRow(directive)
                << "TalvoraPicker %1 a b"_q.arg(QLatin1String(directive)) << before << true;
        QTest::newRow("select") << "TalvoraPicker select c hero:x"_q
                                << QStringList{"c"_q, "hero:x"_q} << false;
        QTest::newRow("clear") << "TalvoraPicker clear"_q << QStringList() << false;
    }

    void batchSession() {
        QFETCH(QString, mel);
        QFETCH(QStringList, selected);
        QFETCH(bool, refused);
        host_->setBatchMode(true);
        const int widgetsBefore = QApplication::topLevelWidgets().size();
        QVERIFY(picker_main::initialize(*host_, &make_test_window).ok());
        host_->processIdle();
        QVERIFY(host_->setSelection({"b"_q}));

        QCOMPARE(host_->executeCommand(mel).ok(), !refused);
        QCOMPARE(host_->selection(), selected);
        QCOMPARE(host_->scriptLog(),
                 refused
                     ? QStringList{"// Error: TalvoraPicker - no user interface in this session"_q}
                     : QStringList());
        // Scene events find no window to serve and make none.
        host_->newScene();
        QVERIFY(!lastWindow);
        QCOMPARE(QApplication::topLevelWidgets().size(), widgetsBefore);
    }

    void directives_data() {
        QTest::addColumn<QString>("mel");
        QTest::addColumn<bool>("succeeds");
        QTest::addColumn<QString>("calls"); // what the window was asked, one call a line
        QTest::addColumn<QString>("error");

        // Select skips the names it cannot find; the picker hears of the outcome once.
        QTest::newRow("select, first name missing")
            << "select a b c"_q << true << "setSelection:b,c"_q << QString();
        QTest::newRow("select, last name missing fails")
            << "select b nope"_q << false << "setSelection:b"_q << QString();
        QTest::newRow("open") << "open \"/p/a.pkr\" \"/p/b c.pkr\""_q << true
                              << "load_pickers:/p/a.pkr|/p/b c.pkr"_q << QString();
        QTest::newRow("open fails with a file that does not")
            << "open a missing"_q << false << "load_pickers:a|missing"_q << QString();
        QTest::newRow("saveas takes a file")
            << "saveas \"/p/o.pkr\""_q << true << "saveas_current:/p/o.pkr"_q << QString();
        QTest::newRow("saveas takes one file at most")
            << "saveas a b"_q << false << QString() << "saveas takes one file at most"_q;
        QTest::newRow("rebind") << "rebind `picker_ListNamespaces`;"_q << true
                                << "rebindFront:hero,hero:sub:1"_q << QString();
        QTest::newRow("restore not compressed")
            << "restore \"QUJDREVGR0g=\""_q << false << "reset"_q << QString();
        // Only as many characters as the key has are decoded: one is never valid base64.
        QTest::newRow("image with a one-byte key")
            << "fetch_image k \"iVBORw0KGgo=\""_q << false << QString() << QString();
        QTest::newRow("directives are case-sensitive")
            << "SELECT b"_q << false << QString() << "unknown directive: SELECT"_q;
    }

    void directives() {
        QFETCH(QString, mel);
        QFETCH(bool, succeeds);
        QFETCH(QString, calls);
        QFETCH(QString, error);
        test_window* window = openWindow();
        QVERIFY(window);
        QCOMPARE(host_->executeCommand("TalvoraPicker "_q + mel).ok(), succeeds);
        QCOMPARE(window->calls.join(QLatin1Char('\n')), calls);
        QCOMPARE(host_->scriptLog().filter("// Error: "_q),
                 error.isEmpty() ? QStringList()
                                 : QStringList{"// Error: TalvoraPicker - "_q + error});
    }

    // A pick is one step on the host's undo queue, among the user's own selections, and the
    // buttons follow each step back and forth.
    void picksUndoLikeSelections_data() {
        QTest::addColumn<QString>("mel");
        QTest::addColumn<QStringList>("selection");
        QTest::newRow("pick undone")
            << "select -r b; TalvoraPicker select c hero:x; undo"_q << QStringList{"b"_q};
        QTest::newRow("clear undone")
            << "select -r b c; TalvoraPicker clear; undo"_q << QStringList{"b"_q, "c"_q};
        QTest::newRow("pick redone")
            << "select -r b; TalvoraPicker select c; undo; redo"_q << QStringList{"c"_q};
        QTest::newRow("picks among selects")
            << "TalvoraPicker select c; select -add b; TalvoraPicker select hero:x; undo; undo"_q
            << QStringList{"c"_q};
    }

    void picksUndoLikeSelections() {
        QFETCH(QString, mel);
        QFETCH(QStringList, selection);
        test_window* window = openWindow();
        QVERIFY(window);
        QVERIFY(host_->executeCommand(mel).ok());
        QCOMPARE(host_->selection(), selection);
        QCOMPARE(window->calls.last(), "setSelection:"_q + selection.join(QLatin1Char(',')));
    }

    void settingsAppliedAndStored_data() {
        QTest::addColumn<QRect>("stored");
        QTest::addColumn<QRect>("shown"); // null: centred on the primary screen
        QTest::newRow("low widens, keeps the height")
            << QRect(10, 20, 300, 100) << QRect(10, 20, 150, 100);
        QTest::newRow("partly off screen") << QRect(-10, 30, 200, 180) << QRect();
    }

    void settingsAppliedAndStored() {
        QFETCH(QRect, stored);
        QFETCH(QRect, shown);
        settings().setValue("pickerSize"_q, stored.size());
        settings().setValue("pickerPosition"_q, stored.topLeft());
        if (shown.isNull()) {
            shown.setSize(stored.size());
            shown.moveCenter(QGuiApplication::primaryScreen()->availableGeometry().center());
        }
        QVERIFY(openWindow());
        QCOMPARE(QRect(picker_main::dock()->pos(), picker_main::dock()->size()), shown);
        picker_main::dock()->resize(210, 220);
        picker_main::dock()->move(50, 60);
        host_->quit();
        QVERIFY(!picker_main::dock());
        QVERIFY(!lastWindow);
        // The host quits without unloading: nothing calls into the picker any more.
        QVERIFY(!picker_main::host());
        QCOMPARE(host_->callbackCount("SelectionChanged"_q), 0);
        QCOMPARE(settings().value("pickerSize"_q).toSize(), QSize(210, 220));
        QCOMPARE(settings().value("pickerPosition"_q).toPoint(), QPoint(50, 60));
    }
};

QTEST_MAIN(tst_picker_main)
#include "tst_picker_main.moc"
