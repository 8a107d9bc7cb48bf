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

const QString hostFailure = QStringLiteral("(kFailure): Unexpected Internal Failure");
const QString noInterface =
    QStringLiteral("// Error: TalvoraPicker - no user interface in this session");

QString reported(const QString& message) {
    return QStringLiteral("// Error: TalvoraPicker - %1: %2 ").arg(message, hostFailure);
}

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
    void setBackgroundImage(const QString& key, const QPixmap& image) override {
        calls << QStringLiteral("setBackgroundImage:%1:%2x%3")
                     .arg(key)
                     .arg(image.width())
                     .arg(image.height());
    }
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
int windowsMade = 0;

QWidget* make_test_window(QDockWidget* dock) {
    ++windowsMade;
    auto* window = new test_window(dock);
    lastWindow = window;
    return window;
}

// Counts raise() on the dock, which Qt announces as a z-order change.
class raise_counter : public QObject {
public:
    int raises = 0;
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::ZOrderChange)
            ++raises;
        return QObject::eventFilter(watched, event);
    }
};

const QStringList allEvents{QStringLiteral("SelectionChanged"), QStringLiteral("quitApplication"),
                            QStringLiteral("deleteAll"), QStringLiteral("NewSceneOpened"),
                            QStringLiteral("SceneOpened")};

QString compressed_base64(const QByteArray& bytes) {
    return QString::fromLatin1(qCompress(bytes, 9).toBase64());
}

void count_event(void* clientData) {
    ++*static_cast<int*>(clientData);
}

const QString restoreText =
    QStringLiteral("TalvoraPicker restore `fileInfo -q \"TalvoraPickerData\"`;");

} // namespace

class tst_picker_main : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void unloadStopsWhenRefused_data();
    void unloadStopsWhenRefused();
    void firstRunCreatesTheDock();
    void commandWithoutArguments();
    void batchSession_data();
    void batchSession();

    void selectAndClear_data();
    void selectAndClear();
    void selectionUnreadable();
    void restore_data();
    void restore();
    void sceneEvents();
    void directives_data();
    void directives();
    void fetchImage_data();
    void fetchImage();

    void settingsApplied_data();
    void settingsApplied();
    void geometryStoredOnLeaving_data();
    void geometryStoredOnLeaving();

private:
    test_window* openWindow();
    QSettings settings() const {
        return QSettings(QStringLiteral("Talvora"), QStringLiteral("picker"));
    }

    std::unique_ptr<picker_embedded_host> host_;
};

void tst_picker_main::initTestCase() {
    QStandardPaths::setTestModeEnabled(true);
}

void tst_picker_main::init() {
    settings().clear();
    host_ = std::make_unique<picker_embedded_host>();
    host_->openScene({QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("hero:x"),
                      QStringLiteral("hero:sub:y")},
                     {});
}

void tst_picker_main::cleanup() {
    host_->clearFailures();
    if (picker_main::host())
        picker_main::uninitialize();
    host_.reset();
}

test_window* tst_picker_main::openWindow() {
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

void tst_picker_main::unloadStopsWhenRefused_data() {
    QTest::addColumn<int>("failing");
    QTest::addColumn<bool>("dockLeft");

    QTest::newRow("plug-in refused stops at once") << int(operation::openPlugin) << true;
    QTest::newRow("deregistration refused stops after cleanup")
        << int(operation::deregisterCommand) << false;
}

void tst_picker_main::unloadStopsWhenRefused() {
    QFETCH(int, failing);
    QFETCH(bool, dockLeft);

    QVERIFY(openWindow());
    host_->setFailing(static_cast<operation>(failing), true);
    QVERIFY(!picker_main::uninitialize().ok());
    QCOMPARE(host_->scriptLog(),
             QStringList{reported(QStringLiteral("could not deregister the plugin"))});
    QVERIFY(host_->isCommandRegistered(QStringLiteral("TalvoraPicker")));
    for (const QString& name : allEvents)
        QCOMPARE(host_->callbackCount(name), 1);
    QCOMPARE(picker_main::dock() != nullptr, dockLeft);
}

void tst_picker_main::firstRunCreatesTheDock() {
    QVERIFY(picker_main::initialize(*host_, &make_test_window).ok());
    QVERIFY(!picker_main::dock());
    QVERIFY(host_->executeCommand(QStringLiteral("TalvoraPicker")).ok());

    QDockWidget* dock = picker_main::dock();
    QVERIFY(dock);
    QCOMPARE(dock->windowTitle(), QStringLiteral("TalvoraPicker"));
    QCOMPARE(dock->parentWidget(), host_->mainWindow());
    QVERIFY(dock->isFloating());
    QVERIFY(dock->isVisible());
    QCOMPARE(dock->allowedAreas(), Qt::DockWidgetAreas(Qt::NoDockWidgetArea));
    QCOMPARE(int(dock->windowFlags()) & 0xA, 0);
    QCOMPARE(picker_main::window(), static_cast<picker_window_link*>(lastWindow.data()));

    // The script and the scene restore wait for idle; the current selection is shown at once.
    QCOMPARE(host_->pendingMel().size(), 2);
    QCOMPARE(host_->pendingMel().at(1), restoreText);
    QCOMPARE(lastWindow->calls, QStringList{QStringLiteral("setSelection:")});
    host_->processIdle();
    QCOMPARE(lastWindow->calls,
             (QStringList{QStringLiteral("setSelection:"), QStringLiteral("reset")}));
}

void tst_picker_main::commandWithoutArguments() {
    test_window* window = openWindow();
    QVERIFY(window);
    QDockWidget* dock = picker_main::dock();
    raise_counter counter;
    dock->installEventFilter(&counter);

    dock->hide();
    QVERIFY(host_->executeCommand(QStringLiteral("TalvoraPicker")).ok());
    QVERIFY(dock->isVisible());
    QCOMPARE(window->calls, QStringList{QStringLiteral("setSelection:")});

    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    counter.raises = 0;
    QVERIFY(host_->executeCommand(QStringLiteral("TalvoraPicker")).ok());
    QCOMPARE(counter.raises, 0);

    dock->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(dock));
    QVERIFY(host_->executeCommand(QStringLiteral("TalvoraPicker")).ok());
    QCOMPARE(counter.raises, 1);
    dock->removeEventFilter(&counter);
}

void tst_picker_main::batchSession_data() {
    QTest::addColumn<QString>("mel");
    QTest::addColumn<QStringList>("selected");
    QTest::addColumn<QStringList>("log");

    const QStringList none;
    const QStringList refused{noInterface};
    const QStringList before{QStringLiteral("b")};
    QTest::newRow("no arguments") << QStringLiteral("TalvoraPicker") << before << refused;
    for (const char* directive :
         {"restore", "fetch_image", "bind", "rebind", "save", "saveas", "open"})
        QTest::newRow(directive)
            << QStringLiteral("TalvoraPicker %1 a b").arg(QLatin1String(directive)) << before
            << refused;
    QTest::newRow("select") << QStringLiteral("TalvoraPicker select c hero:x")
                            << QStringList{QStringLiteral("c"), QStringLiteral("hero:x")} << none;
    QTest::newRow("clear") << QStringLiteral("TalvoraPicker clear") << none << none;
}

void tst_picker_main::batchSession() {
    QFETCH(QString, mel);
    QFETCH(QStringList, selected);
    QFETCH(QStringList, log);

    host_->setBatchMode(true);
    windowsMade = 0;
    const int widgetsBefore = QApplication::topLevelWidgets().size();
    QVERIFY(picker_main::initialize(*host_, &make_test_window).ok());
    host_->processIdle();
    QVERIFY(host_->setSelection({QStringLiteral("b")}));

    QCOMPARE(host_->executeCommand(mel).ok(), log.isEmpty());
    QCOMPARE(host_->selection(), selected);
    QCOMPARE(host_->scriptLog(), log);
    // Scene events find no window to serve and make none.
    host_->openScene({QStringLiteral("b")},
                     {{QStringLiteral("TalvoraPickerData"), compressed_base64("x")}});
    host_->raiseEvent(QStringLiteral("deleteAll"));
    host_->processIdle();
    host_->quit();
    QVERIFY(host_->pendingMel().isEmpty());
    QCOMPARE(windowsMade, 0);
    QVERIFY(!picker_main::dock());
    QCOMPARE(QApplication::topLevelWidgets().size(), widgetsBefore);
}

void tst_picker_main::selectAndClear_data() {
    QTest::addColumn<QString>("mel");
    QTest::addColumn<QStringList>("selected");
    QTest::addColumn<int>("notifications");
    QTest::addColumn<bool>("succeeds");

    const QString b = QStringLiteral("b");
    const QString c = QStringLiteral("c");
    QTest::newRow("missing first name")
        << QStringLiteral("TalvoraPicker select a b c") << QStringList{b, c} << 3 << true;
    QTest::newRow("missing last name fails")
        << QStringLiteral("TalvoraPicker select b nope") << QStringList{b} << 2 << false;
    QTest::newRow("no name exists") << QStringLiteral("TalvoraPicker select x y")
                                    << QStringList{QStringLiteral("hero:x")} << 0 << false;
    QTest::newRow("no names clears")
        << QStringLiteral("TalvoraPicker select") << QStringList() << 1 << true;
}

void tst_picker_main::selectAndClear() {
    QFETCH(QString, mel);
    QFETCH(QStringList, selected);
    QFETCH(int, notifications);
    QFETCH(bool, succeeds);

    test_window* window = openWindow();
    QVERIFY(window);
    QVERIFY(host_->setSelection({QStringLiteral("hero:x")}));
    window->calls.clear();
    int raised = 0;
    host_status status;
    const picker_callback_id id =
        host_->addEventCallback(QStringLiteral("SelectionChanged"), &count_event, &raised, &status);

    QCOMPARE(host_->executeCommand(mel).ok(), succeeds);
    QCOMPARE(host_->selection(), selected);
    // The host announced every single change, but the picker heard of the outcome once.
    QCOMPARE(raised, notifications);
    QCOMPARE(window->calls,
             QStringList{QStringLiteral("setSelection:") + selected.join(QLatin1Char(','))});
    host_->removeCallback(id);
}

void tst_picker_main::selectionUnreadable() {
    test_window* window = openWindow();
    QVERIFY(window);
    host_->setFailing(operation::activeSelection, true);
    QVERIFY(host_->executeCommand(QStringLiteral("TalvoraPicker")).ok());
    QCOMPARE(host_->scriptLog(),
             QStringList{QStringLiteral("// Error: TalvoraPicker- could not get the current "
                                        "selection: ") +
                         hostFailure});
    QVERIFY(window->calls.isEmpty());
    // The guard was released: the next change gets through.
    host_->setFailing(operation::activeSelection, false);
    QVERIFY(host_->setSelection({QStringLiteral("c")}));
    QCOMPARE(window->calls, QStringList{QStringLiteral("setSelection:c")});
}

void tst_picker_main::restore_data() {
    QTest::addColumn<QString>("mel");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<bool>("succeeds");

    const QByteArray tabs("\x00\x00\x00\x04\x00\x00\x00\x00\xff", 9);
    QTest::newRow("empty text resets") << QStringLiteral("TalvoraPicker restore \"\"")
                                       << QStringList{QStringLiteral("reset")} << true;
    QTest::newRow("two arguments reset") << QStringLiteral("TalvoraPicker restore a b")
                                         << QStringList{QStringLiteral("reset")} << true;
    QTest::newRow("real data is streamed in")
        << QStringLiteral("TalvoraPicker restore \"%1\"").arg(compressed_base64(tabs))
        << QStringList{QStringLiteral("streamFrom:0000000400000000ff"),
                       QStringLiteral("setSelection:b"), QStringLiteral("fetchFrontImageData")}
        << true;
    QTest::newRow("not base64 resets and fails") << QStringLiteral("TalvoraPicker restore \"!!!!\"")
                                                 << QStringList{QStringLiteral("reset")} << false;
    QTest::newRow("not compressed resets and fails")
        << QStringLiteral("TalvoraPicker restore \"QUJDREVGR0g=\"")
        << QStringList{QStringLiteral("reset")} << false;
}

void tst_picker_main::restore() {
    QFETCH(QString, mel);
    QFETCH(QStringList, calls);
    QFETCH(bool, succeeds);

    test_window* window = openWindow();
    QVERIFY(window);
    QVERIFY(host_->setSelection({QStringLiteral("b")}));
    window->calls.clear();
    QCOMPARE(host_->executeCommand(mel).ok(), succeeds);
    QCOMPARE(window->calls, calls);
}

void tst_picker_main::sceneEvents() {
    QVERIFY(picker_main::initialize(*host_, &make_test_window).ok());
    host_->raiseEvent(QStringLiteral("SceneOpened"));
    QCOMPARE(host_->pendingMel().size(), 1);

    test_window* window = openWindow();
    QVERIFY(window);
    const QByteArray tabs("\x00\x00\x00\x04tabs", 8);
    host_->openScene({QStringLiteral("b")},
                     {{QStringLiteral("TalvoraPickerData"), compressed_base64(tabs)}});
    QCOMPARE(host_->pendingMel(), QStringList{restoreText});
    QVERIFY(window->calls.isEmpty());
    host_->processIdle();
    QCOMPARE(window->calls,
             (QStringList{QStringLiteral("streamFrom:0000000474616273"),
                          QStringLiteral("setSelection:"), QStringLiteral("fetchFrontImageData")}));

    window->calls.clear();
    host_->raiseEvent(QStringLiteral("deleteAll"));
    host_->newScene();
    QCOMPARE(window->calls, (QStringList{QStringLiteral("reset"), QStringLiteral("reset"),
                                         QStringLiteral("reset")}));
    QCOMPARE(host_->scriptLog(), QStringList());
}

void tst_picker_main::directives_data() {
    QTest::addColumn<QString>("mel");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<QStringList>("log");

    const QStringList none;
    QTest::newRow("save") << QStringLiteral("TalvoraPicker save")
                          << QStringList{QStringLiteral("save_current")} << none;
    QTest::newRow("saveas") << QStringLiteral("TalvoraPicker saveas")
                            << QStringList{QStringLiteral("saveas_current")} << none;
    QTest::newRow("open") << QStringLiteral("TalvoraPicker open \"/p/a.pkr\" \"/p/b c.pkr\"")
                          << QStringList{QStringLiteral("load_pickers:/p/a.pkr|/p/b c.pkr")}
                          << none;
    QTest::newRow("bind") << QStringLiteral("TalvoraPicker \"bind\" `picker_ListNamespaces`;")
                          << QStringList{QStringLiteral("rebindFront:hero,hero:sub:0")} << none;
    QTest::newRow("rebind") << QStringLiteral("TalvoraPicker \"rebind\" `picker_ListNamespaces`;")
                            << QStringList{QStringLiteral("rebindFront:hero,hero:sub:1")} << none;
    QTest::newRow("directives are case-sensitive")
        << QStringLiteral("TalvoraPicker SELECT b") << none
        << QStringList{QStringLiteral("// Error: TalvoraPicker - unknown directive: SELECT")};
}

void tst_picker_main::directives() {
    QFETCH(QString, mel);
    QFETCH(QStringList, calls);
    QFETCH(QStringList, log);

    test_window* window = openWindow();
    QVERIFY(window);
    QCOMPARE(host_->executeCommand(mel).ok(), log.isEmpty());
    QCOMPARE(window->calls, calls);
    QCOMPARE(host_->scriptLog(), log);
    QCOMPARE(host_->selection(), QStringList());
}

void tst_picker_main::fetchImage_data() {
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<bool>("succeeds");

    // Only as many characters as the key has are decoded: one is never valid base64.
    const QString pngText = QStringLiteral("iVBORw0KGgo=");
    QTest::newRow("one-byte key decodes nothing")
        << QStringList{QStringLiteral("k"), pngText} << QStringList() << false;
    QTest::newRow("one argument is ignored") << QStringList{pngText} << QStringList() << true;
}

void tst_picker_main::fetchImage() {
    QFETCH(QStringList, args);
    QFETCH(QStringList, calls);
    QFETCH(bool, succeeds);

    test_window* window = openWindow();
    QVERIFY(window);
    QCOMPARE(picker_main::process_command(QStringLiteral("fetch_image"), args).ok(), succeeds);
    QCOMPARE(window->calls, calls);
}

void tst_picker_main::settingsApplied_data() {
    QTest::addColumn<QVariant>("storedSize");
    QTest::addColumn<QVariant>("storedPosition");
    QTest::addColumn<QRect>("geometry"); // null: centred on the primary screen

    QTest::newRow("defaults") << QVariant() << QVariant() << QRect(120, 100, 400, 400);
    QTest::newRow("low widens, keeps the height")
        << QVariant(QSize(300, 100)) << QVariant(QPoint(10, 20)) << QRect(10, 20, 150, 100);
    QTest::newRow("narrow") << QVariant(QSize(100, 300)) << QVariant(QPoint(10, 20))
                            << QRect(10, 20, 150, 300);
    QTest::newRow("partly off screen")
        << QVariant(QSize(200, 180)) << QVariant(QPoint(-10, 30)) << QRect();
}

void tst_picker_main::settingsApplied() {
    QFETCH(QVariant, storedSize);
    QFETCH(QVariant, storedPosition);
    QFETCH(QRect, geometry);

    if (storedSize.isValid())
        settings().setValue(QStringLiteral("pickerSize"), storedSize);
    if (storedPosition.isValid())
        settings().setValue(QStringLiteral("pickerPosition"), storedPosition);
    QVERIFY(openWindow());
    const QDockWidget* dock = picker_main::dock();
    if (geometry.isNull()) {
        QCOMPARE(dock->size(), storedSize.toSize());
        const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
        QCOMPARE(QRect(dock->pos(), dock->size()).center(), available.center());
    } else {
        QCOMPARE(QRect(dock->pos(), dock->size()), geometry);
    }
}

void tst_picker_main::geometryStoredOnLeaving_data() {
    QTest::addColumn<bool>("quit");
    QTest::newRow("unload") << false;
    QTest::newRow("host quits") << true;
}

void tst_picker_main::geometryStoredOnLeaving() {
    QFETCH(bool, quit);
    QVERIFY(openWindow());
    QDockWidget* dock = picker_main::dock();
    dock->resize(210, 220);
    dock->move(50, 60);
    if (quit)
        host_->quit();
    else
        QVERIFY(picker_main::uninitialize().ok());
    QVERIFY(!picker_main::dock());
    QVERIFY(!lastWindow);
    QCOMPARE(settings().value(QStringLiteral("pickerSize")).toSize(), QSize(210, 220));
    QCOMPARE(settings().value(QStringLiteral("pickerPosition")).toPoint(), QPoint(50, 60));
    if (quit) {
        // A second quit finds nothing to save; the command brings a fresh dock back.
        host_->quit();
        QVERIFY(host_->executeCommand(QStringLiteral("TalvoraPicker")).ok());
        QVERIFY(picker_main::dock());
    }
}

QTEST_MAIN(tst_picker_main)
#include "tst_picker_main.moc"
