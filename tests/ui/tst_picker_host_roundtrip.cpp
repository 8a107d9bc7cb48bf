#include "files_test_support.h"

#include <QDockWidget>
#include <QStandardPaths>
#include <QTest>

#include <memory>

namespace {

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

// Body: (both hands) and (root); Face: (left hand).
QByteArray rig_picker() {
    return laid_tabs(
        4, 0,
        {{QStringLiteral("Body"), QString(), QByteArray(), {{left_hand, right_hand}, {root}}},
         {QStringLiteral("Face"), QString(), QByteArray(), {{left_hand}}}});
}

} // namespace

class tst_picker_host_roundtrip : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void command_opens_the_dock_with_the_scene_pickers_data();
    void command_opens_the_dock_with_the_scene_pickers();
    void host_selection_lights_every_tab_data();
    void host_selection_lights_every_tab();
    void posted_selection_runs_once_without_echo_data();
    void posted_selection_runs_once_without_echo();
    void hostile_name_selects_and_runs_nothing_data();
    void hostile_name_selects_and_runs_nothing();
    void damaged_scene_data_keeps_the_whole_tabs_data();
    void damaged_scene_data_keeps_the_whole_tabs();

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
};

void tst_picker_host_roundtrip::initTestCase() {
    QStandardPaths::setTestModeEnabled(true);
    qputenv("TALVORA_PICKER_CONFIG", QByteArray("/nonexistent/pickers.cfg"));
}

void tst_picker_host_roundtrip::init() {
    host_ = std::make_unique<picker_embedded_host>();
    QVERIFY(picker_main::initialize(*host_, &make_counting_window));
}

void tst_picker_host_roundtrip::cleanup() {
    host_->quit();
    picker_main::uninitialize();
    host_.reset();
}

bool tst_picker_host_roundtrip::open_picker(const QByteArray& tabStream) {
    QMap<QString, QString> fileInfo;
    if (!tabStream.isEmpty())
        fileInfo.insert(QStringLiteral("TalvoraPickerData"), scene_text(tabStream));
    host_->openScene({QStringLiteral("persp"), left_hand, right_hand, root}, fileInfo);
    if (!host_->executeCommand(QStringLiteral("TalvoraPicker")))
        return false;
    host_->processIdle();
    return window() != nullptr;
}

void tst_picker_host_roundtrip::command_opens_the_dock_with_the_scene_pickers_data() {
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<QStringList>("titles");
    QTest::addColumn<int>("frontButtons");

    QTest::newRow("nothing stored") << QByteArray() << QStringList{QStringLiteral("Untitled")} << 0;
    QTest::newRow("rig stored") << rig_picker()
                                << QStringList{QStringLiteral("Body"), QStringLiteral("Face")} << 2;
}

void tst_picker_host_roundtrip::command_opens_the_dock_with_the_scene_pickers() {
    QFETCH(QByteArray, stored);
    QFETCH(QStringList, titles);
    QFETCH(int, frontButtons);

    QVERIFY(picker_main::dock() == nullptr);
    QVERIFY(open_picker(stored));

    QVERIFY(picker_main::dock()->isVisible());
    QCOMPARE(picker_main::dock()->widget(), static_cast<QWidget*>(window()));
    QCOMPARE(tab_titles(*window()), titles);
    QCOMPARE(view(0)->buttons()->size(), frontButtons);
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
    QCOMPARE(host_->pendingIdleCount(), 0);
}

void tst_picker_host_roundtrip::posted_selection_runs_once_without_echo_data() {
    QTest::addColumn<int>("button");
    QTest::addColumn<QString>("posted");
    QTest::addColumn<QStringList>("selected");
    QTest::addColumn<QList<qint16>>("body");

    QTest::newRow("root button") << 1 << QStringLiteral("TalvoraPicker select \"hero:root_ctrl\"")
                                 << QStringList{root} << QList<qint16>{0, 1};
    QTest::newRow("nothing lit") << -1 << QStringLiteral("TalvoraPicker clear") << QStringList()
                                 << QList<qint16>{0, 0};
}

void tst_picker_host_roundtrip::posted_selection_runs_once_without_echo() {
    QFETCH(int, button);
    QFETCH(QString, posted);
    QFETCH(QStringList, selected);
    QFETCH(QList<qint16>, body);

    QVERIFY(open_picker(rig_picker()));
    QVERIFY(host_->setSelection({left_hand}));
    const int before = window()->selectionsReceived;

    // What a click does: clear everything, light the button under the pointer, post.
    window()->clearAllSelected();
    if (button >= 0)
        QVERIFY((*view(0)->buttons())[button].select(false));
    QCOMPARE(picker_window::selection(), selected);
    QVERIFY(window()->postSelection());
    QCOMPARE(host_->pendingMel(), QStringList{posted});
    QCOMPARE(host_->selection(), QStringList{left_hand});

    host_->processIdle();

    QCOMPARE(host_->selection(), selected);
    QCOMPARE(window()->selectionsReceived - before, 1);
    QCOMPARE(host_->pendingIdleCount(), 0);
    QCOMPARE(lit_states(view(0)), body);
    QCOMPARE(lit_states(view(1)), QList<qint16>{0});
}

void tst_picker_host_roundtrip::hostile_name_selects_and_runs_nothing_data() {
    QTest::addColumn<QString>("hostile");
    // Each starts with a real node, so a reader fooled into ending the name early
    // would select it and run the rest.
    QTest::newRow("closes the literal") << QStringLiteral("persp\"; print \"pwned");
    QTest::newRow("ends the statement") << QStringLiteral("persp; print pwned");
    QTest::newRow("escapes the quote") << QStringLiteral("persp\\\"; print \"pwned");
    QTest::newRow("backquoted command") << QStringLiteral("persp`print \"pwned\"`");
}

void tst_picker_host_roundtrip::hostile_name_selects_and_runs_nothing() {
    QFETCH(QString, hostile);
    QVERIFY(open_picker(
        laid_tabs(4, 0, {{QStringLiteral("Trap"), QString(), QByteArray(), {{hostile}}}})));
    host_->clearScriptLog();
    window()->clearAllSelected();
    QVERIFY((*view(0)->buttons())[0].select(false));
    QVERIFY(window()->postSelection());

    host_->processIdle();

    QVERIFY(host_->selection().isEmpty());
    QCOMPARE(host_->scriptLog(), QStringList());
}

void tst_picker_host_roundtrip::damaged_scene_data_keeps_the_whole_tabs_data() {
    QTest::addColumn<int>("cut");
    QTest::addColumn<QStringList>("titles");
    QTest::addColumn<QString>("error");

    const QByteArray whole = rig_picker();
    const int face = whole.indexOf(QByteArray("\0F\0a\0c\0e", 8));
    const QString damaged = QStringLiteral("// Error: TalvoraPicker - the pickers stored in the "
                                           "scene are damaged; %1 of 2 tabs were restored: the "
                                           "data ends in the middle of %2 ");
    QTest::newRow("in the second tab")
        << face + 2 << QStringList{QStringLiteral("Body")}
        << damaged.arg(QLatin1String("1"), QLatin1String("the title of tab 1"));
    QTest::newRow("in the first tab: the tabs shown stay")
        << 30 << QStringList{QStringLiteral("Old")}
        << damaged.arg(QLatin1String("0"), QLatin1String("the background key of tab 0"));
    QTest::newRow("in the header") << 6 << QStringList{QStringLiteral("Old")}
                                   << QStringLiteral("// Error: TalvoraPicker - could not read the "
                                                     "pickers stored in the scene: the data ends "
                                                     "in the middle of the tab count ");
}

void tst_picker_host_roundtrip::damaged_scene_data_keeps_the_whole_tabs() {
    QFETCH(int, cut);
    QFETCH(QStringList, titles);
    QFETCH(QString, error);

    QVERIFY(open_picker(laid_tabs(4, 0, {{QStringLiteral("Old"), QString(), QByteArray(), {}}})));
    host_->clearScriptLog();

    host_->executeCommand(
        QStringLiteral("TalvoraPicker restore \"%1\"").arg(scene_text(rig_picker().left(cut))));

    QCOMPARE(host_->scriptLog(), QStringList{error});
    QCOMPARE(tab_titles(*window()), titles);
}

QTEST_MAIN(tst_picker_host_roundtrip)
#include "tst_picker_host_roundtrip.moc"
