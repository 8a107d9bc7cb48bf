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

namespace {

using operation = picker_embedded_host::operation;

// Stands in for the picker window: records what the command asks of it.
class test_window : public QWidget, public picker_window_link {
public:
    explicit test_window(QWidget* parent) : QWidget(parent) {}
    QStringList calls;

    void setSelection(const QStringList& names) override {
        calls << QStringLiteral("setSelection:") + names.join(QLatin1Char(','));
    }
    void reset() override { calls << QStringLiteral("reset"); }
    void streamFrom(QDataStream& stream) override {
        calls << QStringLiteral("streamFrom:") +
                     QString::fromLatin1(stream.device()->readAll().toHex());
    }
    void fetchFrontImageData() override { calls << QStringLiteral("fetchFrontImageData"); }
    void setBackgroundImage(const QString& key, const QPixmap&) override { calls << key; }
    void save_current() override { calls << QStringLiteral("save_current"); }
    void saveas_current() override { calls << QStringLiteral("saveas_current"); }
    void load_pickers(const QStringList& paths) override {
        calls << QStringLiteral("load_pickers:") + paths.join(QLatin1Char('|'));
    }
    void rebindFront(const QStringList& namespaces, bool rebind) override {
        calls << QStringLiteral("rebindFront:%1:%2")
                     .arg(namespaces.join(QLatin1Char(',')))
                     .arg(rebind ? 1 : 0);
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
    return QSettings(QStringLiteral("Talvora"), QStringLiteral("picker"));
}

} // namespace

class tst_picker_main : public QObject {
    Q_OBJECT

    std::unique_ptr<picker_embedded_host> host_;

    test_window* openWindow() {
        if (!picker_main::host())
            picker_main::initialize(*host_, &make_test_window);
        host_->processIdle();
        host_->executeCommand(QStringLiteral("TalvoraPicker"));
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
        host_->openScene({QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("hero:x"),
                          QStringLiteral("hero:sub:y")},
                         {});
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
                 QStringList{QStringLiteral("// Error: TalvoraPicker - could not deregister the "
                                            "plugin: ") +
                             QStringLiteral("(kFailure): Unexpected Internal Failure ")});
        QVERIFY(host_->isCommandRegistered(QStringLiteral("TalvoraPicker")));
        QCOMPARE(host_->callbackCount(QStringLiteral("SceneOpened")), 1);
        QVERIFY(!picker_main::dock());
    }

    // The dock the command makes, and the scene events it then serves.
    void dockFollowsTheScene() {
        QVERIFY(picker_main::initialize(*host_, &make_test_window).ok());
        QVERIFY(host_->executeCommand(QStringLiteral("TalvoraPicker")).ok());

        QDockWidget* dock = picker_main::dock();
        QVERIFY(dock);
        QCOMPARE(dock->windowTitle(), QStringLiteral("TalvoraPicker"));
        QCOMPARE(dock->parentWidget(), host_->mainWindow());
        QVERIFY(dock->isFloating());
        QCOMPARE(dock->allowedAreas(), Qt::DockWidgetAreas(Qt::NoDockWidgetArea));
        // The scene restore waits for idle; the current selection is shown at once.
        QCOMPARE(host_->pendingMel().last(),
                 QStringLiteral("TalvoraPicker restore `fileInfo -q \"TalvoraPickerData\"`;"));
        test_window* window = lastWindow;
        QCOMPARE(window->calls, QStringList{QStringLiteral("setSelection:")});
        host_->processIdle();
        QCOMPARE(window->calls.last(), QStringLiteral("reset"));

        window->calls.clear();
        host_->openScene({QStringLiteral("b")},
                         {{QStringLiteral("TalvoraPickerData"),
                           compressed_base64(QByteArray("\x00\x00\x00\x04tabs", 8))}});
        QVERIFY(window->calls.isEmpty());
        host_->processIdle();
        QCOMPARE(window->calls, (QStringList{QStringLiteral("streamFrom:0000000474616273"),
                                             QStringLiteral("setSelection:"),
                                             QStringLiteral("fetchFrontImageData")}));
        window->calls.clear();
        host_->raiseEvent(QStringLiteral("deleteAll"));
        host_->newScene();
        QCOMPARE(window->calls, QStringList({QStringLiteral("reset"), QStringLiteral("reset"),
                                             QStringLiteral("reset")}));
    }

    void batchSession_data() {
        QTest::addColumn<QString>("mel");
        QTest::addColumn<QStringList>("selected");
        QTest::addColumn<bool>("refused");
        const QStringList before{QStringLiteral("b")};
        QTest::newRow("no arguments") << QStringLiteral("TalvoraPicker") << before << true;
        for (const char* directive : {"restore", "bind", "open"})
            QTest::newRow(directive)
                << QStringLiteral("TalvoraPicker %1 a b").arg(QLatin1String(directive)) << before
                << true;
        QTest::newRow("select") << QStringLiteral("TalvoraPicker select c hero:x")
                                << QStringList{QStringLiteral("c"), QStringLiteral("hero:x")}
                                << false;
        QTest::newRow("clear") << QStringLiteral("TalvoraPicker clear") << QStringList() << false;
    }

    void batchSession() {
        QFETCH(QString, mel);
        QFETCH(QStringList, selected);
        QFETCH(bool, refused);
        host_->setBatchMode(true);
        const int widgetsBefore = QApplication::topLevelWidgets().size();
        QVERIFY(picker_main::initialize(*host_, &make_test_window).ok());
        host_->processIdle();
        QVERIFY(host_->setSelection({QStringLiteral("b")}));

        QCOMPARE(host_->executeCommand(mel).ok(), !refused);
        QCOMPARE(host_->selection(), selected);
        QCOMPARE(host_->scriptLog(),
                 refused ? QStringList{QStringLiteral(
                               "// Error: TalvoraPicker - no user interface in this session")}
                         : QStringList());
        // Scene events find no window to serve and make none.
        host_->newScene();
        QVERIFY(!lastWindow);
        QCOMPARE(QApplication::topLevelWidgets().size(), widgetsBefore);
    }

    void directives_data() {
        QTest::addColumn<QString>("mel");
        QTest::addColumn<bool>("succeeds");
        QTest::addColumn<QStringList>("calls");
        QTest::addColumn<QString>("error");

        // Select skips the names it cannot find; the picker hears of the outcome once.
        QTest::newRow("select, first name missing")
            << QStringLiteral("TalvoraPicker select a b c") << true
            << QStringList{QStringLiteral("setSelection:b,c")} << QString();
        QTest::newRow("select, last name missing fails")
            << QStringLiteral("TalvoraPicker select b nope") << false
            << QStringList{QStringLiteral("setSelection:b")} << QString();
        QTest::newRow("open") << QStringLiteral("TalvoraPicker open \"/p/a.pkr\" \"/p/b c.pkr\"")
                              << true
                              << QStringList{QStringLiteral("load_pickers:/p/a.pkr|/p/b c.pkr")}
                              << QString();
        QTest::newRow("rebind") << QStringLiteral("TalvoraPicker rebind `picker_ListNamespaces`;")
                                << true
                                << QStringList{QStringLiteral("rebindFront:hero,hero:sub:1")}
                                << QString();
        QTest::newRow("restore not compressed")
            << QStringLiteral("TalvoraPicker restore \"QUJDREVGR0g=\"") << false
            << QStringList{QStringLiteral("reset")} << QString();
        // Only as many characters as the key has are decoded: one is never valid base64.
        QTest::newRow("image with a one-byte key")
            << QStringLiteral("TalvoraPicker fetch_image k \"iVBORw0KGgo=\"") << false
            << QStringList() << QString();
        QTest::newRow("directives are case-sensitive")
            << QStringLiteral("TalvoraPicker SELECT b") << false << QStringList()
            << QStringLiteral("TalvoraPicker - unknown directive: SELECT");
    }

    void directives() {
        QFETCH(QString, mel);
        QFETCH(bool, succeeds);
        QFETCH(QStringList, calls);
        QFETCH(QString, error);
        test_window* window = openWindow();
        QVERIFY(window);
        QCOMPARE(host_->executeCommand(mel).ok(), succeeds);
        QCOMPARE(window->calls, calls);
        QCOMPARE(host_->scriptLog().filter(QStringLiteral("// Error: ")),
                 error.isEmpty() ? QStringList()
                                 : QStringList{QStringLiteral("// Error: ") + error});
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
        settings().setValue(QStringLiteral("pickerSize"), stored.size());
        settings().setValue(QStringLiteral("pickerPosition"), stored.topLeft());
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
        QCOMPARE(settings().value(QStringLiteral("pickerSize")).toSize(), QSize(210, 220));
        QCOMPARE(settings().value(QStringLiteral("pickerPosition")).toPoint(), QPoint(50, 60));
    }
};

QTEST_MAIN(tst_picker_main)
#include "tst_picker_main.moc"
