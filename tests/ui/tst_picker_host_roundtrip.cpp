#include "picker_embedded_host.h"
#include "picker_main.h"
#include "picker_view.h"
#include "picker_window.h"
#include "ui_test_support.h"

#include <QDockWidget>
#include <QStandardPaths>
#include <QTest>

#include <memory>

namespace {

// Forwards every operation to the embedded host and keeps the MEL the picker queues.
class recording_host : public picker_host {
public:
    explicit recording_host(picker_embedded_host& host) : host_(host) {}

    host_status openPlugin(const QString& vendor, const QString& version,
                           const QString& requiredApiVersion) override {
        return host_.openPlugin(vendor, version, requiredApiVersion);
    }
    host_status registerCommand(const QString& name, picker_command_fn command) override {
        return host_.registerCommand(name, command);
    }
    host_status deregisterCommand(const QString& name) override {
        return host_.deregisterCommand(name);
    }
    QString loadPath() const override { return host_.loadPath(); }
    picker_callback_id addEventCallback(const QString& event, picker_event_fn function,
                                        void* clientData, host_status* status) override {
        return host_.addEventCallback(event, function, clientData, status);
    }
    host_status removeCallback(picker_callback_id id) override { return host_.removeCallback(id); }
    host_status executeCommandOnIdle(const QString& mel, bool displayEnabled) override {
        queued.append(mel);
        return host_.executeCommandOnIdle(mel, displayEnabled);
    }
    host_status executePythonCommandOnIdle(const QString& python, bool displayEnabled) override {
        queued.append(python);
        return host_.executePythonCommandOnIdle(python, displayEnabled);
    }
    host_status activeSelection(QStringList& names) override {
        return host_.activeSelection(names);
    }
    host_status selectByName(const QString& name, picker_list_adjustment adjustment) override {
        return host_.selectByName(name, adjustment);
    }
    host_status clearSelectionList() override { return host_.clearSelectionList(); }
    void displayError(const QString& text) override { host_.displayError(text); }
    QWidget* mainWindow() override { return host_.mainWindow(); }

    QStringList queued;

private:
    picker_embedded_host& host_;
};

// Counts what the host hands over, so echoes show.
class counting_window : public picker_window {
public:
    using picker_window::picker_window;
    void setSelection(const QStringList& names) override {
        ++selectionsReceived;
        picker_window::setSelection(names);
    }
    int selectionsReceived = 0;
};

QWidget* make_counting_window(QDockWidget* dock) {
    return new counting_window(dock);
}

const QString left_hand = QStringLiteral("hero:L_hand_ctrl");
const QString right_hand = QStringLiteral("hero:R_hand_ctrl");
const QString root = QStringLiteral("hero:root_ctrl");
const QString hostile = QStringLiteral("x\"; print \"pwned");

QString scene_data(const QByteArray& tabStream) {
    return QString::fromLatin1(qCompress(tabStream, 9).toBase64());
}

// Body: (both hands) and (root); Face: (left hand).
QByteArray rig_picker() {
    return tab_stream(4, 0,
                      {{QStringLiteral("Body"), {{left_hand, right_hand}, {root}}},
                       {QStringLiteral("Face"), {{left_hand}}}});
}

QList<qint16> lit_states(picker_view* view) {
    QList<qint16> states;
    for (const buttonRecord& button : *view->buttons())
        states.append(button.selected);
    return states;
}

bool log_mentions(const QStringList& log, const QString& text) {
    return std::any_of(log.begin(), log.end(),
                       [&](const QString& line) { return line.contains(text); });
}

} // namespace

class tst_picker_host_roundtrip : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void command_opens_the_dock_with_one_untitled_tab();
    void scene_pickers_come_back_with_the_dock();
    void host_selection_lights_every_tab_data();
    void host_selection_lights_every_tab();
    void click_path_posts_once_without_echo();
    void empty_selection_posts_clear();
    void hostile_name_selects_and_runs_nothing();
    void restore_of_nothing_resets();
    void scene_events_reset_data();
    void scene_events_reset();
    void corrupt_scene_data_is_reported_and_kept_out();

private:
    // Opens a scene holding the rig and, when given, stored picker data; then runs the command.
    bool open_picker(const QByteArray& tabStream = QByteArray());
    counting_window* window() const {
        return dynamic_cast<counting_window*>(picker_main::window());
    }
    picker_view* view(int index) const {
        return qobject_cast<picker_view*>(tabs_of(*window())->widget(index));
    }

    std::unique_ptr<picker_embedded_host> host_;
    std::unique_ptr<recording_host> recorder_;
};

void tst_picker_host_roundtrip::initTestCase() {
    QStandardPaths::setTestModeEnabled(true);
    qputenv("TALVORA_PICKER_CONFIG", QByteArray("/nonexistent/pickers.cfg"));
}

void tst_picker_host_roundtrip::init() {
    host_ = std::make_unique<picker_embedded_host>();
    recorder_ = std::make_unique<recording_host>(*host_);
    QVERIFY(picker_main::initialize(*recorder_, &make_counting_window));
}

void tst_picker_host_roundtrip::cleanup() {
    host_->quit();
    picker_main::uninitialize();
    recorder_.reset();
    host_.reset();
}

bool tst_picker_host_roundtrip::open_picker(const QByteArray& tabStream) {
    QMap<QString, QString> fileInfo;
    if (!tabStream.isEmpty())
        fileInfo.insert(QStringLiteral("TalvoraPickerData"), scene_data(tabStream));
    host_->openScene({QStringLiteral("persp"), left_hand, right_hand, root}, fileInfo);
    if (!host_->executeCommand(QStringLiteral("TalvoraPicker")))
        return false;
    host_->processIdle();
    recorder_->queued.clear();
    return window() != nullptr;
}

void tst_picker_host_roundtrip::command_opens_the_dock_with_one_untitled_tab() {
    QVERIFY(picker_main::dock() == nullptr);
    QVERIFY(open_picker());

    QVERIFY(picker_main::dock()->isVisible());
    QCOMPARE(picker_main::dock()->widget(), static_cast<QWidget*>(window()));
    QCOMPARE(tabs_of(*window())->count(), 1);
    QCOMPARE(tabs_of(*window())->tabText(0), QStringLiteral("Untitled"));
}

void tst_picker_host_roundtrip::scene_pickers_come_back_with_the_dock() {
    QVERIFY(open_picker(rig_picker()));

    QCOMPARE(tabs_of(*window())->count(), 2);
    QCOMPARE(tabs_of(*window())->tabText(1), QStringLiteral("Face"));
    QCOMPARE(view(0)->buttons()->size(), 2);
    QCOMPARE(view(0)->buttons()->at(0).att.sel, (QStringList{left_hand, right_hand}));
}

void tst_picker_host_roundtrip::host_selection_lights_every_tab_data() {
    QTest::addColumn<QStringList>("selected");
    QTest::addColumn<QList<qint16>>("body");
    QTest::addColumn<QList<qint16>>("face");
    QTest::addColumn<bool>("addEnabled");

    QTest::newRow("one hand: body partly, face fully")
        << QStringList{left_hand} << QList<qint16>{2, 0} << QList<qint16>{1} << true;
    QTest::newRow("both hands and root") << QStringList{right_hand, root, left_hand}
                                         << QList<qint16>{1, 1} << QList<qint16>{1} << true;
    QTest::newRow("other hand") << QStringList{right_hand} << QList<qint16>{2, 0}
                                << QList<qint16>{0} << true;
    QTest::newRow("nothing") << QStringList() << QList<qint16>{0, 0} << QList<qint16>{0} << false;
}

void tst_picker_host_roundtrip::host_selection_lights_every_tab() {
    QFETCH(QStringList, selected);
    QFETCH(QList<qint16>, body);
    QFETCH(QList<qint16>, face);
    QFETCH(bool, addEnabled);

    QVERIFY(open_picker(rig_picker()));
    QVERIFY(host_->setSelection({root}));
    QVERIFY(host_->setSelection(selected));

    QCOMPARE(picker_window::selection(), host_->selection());
    QCOMPARE(lit_states(view(0)), body);
    QCOMPARE(lit_states(view(1)), face);
    const QVector<char> which = view(0)->buttons()->at(0).which;
    QCOMPARE(which.at(0) != 0, selected.contains(left_hand));
    QCOMPARE(which.at(1) != 0, selected.contains(right_hand));
    QCOMPARE(entry_of(*window(), 2, QStringLiteral("Add One Button"))->isEnabled(), addEnabled);
    QVERIFY(recorder_->queued.isEmpty());
}

void tst_picker_host_roundtrip::click_path_posts_once_without_echo() {
    QVERIFY(open_picker(rig_picker()));
    QVERIFY(host_->setSelection({left_hand}));
    const int before = window()->selectionsReceived;

    // What a click on the root button does: clear everything, light it, post.
    window()->clearAllSelected();
    QVERIFY((*view(0)->buttons())[1].select(false));
    QCOMPARE(picker_window::selection(), QStringList{root});
    QVERIFY(window()->postSelection());
    QCOMPARE(recorder_->queued,
             QStringList{QStringLiteral("TalvoraPicker select \"hero:root_ctrl\"")});
    QCOMPARE(host_->selection(), QStringList{left_hand});

    host_->processIdle();

    QCOMPARE(host_->selection(), QStringList{root});
    QCOMPARE(window()->selectionsReceived - before, 1);
    QCOMPARE(recorder_->queued.size(), 1);
    QCOMPARE(lit_states(view(0)), (QList<qint16>{0, 1}));
    QCOMPARE(lit_states(view(1)), QList<qint16>{0});
}

void tst_picker_host_roundtrip::empty_selection_posts_clear() {
    QVERIFY(open_picker(rig_picker()));
    QVERIFY(host_->setSelection({left_hand, root}));
    window()->clearAllSelected();
    QVERIFY(picker_window::selection().isEmpty());
    QVERIFY(window()->postSelection());
    QCOMPARE(recorder_->queued, QStringList{QStringLiteral("TalvoraPicker clear")});

    host_->processIdle();

    QVERIFY(host_->selection().isEmpty());
    QCOMPARE(lit_states(view(0)), (QList<qint16>{0, 0}));
}

void tst_picker_host_roundtrip::hostile_name_selects_and_runs_nothing() {
    QVERIFY(open_picker(tab_stream(4, 0, {{QStringLiteral("Trap"), {{hostile}}}})));
    host_->clearScriptLog();
    window()->clearAllSelected();
    QVERIFY((*view(0)->buttons())[0].select(false));
    QVERIFY(window()->postSelection());
    QCOMPARE(recorder_->queued,
             QStringList{QStringLiteral("TalvoraPicker select \"x\\\"; print \\\"pwned\"")});

    host_->processIdle();

    QVERIFY(host_->selection().isEmpty());
    const QStringList log = host_->scriptLog();
    QVERIFY2(
        !std::any_of(log.begin(), log.end(),
                     [](const QString& line) { return line.trimmed() == QLatin1String("pwned"); }),
        qPrintable(log.join(QLatin1Char('\n'))));
}

void tst_picker_host_roundtrip::restore_of_nothing_resets() {
    QVERIFY(open_picker(rig_picker()));
    QCOMPARE(tabs_of(*window())->count(), 2);

    QVERIFY(host_->executeCommand(QStringLiteral("TalvoraPicker restore \"\"")));

    QCOMPARE(tabs_of(*window())->count(), 1);
    QCOMPARE(tabs_of(*window())->tabText(0), QStringLiteral("Untitled"));
    QVERIFY(view(0)->buttons()->isEmpty());
}

void tst_picker_host_roundtrip::scene_events_reset_data() {
    QTest::addColumn<QString>("event");
    QTest::newRow("deleteAll") << QStringLiteral("deleteAll");
    QTest::newRow("NewSceneOpened") << QStringLiteral("NewSceneOpened");
}

void tst_picker_host_roundtrip::scene_events_reset() {
    QFETCH(QString, event);

    QVERIFY(open_picker(rig_picker()));
    QCOMPARE(tabs_of(*window())->count(), 2);

    host_->raiseEvent(event);

    QCOMPARE(tabs_of(*window())->count(), 1);
    QCOMPARE(tabs_of(*window())->tabText(0), QStringLiteral("Untitled"));
    QVERIFY(view(0)->buttons()->isEmpty());
}

void tst_picker_host_roundtrip::corrupt_scene_data_is_reported_and_kept_out() {
    QVERIFY(open_picker(rig_picker()));
    host_->clearScriptLog();
    const QString truncated = scene_data(rig_picker().left(30));

    host_->executeCommand(QStringLiteral("TalvoraPicker restore \"%1\"").arg(truncated));

    QVERIFY(log_mentions(host_->scriptLog(),
                         QStringLiteral("TalvoraPicker - could not read the pickers stored in "
                                        "the scene")));
    QCOMPARE(tabs_of(*window())->count(), 2);
    QCOMPARE(tabs_of(*window())->tabText(0), QStringLiteral("Body"));
}

QTEST_MAIN(tst_picker_host_roundtrip)
#include "tst_picker_host_roundtrip.moc"
