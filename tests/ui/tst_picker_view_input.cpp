// Pointer events go through the window system, as a user's do, so that held buttons add up and
// the application sees the modifiers; on Qt 5 that is not the default.
#define QTEST_QPA_MOUSE_HANDLING

#include "picker_embedded_host.h"
#include "picker_gesture_cmd.h"
#include "picker_main.h"
#include "picker_view.h"
#include "picker_window.h"

#include <QBitmap>
#include <QDockWidget>
#include <QMenu>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

#include <functional>
#include <memory>

// Qt 6 knows these types already.
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
Q_DECLARE_METATYPE(Qt::MouseButton)
#endif

namespace {

using point_path = QList<QPoint>;
using button_list_t = QList<Qt::MouseButton>;

const QStringList scene_nodes = {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"),
                                 QStringLiteral("d"), QStringLiteral("e"), QStringLiteral("f")};

// A 20-unit button centred on pos; at zoom 1 it answers widget points pos - 9 to pos + 9.
int add_button(picker_view* view, const QPoint& pos, const QStringList& sel,
               qint32 type = buttonAttributes::Selection, qint32 api = buttonAttributes::Mel) {
    buttonAttributes att;
    att.pos = pos;
    att.size = 20;
    att.type = type;
    att.api = api;
    att.color = 0xFFB22222;
    att.tcolor = 0xFF000000;
    att.sel = sel;
    return view->push_button(att, -1);
}

QString gesture_of(const picker_view* view) {
    const picker_mouse_cmd* cmd = view->mouseCommand();
    if (cmd == nullptr)
        return QStringLiteral("none");
    if (dynamic_cast<const select_button_cmd*>(cmd) != nullptr)
        return QStringLiteral("select");
    if (dynamic_cast<const track_button_cmd*>(cmd) != nullptr)
        return QStringLiteral("track");
    if (dynamic_cast<const zoom_picker_cmd*>(cmd) != nullptr)
        return QStringLiteral("zoom");
    if (dynamic_cast<const shift_picker_cmd*>(cmd) != nullptr)
        return QStringLiteral("shift");
    return QStringLiteral("other");
}

QList<qint16> lit_states(const picker_view* view) {
    QList<qint16> states;
    for (const buttonRecord& button : view->buttons())
        states.append(button.selected);
    return states;
}

QList<QPoint> positions(const picker_view* view) {
    QList<QPoint> list;
    for (const buttonRecord& button : view->buttons())
        list.append(button.att.pos);
    return list;
}

QAction* action_of(const QWidget* widget, const QString& text) {
    const QList<QAction*> actions = widget->actions();
    for (QAction* action : actions) {
        if (action->text() == text)
            return action;
    }
    return nullptr;
}

// Hands the next popup menu to inspect once it is up, then closes it.
void answer_next_popup(std::function<void(QMenu*)> inspect) {
    auto* poll = new QTimer(qApp);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, inspect]() {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (menu == nullptr)
            return;
        poll->stop();
        poll->deleteLater();
        inspect(menu);
        menu->close();
    });
    poll->start(0);
}

QBitmap bitmap_of(const QCursor& cursor, bool mask) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return mask ? cursor.mask() : cursor.bitmap();
#else
    return mask ? cursor.mask(Qt::ReturnByValue) : cursor.bitmap(Qt::ReturnByValue);
#endif
}

} // namespace

class tst_picker_view_input : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void press_starts_gesture_data();
    void press_starts_gesture();
    void context_menu_entries_data();
    void context_menu_entries();
    void hover_tool_tip_data();
    void hover_tool_tip();
    void clicks_reach_the_host_data();
    void clicks_reach_the_host();
    void control_drag_moves_selection_data();
    void control_drag_moves_selection();
    void marquee_starts_past_three_pixels_data();
    void marquee_starts_past_three_pixels();
    void marquee_follows_the_pointer_data();
    void marquee_follows_the_pointer();
    void drag_zoom_data();
    void drag_zoom();
    void command_button_runs_on_release_over_it_data();
    void command_button_runs_on_release_over_it();
    void add_many_fans_out_data();
    void add_many_fans_out();
    void cursors_data();
    void cursors();
    void forwarded_keys_fire_every_bound_action_data();
    void forwarded_keys_fire_every_bound_action();
    void hit_test_data();
    void hit_test();

private:
    void drag(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, const QPoint& from,
              const point_path& path);

    std::unique_ptr<picker_embedded_host> host_;
    picker_window* window_ = nullptr;
    picker_view* view_ = nullptr;
};

void tst_picker_view_input::initTestCase() {
    QStandardPaths::setTestModeEnabled(true);
    qputenv("TALVORA_PICKER_CONFIG", QByteArray("/nonexistent/pickers.cfg"));
}

void tst_picker_view_input::init() {
    host_ = std::make_unique<picker_embedded_host>();
    QVERIFY(picker_main::initialize(*host_, &picker_window::create));
    host_->openScene(scene_nodes, {});
    QVERIFY(host_->executeCommand(QStringLiteral("TalvoraPicker")));
    host_->processIdle();
    window_ = dynamic_cast<picker_window*>(picker_main::window());
    QVERIFY(window_ != nullptr);
    picker_main::dock()->resize(640, 560);
    QVERIFY(QTest::qWaitForWindowExposed(picker_main::dock()));
    view_ = window_->frontPicker();
    QTRY_VERIFY(view_->width() >= 400 && view_->height() >= 300);
}

void tst_picker_view_input::cleanup() {
    host_->quit();
    picker_main::uninitialize();
    host_.reset();
}

void tst_picker_view_input::drag(Qt::MouseButton button, Qt::KeyboardModifiers modifiers,
                                 const QPoint& from, const point_path& path) {
    QTest::mousePress(view_, button, modifiers, from);
    for (const QPoint& p : path)
        QTest::mouseMove(view_, p);
    QTest::mouseRelease(view_, button, modifiers, path.isEmpty() ? from : path.last());
}

// Buttons: 0 selection at (50, 50), 1 command at (100, 50), 2 command under 3 selection at
// (150, 50), 4 selection under 5 command at (200, 50).
void tst_picker_view_input::press_starts_gesture_data() {
    QTest::addColumn<button_list_t>("presses");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QPoint>("at");
    QTest::addColumn<QString>("gesture");

    const auto none = Qt::KeyboardModifiers();
    const button_list_t left{Qt::LeftButton};
    QTest::newRow("left, empty canvas") << left << none << QPoint(300, 150) << "select";
    QTest::newRow("left, selection button") << left << none << QPoint(50, 50) << "select";
    QTest::newRow("left, command button") << left << none << QPoint(100, 50) << "track";
    QTest::newRow("Shift+left, command button")
        << left << Qt::KeyboardModifiers(Qt::ShiftModifier) << QPoint(100, 50) << "track";
    QTest::newRow("Ctrl+left, command button")
        << left << Qt::KeyboardModifiers(Qt::ControlModifier) << QPoint(100, 50) << "select";
    QTest::newRow("Ctrl+Shift+left, command button")
        << left << (Qt::ControlModifier | Qt::ShiftModifier) << QPoint(100, 50) << "track";
    QTest::newRow("earlier command over later selection")
        << left << none << QPoint(150, 50) << "track";
    QTest::newRow("earlier selection over later command")
        << left << none << QPoint(200, 50) << "select";
    QTest::newRow("Alt+left") << left << Qt::KeyboardModifiers(Qt::AltModifier) << QPoint(50, 50)
                              << "none";
    QTest::newRow("Alt+right") << button_list_t{Qt::RightButton}
                               << Qt::KeyboardModifiers(Qt::AltModifier) << QPoint(50, 50)
                               << "zoom";
    QTest::newRow("Alt+left+middle")
        << button_list_t{Qt::LeftButton, Qt::MiddleButton} << Qt::KeyboardModifiers(Qt::AltModifier)
        << QPoint(300, 150) << "zoom";
    QTest::newRow("Alt+middle") << button_list_t{Qt::MiddleButton}
                                << Qt::KeyboardModifiers(Qt::AltModifier) << QPoint(300, 150)
                                << "shift";
    QTest::newRow("middle") << button_list_t{Qt::MiddleButton} << none << QPoint(300, 150)
                            << "shift";
    QTest::newRow("left+middle") << button_list_t{Qt::LeftButton, Qt::MiddleButton} << none
                                 << QPoint(300, 150) << "none";
}

void tst_picker_view_input::press_starts_gesture() {
    QFETCH(button_list_t, presses);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(QPoint, at);
    QFETCH(QString, gesture);
    add_button(view_, QPoint(50, 50), {QStringLiteral("a")});
    add_button(view_, QPoint(100, 50), {QString()}, buttonAttributes::Command);
    add_button(view_, QPoint(150, 50), {QString()}, buttonAttributes::Command);
    add_button(view_, QPoint(155, 50), {QStringLiteral("b")});
    add_button(view_, QPoint(200, 50), {QStringLiteral("c")});
    add_button(view_, QPoint(205, 50), {QString()}, buttonAttributes::Command);

    for (Qt::MouseButton button : presses)
        QTest::mousePress(view_, button, modifiers, at);

    QCOMPARE(gesture_of(view_), gesture);
    for (Qt::MouseButton button : presses)
        QTest::mouseRelease(view_, button, modifiers, at);
    QCOMPARE(gesture_of(view_), QStringLiteral("none"));
}

void tst_picker_view_input::context_menu_entries_data() {
    QTest::addColumn<int>("target"); // button under the pointer, -1 for empty canvas
    QTest::addColumn<QStringList>("hostSelection");
    QTest::addColumn<bool>("update");
    QTest::addColumn<bool>("remove");
    QTest::addColumn<bool>("addOne");
    QTest::addColumn<QString>("commandEntry");

    const QString add = QStringLiteral("Add Command Button...");
    const QStringList a{QStringLiteral("a")};
    QTest::newRow("empty canvas, nothing lit")
        << -1 << QStringList() << false << false << false << add;
    QTest::newRow("empty canvas, a lit") << -1 << a << false << true << true << add;
    QTest::newRow("command button")
        << 1 << a << false << true << true << QStringLiteral("Edit Command Button...");
    QTest::newRow("selection button, scene selection") << 0 << a << true << true << true << add;
    QTest::newRow("selection button, no scene selection")
        << 0 << QStringList() << false << true << false << add;
}

void tst_picker_view_input::context_menu_entries() {
    QFETCH(int, target);
    QFETCH(QStringList, hostSelection);
    QFETCH(bool, update);
    QFETCH(bool, remove);
    QFETCH(bool, addOne);
    QFETCH(QString, commandEntry);
    const QList<QPoint> centres{QPoint(50, 50), QPoint(100, 50)};
    add_button(view_, centres[0], {QStringLiteral("a")});
    add_button(view_, centres[1], {QStringLiteral("print 1")}, buttonAttributes::Command);
    QVERIFY(host_->setSelection(hostSelection));

    QMap<QString, bool> enabled;
    QStringList texts;
    answer_next_popup([&](QMenu* menu) {
        const QList<QAction*> actions = menu->actions();
        for (const QAction* action : actions) {
            enabled.insert(action->text(), action->isEnabled());
            texts.append(action->text());
        }
    });
    const QPoint at = target < 0 ? QPoint(300, 150) : centres[target];
    QTest::mousePress(view_, Qt::RightButton, Qt::KeyboardModifiers(), at);
    QTest::mouseRelease(view_, Qt::RightButton, Qt::KeyboardModifiers(), at);

    QVERIFY2(texts.contains(commandEntry), qPrintable(texts.join(QLatin1Char('|'))));
    QCOMPARE(enabled.value(QStringLiteral("Update Button")), update);
    QCOMPARE(enabled.value(QStringLiteral("Delete Button")), remove);
    QCOMPARE(enabled.value(QStringLiteral("Add One Button")), addOne);
    QCOMPARE(enabled.value(QStringLiteral("Add Many Buttons")), true);
    QVERIFY(action_of(view_, QStringLiteral("Delete Button"))->isEnabled());
    QCOMPARE(gesture_of(view_), QStringLiteral("none"));
}

void tst_picker_view_input::hover_tool_tip_data() {
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<qint32>("type");
    QTest::addColumn<QString>("tip");

    const QStringList six{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"),
                          QStringLiteral("d"), QStringLiteral("e"), QStringLiteral("f")};
    const qint32 selection = buttonAttributes::Selection;
    QTest::newRow("four names") << QStringList(six.mid(0, 4)) << selection
                                << QStringLiteral("a\nb\nc\nd");
    QTest::newRow("five names") << QStringList(six.mid(0, 5)) << selection
                                << QStringLiteral("a\nb\nc\n...and 2 more");
    QTest::newRow("six names") << six << selection << QStringLiteral("a\nb\nc\n...and 3 more");
    QTest::newRow("command button clears")
        << QStringList{QStringLiteral("print 1")} << qint32(buttonAttributes::Command) << QString();
}

void tst_picker_view_input::hover_tool_tip() {
    QFETCH(QStringList, names);
    QFETCH(qint32, type);
    QFETCH(QString, tip);
    add_button(view_, QPoint(200, 50), {QStringLiteral("x"), QStringLiteral("y")});
    add_button(view_, QPoint(50, 50), names, type);

    QTest::mouseMove(view_, QPoint(200, 50));
    QCOMPARE(view_->toolTip(), QStringLiteral("x\ny"));
    QTest::mouseMove(view_, QPoint(50, 50));
    QCOMPARE(view_->toolTip(), tip);
    QTest::mouseMove(view_, QPoint(300, 150));
    QCOMPARE(view_->toolTip(), QString());
}

// Buttons: 0 (a), 1 (b), 2 (a) share-alike with 0; clicks at their centres or empty canvas.
void tst_picker_view_input::clicks_reach_the_host_data() {
    QTest::addColumn<QList<int>>("clicks");  // -1 empty canvas
    QTest::addColumn<QList<int>>("shifted"); // which clicks hold Shift
    QTest::addColumn<QStringList>("hostSelection");
    QTest::addColumn<QList<qint16>>("lit");

    const QString a = QStringLiteral("a");
    const QString b = QStringLiteral("b");
    QTest::newRow("click a") << QList<int>{0} << QList<int>{} << QStringList{a}
                             << QList<qint16>{1, 0, 1};
    QTest::newRow("click a, then b")
        << QList<int>{0, 1} << QList<int>{} << QStringList{b} << QList<qint16>{0, 1, 0};
    QTest::newRow("click a, Shift-click b")
        << QList<int>{0, 1} << QList<int>{1} << QStringList{a, b} << QList<qint16>{1, 1, 1};
    QTest::newRow("Shift-click toggles a off")
        << QList<int>{0, 1, 0} << QList<int>{1, 2} << QStringList{b} << QList<qint16>{0, 1, 0};
    QTest::newRow("click a, then empty canvas")
        << QList<int>{0, -1} << QList<int>{} << QStringList() << QList<qint16>{0, 0, 0};
    QTest::newRow("click a, Shift-click empty canvas")
        << QList<int>{0, -1} << QList<int>{1} << QStringList{a} << QList<qint16>{1, 0, 1};
}

void tst_picker_view_input::clicks_reach_the_host() {
    QFETCH(QList<int>, clicks);
    QFETCH(QList<int>, shifted);
    QFETCH(QStringList, hostSelection);
    QFETCH(QList<qint16>, lit);
    const QList<QPoint> centres{QPoint(50, 50), QPoint(100, 50), QPoint(150, 50)};
    add_button(view_, centres[0], {QStringLiteral("a")});
    add_button(view_, centres[1], {QStringLiteral("b")});
    add_button(view_, centres[2], {QStringLiteral("a")});

    for (int i = 0; i < clicks.size(); ++i) {
        const Qt::KeyboardModifiers modifiers =
            shifted.contains(i) ? Qt::ShiftModifier : Qt::NoModifier;
        const QPoint at = clicks[i] < 0 ? QPoint(300, 150) : centres[clicks[i]];
        QTest::mouseClick(view_, Qt::LeftButton, modifiers, at);
        host_->processIdle();
    }

    QCOMPARE(host_->selection(), hostSelection);
    QCOMPARE(picker_window::selection(), hostSelection);
    QCOMPARE(lit_states(view_), lit);
    QCOMPARE(view_->undoer()->count(), 0);
}

void tst_picker_view_input::control_drag_moves_selection_data() {
    QTest::addColumn<qreal>("zoom");
    QTest::addColumn<QPoint>("drag");
    QTest::addColumn<bool>("pressLit"); // press on lit button 0, else on unlit button 2
    QTest::addColumn<QList<QPoint>>("moved");

    QTest::newRow("zoom 1 moves both lit")
        << qreal(1) << QPoint(7, -5) << true << QList<QPoint>{{57, 45}, {107, 45}, {150, 50}};
    QTest::newRow("zoom 2 halves, toward zero")
        << qreal(2) << QPoint(7, -5) << true << QList<QPoint>{{53, 48}, {103, 48}, {150, 50}};
    QTest::newRow("zoom 0.5 doubles")
        << qreal(0.5) << QPoint(-3, 4) << true << QList<QPoint>{{44, 58}, {94, 58}, {150, 50}};
    QTest::newRow("unlit button moves alone")
        << qreal(1) << QPoint(10, 10) << false << QList<QPoint>{{50, 50}, {100, 50}, {160, 60}};
}

void tst_picker_view_input::control_drag_moves_selection() {
    QFETCH(qreal, zoom);
    QFETCH(QPoint, drag);
    QFETCH(bool, pressLit);
    QFETCH(QList<QPoint>, moved);
    add_button(view_, QPoint(50, 50), {QStringLiteral("a")});
    add_button(view_, QPoint(100, 50), {QStringLiteral("b")});
    add_button(view_, QPoint(150, 50), {QStringLiteral("c")});
    QVERIFY(host_->setSelection({QStringLiteral("a"), QStringLiteral("b")}));
    view_->setZoom(static_cast<float>(zoom), QPoint(0, 0));
    const QList<QPoint> before = positions(view_);
    const QPoint press = view_->mapToScreen((pressLit ? before[0] : before[2]));
    QSignalSpy steps(view_->undoer(), &QUndoStack::indexChanged);

    QTest::mousePress(view_, Qt::LeftButton, Qt::ControlModifier, press);
    QTest::mouseMove(view_, press + QPoint(1, 0));
    QTest::mouseMove(view_, press + drag);
    QTest::mouseRelease(view_, Qt::LeftButton, Qt::ControlModifier, press + drag);

    QCOMPARE(positions(view_), moved);
    QCOMPARE(steps.count(), 1);
    QCOMPARE(view_->undoer()->undoText(), QStringLiteral("Move Buttons"));
    // Editing leaves the host's selection alone.
    QCOMPARE(host_->selection(), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
    view_->undoer()->undo();
    QCOMPARE(positions(view_), before);
}

void tst_picker_view_input::marquee_starts_past_three_pixels_data() {
    QTest::addColumn<QPoint>("move");
    QTest::addColumn<bool>("shown");

    QTest::newRow("3 across") << QPoint(3, 0) << false;
    QTest::newRow("4 across") << QPoint(-4, 0) << true;
    QTest::newRow("2 + 2") << QPoint(2, 2) << true;
}

void tst_picker_view_input::marquee_starts_past_three_pixels() {
    QFETCH(QPoint, move);
    QFETCH(bool, shown);
    const QPoint press(300, 150);

    QTest::mousePress(view_, Qt::LeftButton, Qt::KeyboardModifiers(), press);
    QTest::mouseMove(view_, press + move);

    marquee_overlay* marquee = view_->overlay()->marquee();
    QCOMPARE(!marquee->isEmpty(), shown);
    if (shown)
        QCOMPARE(marquee->bounds(),
                 QRect(qMin(press.x(), press.x() + move.x()), qMin(press.y(), press.y() + move.y()),
                       qAbs(move.x()), qAbs(move.y())));
    QTest::mouseRelease(view_, Qt::LeftButton, Qt::KeyboardModifiers(), press + move);
    QVERIFY(marquee->isEmpty());
}

// Buttons 0 (a), 1 (b), 2 (c) in a row at y 50; c is selected in the host before the press.
void tst_picker_view_input::marquee_follows_the_pointer_data() {
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<point_path>("path");
    QTest::addColumn<QList<qint16>>("lit");
    QTest::addColumn<QStringList>("hostSelection");

    const auto shift = Qt::KeyboardModifiers(Qt::ShiftModifier);
    const QString a = QStringLiteral("a");
    const QString b = QStringLiteral("b");
    const QString c = QStringLiteral("c");
    QTest::newRow("plain band over a") << Qt::KeyboardModifiers() << point_path{{70, 70}}
                                       << QList<qint16>{1, 0, 0} << QStringList{a};
    QTest::newRow("Shift band adds a")
        << shift << point_path{{70, 70}} << QList<qint16>{1, 0, 1} << QStringList{c, a};
    QTest::newRow("Shift band grows over a and b")
        << shift << point_path{{70, 70}, {120, 70}} << QList<qint16>{1, 1, 1}
        << QStringList{c, a, b};
    QTest::newRow("Shift band shrinks off b")
        << shift << point_path{{120, 70}, {70, 70}} << QList<qint16>{1, 0, 1} << QStringList{c, a};
    QTest::newRow("Shift band shrinks to nothing")
        << shift << point_path{{120, 70}, {33, 31}} << QList<qint16>{0, 0, 1} << QStringList{c};
}

void tst_picker_view_input::marquee_follows_the_pointer() {
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(point_path, path);
    QFETCH(QList<qint16>, lit);
    QFETCH(QStringList, hostSelection);
    add_button(view_, QPoint(50, 50), {QStringLiteral("a")});
    add_button(view_, QPoint(100, 50), {QStringLiteral("b")});
    add_button(view_, QPoint(150, 50), {QStringLiteral("c")});
    QVERIFY(host_->setSelection({QStringLiteral("c")}));

    QTest::mousePress(view_, Qt::LeftButton, modifiers, QPoint(30, 30));
    for (const QPoint& p : path)
        QTest::mouseMove(view_, p);
    QCOMPARE(lit_states(view_), lit);
    QTest::mouseRelease(view_, Qt::LeftButton, modifiers, path.last());
    host_->processIdle();

    QCOMPARE(host_->selection(), hostSelection);
    QCOMPARE(lit_states(view_), lit);
}

void tst_picker_view_input::drag_zoom_data() {
    QTest::addColumn<QPoint>("move");
    QTest::addColumn<qreal>("zoom");

    QTest::newRow("39 right") << QPoint(39, 0) << qreal(1);
    QTest::newRow("40 right") << QPoint(40, 0) << qreal(1.0625);
    QTest::newRow("40 up") << QPoint(0, -40) << qreal(0.9375);
    QTest::newRow("-39") << QPoint(-20, -19) << qreal(1);
    QTest::newRow("60 down") << QPoint(0, 60) << qreal(1.0625 * 1.0625);
}

void tst_picker_view_input::drag_zoom() {
    QFETCH(QPoint, move);
    QFETCH(qreal, zoom);
    const QPoint press(200, 150);
    const QPoint anchored = view_->mapToPicker(press);

    drag(Qt::RightButton, Qt::AltModifier, press, {press + QPoint(1, 1), press + move});

    QCOMPARE(view_->zoom(), zoom);
    QVERIFY((view_->mapToScreen(anchored) - press).manhattanLength() <= 2);
}

void tst_picker_view_input::command_button_runs_on_release_over_it_data() {
    QTest::addColumn<QString>("script");
    QTest::addColumn<qint32>("api");
    QTest::addColumn<QPoint>("release");
    QTest::addColumn<QStringList>("ran");

    const QString print = QStringLiteral("print \"hi\"");
    const qint32 mel = buttonAttributes::Mel;
    const QStringList nothing;
    QTest::newRow("MEL, released over it")
        << print << mel << QPoint(58, 58) << QStringList{QStringLiteral("hi")};
    QTest::newRow("Python, released over it")
        << QStringLiteral("print('hi')") << qint32(buttonAttributes::Python) << QPoint(40, 40)
        << QStringList{QStringLiteral("python: print('hi')")};
    QTest::newRow("released outside") << print << mel << QPoint(59, 50) << nothing;
    QTest::newRow("empty script") << QString() << mel << QPoint(50, 50) << nothing;
    QTest::newRow("unknown language") << print << qint32(2) << QPoint(50, 50) << nothing;
}

void tst_picker_view_input::command_button_runs_on_release_over_it() {
    QFETCH(QString, script);
    QFETCH(qint32, api);
    QFETCH(QPoint, release);
    QFETCH(QStringList, ran);
    add_button(view_, QPoint(50, 50), {script}, buttonAttributes::Command, api);
    const buttonRecord& button = view_->buttons()->at(0);
    host_->clearScriptLog();

    QTest::mousePress(view_, Qt::LeftButton, Qt::KeyboardModifiers(), QPoint(50, 50));
    QCOMPARE(button.selected, qint16(buttonRecord::All));
    QTest::mouseMove(view_, QPoint(80, 50));
    QCOMPARE(button.selected, qint16(buttonRecord::None));
    QTest::mouseMove(view_, release);
    QTest::mouseRelease(view_, Qt::LeftButton, Qt::KeyboardModifiers(), release);
    host_->processIdle();

    QCOMPARE(host_->scriptLog(), ran);
    QCOMPARE(button.selected, qint16(buttonRecord::None));
    QVERIFY(picker_window::selection().isEmpty());
}

// Three selected nodes make three buttons of the toolbox's size 10 from picker (100, 100).
void tst_picker_view_input::add_many_fans_out_data() {
    QTest::addColumn<point_path>("path");
    QTest::addColumn<QList<QPoint>>("placed");

    QTest::newRow("no move: a row, then turned up")
        << point_path{} << QList<QPoint>{{100, 100}, {100, 90}, {100, 80}};
    QTest::newRow("right, wider than a button")
        << point_path{{160, 100}} << QList<QPoint>{{100, 100}, {120, 100}, {140, 100}};
    QTest::newRow("left, never closer than a button")
        << point_path{{94, 102}} << QList<QPoint>{{100, 100}, {90, 100}, {80, 100}};
    QTest::newRow("down, the small sideways part kept")
        << point_path{{130, 100}, {103, 190}} << QList<QPoint>{{100, 100}, {101, 130}, {102, 160}};
}

void tst_picker_view_input::add_many_fans_out() {
    QFETCH(point_path, path);
    QFETCH(QList<QPoint>, placed);
    QVERIFY(host_->setSelection({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
    QSignalSpy changed(view_, &picker_view::changed);
    QSignalSpy steps(view_->undoer(), &QUndoStack::indexChanged);
    action_of(view_, QStringLiteral("Add Many Buttons"))->trigger();
    QCOMPARE(view_->cursor().hotSpot(), QPoint(7, 1));

    QTest::mousePress(view_, Qt::LeftButton, Qt::KeyboardModifiers(), QPoint(100, 100));
    QCOMPARE(positions(view_), (QList<QPoint>{{100, 100}, {111, 100}, {122, 100}}));
    for (const QPoint& p : path)
        QTest::mouseMove(view_, p);
    QTest::mouseRelease(view_, Qt::LeftButton, Qt::KeyboardModifiers(),
                        path.isEmpty() ? QPoint(100, 100) : path.last());

    QCOMPARE(positions(view_), placed);
    QStringList names;
    for (const buttonRecord& button : *view_->buttons())
        names += button.att.sel;
    QCOMPARE(names, (QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
    QCOMPARE(lit_states(view_), (QList<qint16>{1, 1, 1}));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(steps.count(), 0);
    QCOMPARE(gesture_of(view_), QStringLiteral("none"));
    QCOMPARE(view_->cursor().shape(), Qt::ArrowCursor);
}

void tst_picker_view_input::cursors_data() {
    QTest::addColumn<bool>("addMany");
    QTest::addColumn<QPoint>("hotSpot");
    QTest::addColumn<QPoint>("black");
    QTest::addColumn<QPoint>("white");
    QTest::addColumn<QPoint>("clear");

    // Edit: row 10 of the outline is 2018 under a mask of 4095. Add many: row 3 carries the plus
    // sign, 7950 under 16287.
    QTest::newRow("edit") << false << QPoint(1, 1) << QPoint(5, 10) << QPoint(2, 10)
                          << QPoint(12, 10);
    QTest::newRow("add many") << true << QPoint(7, 1) << QPoint(12, 3) << QPoint(4, 3)
                              << QPoint(5, 3);
}

void tst_picker_view_input::cursors() {
    QFETCH(bool, addMany);
    QFETCH(QPoint, hotSpot);
    QFETCH(QPoint, black);
    QFETCH(QPoint, white);
    QFETCH(QPoint, clear);
    if (addMany)
        action_of(view_, QStringLiteral("Add Many Buttons"))->trigger();
    else
        QTest::keyPress(view_, Qt::Key_Control, Qt::ControlModifier);

    const QCursor cursor = view_->cursor();
    QCOMPARE(cursor.shape(), Qt::BitmapCursor);
    QCOMPARE(cursor.hotSpot(), hotSpot);
    const QImage shape = bitmap_of(cursor, false).toImage();
    const QImage mask = bitmap_of(cursor, true).toImage();
    QCOMPARE(shape.size(), QSize(32, 32));
    QCOMPARE(QColor(shape.pixel(black)), QColor(Qt::black));
    QCOMPARE(QColor(mask.pixel(black)), QColor(Qt::black));
    QCOMPARE(QColor(shape.pixel(white)), QColor(Qt::white));
    QCOMPARE(QColor(mask.pixel(white)), QColor(Qt::black));
    QCOMPARE(QColor(mask.pixel(clear)), QColor(Qt::white));

    if (!addMany) {
        QTest::keyRelease(view_, Qt::Key_Control, Qt::KeyboardModifiers());
        QCOMPARE(view_->cursor().shape(), Qt::ArrowCursor);
    }
}

void tst_picker_view_input::forwarded_keys_fire_every_bound_action_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QString>("step"); // empty: nothing fires

    const auto none = Qt::KeyboardModifiers();
    QTest::newRow("Backspace") << int(Qt::Key_Backspace) << none << "Delete Button";
    QTest::newRow("minus") << int(Qt::Key_Minus) << none << "Adjust Size";
    QTest::newRow("plus") << int(Qt::Key_Plus) << none << "Adjust Size";
    QTest::newRow("equal") << int(Qt::Key_Equal) << none << "Adjust Size";
    QTest::newRow("Shift plus") << int(Qt::Key_Plus) << Qt::KeyboardModifiers(Qt::ShiftModifier)
                                << "Adjust Size";
    QTest::newRow("left arrow") << int(Qt::Key_Left) << none << "Button Move";
    QTest::newRow("Shift minus") << int(Qt::Key_Minus) << Qt::KeyboardModifiers(Qt::ShiftModifier)
                                 << "";
    QTest::newRow("unbound key") << int(Qt::Key_Q) << none << "";
}

// Keys reach the view through the window, which hands them on to the front tab only.
void tst_picker_view_input::forwarded_keys_fire_every_bound_action() {
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(QString, step);
    add_button(view_, QPoint(50, 50), {QStringLiteral("a")});
    add_button(view_, QPoint(100, 50), {QStringLiteral("b")});
    QVERIFY(host_->setSelection({QStringLiteral("a")}));
    QSignalSpy steps(view_->undoer(), &QUndoStack::indexChanged);
    picker_main::dock()->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(picker_main::dock()));
    window_->setFocus(Qt::MouseFocusReason);
    QVERIFY(window_->hasFocus());

    QTest::keyClick(window_, static_cast<Qt::Key>(key), modifiers);
    QCOMPARE(steps.count(), step.isEmpty() ? 0 : 1);
    QCOMPARE(view_->undoer()->undoText(), step);

    window_->new_tab();
    window_->setFocus(Qt::MouseFocusReason);
    QTest::keyClick(window_, static_cast<Qt::Key>(key), modifiers);
    QCOMPARE(steps.count(), step.isEmpty() ? 0 : 1);
}

void tst_picker_view_input::hit_test_data() {
    QTest::addColumn<double>("zoom");
    QTest::addColumn<QPoint>("shift");

    QTest::newRow("zoom 1") << 1.0 << QPoint(0, 0);
    QTest::newRow("quarter, shifted") << 0.25 << QPoint(7, -3);
    QTest::newRow("zoom 1, shifted back") << 1.0 << QPoint(-3, -4);
    QTest::newRow("2.5, shifted") << 2.5 << QPoint(10, 12);
    QTest::newRow("16, shifted back") << 16.0 << QPoint(-600, -500);
}

void tst_picker_view_input::hit_test() {
    QFETCH(double, zoom);
    QFETCH(QPoint, shift);

    // Overlapping buttons of odd sizes, some reaching past the view's top left corner.
    picker_view view;
    view.resize(200, 150);
    const QList<QPair<QPoint, int>> buttons = {{QPoint(0, 0), 9},   {QPoint(5, 5), 12},
                                               {QPoint(6, 6), 3},   {QPoint(-3, 20), 7},
                                               {QPoint(44, 37), 1}, {QPoint(40, 30), 25}};
    for (const auto& button : buttons) {
        buttonAttributes att;
        att.pos = button.first;
        att.size = button.second;
        view.push_button(att, -1);
    }
    view.setZoom(static_cast<float>(zoom), QPoint(0, 0));
    view.setShift(shift);

    // Every pixel finds the earliest button whose screen rectangle holds it.
    for (int y = -5; y < 155; ++y) {
        for (int x = -5; x < 205; ++x) {
            const QPoint p(x, y);
            buttonRecord* earliest = nullptr;
            for (buttonRecord& button : *view.buttons()) {
                if (view.mapToScreen(button.bounds).contains(p)) {
                    earliest = &button;
                    break;
                }
            }
            QCOMPARE(view.find_button(p), earliest);
        }
    }
}

QTEST_MAIN(tst_picker_view_input)
#include "tst_picker_view_input.moc"
