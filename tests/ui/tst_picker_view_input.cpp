// Pointer events go through the window system, as a user's do, so that held buttons add up and
// the application sees the modifiers; on Qt 5 that is not the default.
#define QTEST_QPA_MOUSE_HANDLING

#include "picker_embedded_host.h"
#include "picker_gesture_cmd.h"
#include "picker_main.h"
#include "picker_view.h"
#include "picker_window.h"
#include "ui_test_support.h"

#include <QBitmap>
#include <QDockWidget>
#include <QSignalSpy>
#include <QTest>

#include <memory>

// Qt 6 knows these types already.
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
Q_DECLARE_METATYPE(Qt::MouseButton)
#endif

namespace {

using points = QVector<QPoint>;
using button_list_t = QList<Qt::MouseButton>;

const QStringList scene_nodes = {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"),
                                 QStringLiteral("d"), QStringLiteral("e"), QStringLiteral("f")};

// Three selection buttons a, b, c in a row at y 50.
void add_row(picker_view* view) {
    for (int i = 0; i < 3; ++i)
        add_button(view, QPoint(50 + 50 * i, 50), {scene_nodes.at(i)});
}

QString gesture_of(const picker_view* view) {
    const picker_mouse_cmd* cmd = view->mouseCommand();
    return cmd == nullptr                                           ? QStringLiteral("none")
           : dynamic_cast<const select_button_cmd*>(cmd) != nullptr ? QStringLiteral("select")
           : dynamic_cast<const track_button_cmd*>(cmd) != nullptr  ? QStringLiteral("track")
           : dynamic_cast<const zoom_picker_cmd*>(cmd) != nullptr   ? QStringLiteral("zoom")
           : dynamic_cast<const shift_picker_cmd*>(cmd) != nullptr  ? QStringLiteral("shift")
                                                                    : QStringLiteral("other");
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

    std::unique_ptr<picker_embedded_host> host_;
    picker_window* window_ = nullptr;
    picker_view* view_ = nullptr;

    void drag(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, const QPoint& from,
              const points& path) {
        QTest::mousePress(view_, button, modifiers, from);
        for (const QPoint& p : path)
            QTest::mouseMove(view_, p);
        QTest::mouseRelease(view_, button, modifiers, path.isEmpty() ? from : path.last());
    }

private slots:
    void initTestCase() { isolate_settings(); }

    void init() {
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

    void cleanup() {
        host_->quit();
        picker_main::uninitialize();
        host_.reset();
    }

    // Buttons: 0 selection at (50, 50), 1 command at (100, 50), 2 command under 3 selection at
    // (150, 50), 4 selection under 5 command at (200, 50).
    void press_starts_gesture_data() {
        QTest::addColumn<button_list_t>("presses");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<QString>("gesture");

        const auto none = Qt::KeyboardModifiers();
        const auto alt = Qt::KeyboardModifiers(Qt::AltModifier);
        const button_list_t left{Qt::LeftButton};
        const button_list_t leftMiddle{Qt::LeftButton, Qt::MiddleButton};
        QTest::newRow("left, command") << left << none << QPoint(100, 50) << "track";
        QTest::newRow("Ctrl+left, command")
            << left << Qt::KeyboardModifiers(Qt::ControlModifier) << QPoint(100, 50) << "select";
        QTest::newRow("Ctrl+Shift+left, command")
            << left << (Qt::ControlModifier | Qt::ShiftModifier) << QPoint(100, 50) << "track";
        QTest::newRow("earlier command wins") << left << none << QPoint(150, 50) << "track";
        QTest::newRow("earlier selection wins") << left << none << QPoint(200, 50) << "select";
        QTest::newRow("Alt+left") << left << alt << QPoint(50, 50) << "none";
        QTest::newRow("Alt+right")
            << button_list_t{Qt::RightButton} << alt << QPoint(50, 50) << "zoom";
        QTest::newRow("Alt+left+middle") << leftMiddle << alt << QPoint(300, 150) << "zoom";
        QTest::newRow("middle") << button_list_t{Qt::MiddleButton} << none << QPoint(300, 150)
                                << "shift";
        QTest::newRow("left+middle") << leftMiddle << none << QPoint(300, 150) << "none";
    }

    void press_starts_gesture() {
        QFETCH(button_list_t, presses);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(QPoint, at);
        QFETCH(QString, gesture);
        const qint32 command = buttonAttributes::Command;
        add_button(view_, QPoint(50, 50), {QStringLiteral("a")});
        add_button(view_, QPoint(100, 50), {QString()}, command);
        add_button(view_, QPoint(150, 50), {QString()}, command);
        add_button(view_, QPoint(155, 50), {QStringLiteral("b")});
        add_button(view_, QPoint(200, 50), {QStringLiteral("c")});
        add_button(view_, QPoint(205, 50), {QString()}, command);

        for (Qt::MouseButton button : presses)
            QTest::mousePress(view_, button, modifiers, at);
        QCOMPARE(gesture_of(view_), gesture);
        for (Qt::MouseButton button : presses)
            QTest::mouseRelease(view_, button, modifiers, at);
        QCOMPARE(gesture_of(view_), QStringLiteral("none"));
    }

    // The button entries, in menu order, that can be chosen.
    void context_menu_entries_data() {
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<QStringList>("hostSelection");
        QTest::addColumn<QStringList>("enabled");

        const QStringList a{QStringLiteral("a")};
        const QString one = QStringLiteral("Add One Button");
        const QString many = QStringLiteral("Add Many Buttons");
        const QString remove = QStringLiteral("Delete Button");
        const QString add = QStringLiteral("Add Command Button...");
        QTest::newRow("empty canvas, nothing lit")
            << QPoint(300, 150) << QStringList() << QStringList{add};
        QTest::newRow("command button")
            << QPoint(100, 50) << a
            << QStringList{one, many, remove, QStringLiteral("Edit Command Button...")};
        QTest::newRow("selection button, scene selection")
            << QPoint(50, 50) << a
            << QStringList{one, many, QStringLiteral("Update Button"), remove, add};
    }

    void context_menu_entries() {
        QFETCH(QPoint, at);
        QFETCH(QStringList, hostSelection);
        QFETCH(QStringList, enabled);
        add_button(view_, QPoint(50, 50), {QStringLiteral("a")});
        add_button(view_, QPoint(100, 50), {QStringLiteral("print 1")}, buttonAttributes::Command);
        QVERIFY(host_->setSelection(hostSelection));

        QStringList shown;
        answer_next(&QApplication::activePopupWidget, [&](QWidget* menu) {
            const QList<QAction*> actions = menu->actions();
            for (const QAction* action : actions) {
                if (action->text() == QLatin1String("Reset View"))
                    break;
                if (action->isEnabled() && !action->isSeparator())
                    shown.append(action->text());
            }
            menu->close();
        });
        QTest::mousePress(view_, Qt::RightButton, Qt::KeyboardModifiers(), at);
        QTest::mouseRelease(view_, Qt::RightButton, Qt::KeyboardModifiers(), at);

        QCOMPARE(shown, enabled);
        QCOMPARE(gesture_of(view_), QStringLiteral("none"));
    }

    // At zoom 2 the lit a and b move by half the drag, truncated toward zero; c stays.
    void control_drag_moves_selection() {
        add_row(view_);
        QVERIFY(host_->setSelection({QStringLiteral("a"), QStringLiteral("b")}));
        view_->setZoom(2.0f, QPoint(0, 0));
        const points before = positions(view_);
        const QPoint press = view_->mapToScreen(before[0]);
        QSignalSpy steps(view_->tab()->undoer(), &QUndoStack::indexChanged);

        drag(Qt::LeftButton, Qt::ControlModifier, press,
             {press + QPoint(1, 0), press + QPoint(7, -5)});

        QCOMPARE(positions(view_), (points{{53, 48}, {103, 48}, {150, 50}}));
        QCOMPARE(steps.count(), 1);
        QCOMPARE(view_->tab()->undoer()->undoText(), QStringLiteral("Move Buttons"));
        // Editing leaves the host's selection alone.
        QCOMPARE(host_->selection(), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
        view_->tab()->undoer()->undo();
        QCOMPARE(positions(view_), before);
    }

    // Buttons a, b, c in a row and a second a below the first; c is already selected in the host.
    // A left press that stays still is a click; the marquee bands are pressed at (30, 30).
    void left_button_selects_data() {
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<QPoint>("press");
        QTest::addColumn<points>("path");
        QTest::addColumn<QList<qint16>>("lit");
        QTest::addColumn<QStringList>("hostSelection");

        const auto none = Qt::KeyboardModifiers();
        const auto shift = Qt::KeyboardModifiers(Qt::ShiftModifier);
        const QPoint band(30, 30);
        const QList<qint16> onlyC{0, 0, 1, 0};
        const QString a = QStringLiteral("a");
        const QString c = QStringLiteral("c");
        QTest::newRow("click a") << none << QPoint(50, 50) << points{} << QList<qint16>{1, 0, 0, 1}
                                 << QStringList{a};
        QTest::newRow("Shift-click adds a") << shift << QPoint(50, 50) << points{}
                                            << QList<qint16>{1, 0, 1, 1} << QStringList{c, a};
        QTest::newRow("Shift-click toggles c off")
            << shift << QPoint(150, 50) << points{} << QList<qint16>{0, 0, 0, 0} << QStringList();
        QTest::newRow("3 across: no band")
            << shift << band << points{{33, 30}} << onlyC << QStringList{c};
        QTest::newRow("4 across: a band")
            << shift << band << points{{26, 30}} << onlyC << QStringList{c};
        QTest::newRow("plain band over a")
            << none << band << points{{70, 70}} << QList<qint16>{1, 0, 0, 1} << QStringList{a};
        QTest::newRow("Shift band grows over a and b")
            << shift << band << points{{70, 70}, {120, 70}} << QList<qint16>{1, 1, 1, 1}
            << QStringList{c, a, QStringLiteral("b")};
        QTest::newRow("Shift band shrinks off b") << shift << band << points{{120, 70}, {70, 70}}
                                                  << QList<qint16>{1, 0, 1, 1} << QStringList{c, a};
    }

    void left_button_selects() {
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(QPoint, press);
        QFETCH(points, path);
        QFETCH(QList<qint16>, lit);
        QFETCH(QStringList, hostSelection);
        add_row(view_);
        add_button(view_, QPoint(50, 100), {QStringLiteral("a")});
        QVERIFY(host_->setSelection({QStringLiteral("c")}));

        QTest::mousePress(view_, Qt::LeftButton, modifiers, press);
        for (const QPoint& p : path)
            QTest::mouseMove(view_, p);
        QCOMPARE(lit_states(view_), lit);
        // The band shows once the pointer has gone more than 3 pixels, from the press to it.
        const QPoint end = path.isEmpty() ? press : path.last();
        const marquee_overlay* marquee = view_->overlay()->marquee();
        QCOMPARE(!marquee->isEmpty(), (end - press).manhattanLength() > 3);
        if (!marquee->isEmpty())
            QCOMPARE(marquee->bounds(),
                     QRect(qMin(press.x(), end.x()), qMin(press.y(), end.y()),
                           qAbs(end.x() - press.x()), qAbs(end.y() - press.y())));
        QTest::mouseRelease(view_, Qt::LeftButton, modifiers, end);
        host_->processIdle();
        QVERIFY(marquee->isEmpty());

        QCOMPARE(host_->selection(), hostSelection);
        QCOMPARE(window_->selection(), hostSelection);
        QCOMPARE(lit_states(view_), lit);
        QCOMPARE(view_->tab()->undoer()->count(), 0);
    }

    void drag_zoom_data() {
        QTest::addColumn<QPoint>("move");
        QTest::addColumn<qreal>("zoom");
        QTest::newRow("39 right") << QPoint(39, 0) << qreal(1);
        QTest::newRow("40 up") << QPoint(0, -40) << qreal(0.9375);
        QTest::newRow("60 down") << QPoint(0, 60) << qreal(1.0625 * 1.0625);
    }

    void drag_zoom() {
        QFETCH(QPoint, move);
        QFETCH(qreal, zoom);
        const QPoint press(200, 150);
        const QPoint anchored = view_->mapToPicker(press);

        drag(Qt::RightButton, Qt::AltModifier, press, {press + QPoint(1, 1), press + move});

        QCOMPARE(view_->zoom(), zoom);
        QVERIFY((view_->mapToScreen(anchored) - press).manhattanLength() <= 2);
    }

    void command_button_runs_on_release_over_it_data() {
        QTest::addColumn<QPoint>("release");
        QTest::addColumn<QStringList>("ran");
        QTest::newRow("released over it") << QPoint(58, 58) << QStringList{QStringLiteral("hi")};
        QTest::newRow("released outside") << QPoint(59, 50) << QStringList();
    }

    void command_button_runs_on_release_over_it() {
        QFETCH(QPoint, release);
        QFETCH(QStringList, ran);
        add_button(view_, QPoint(50, 50), {QStringLiteral("print \"hi\"")},
                   buttonAttributes::Command);
        const buttonRecord& button = view_->tab()->buttons().at(0);
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
        QVERIFY(window_->selection().isEmpty());
    }

    // Three selected nodes make three buttons of the toolbox's size 10 from picker (100, 100).
    void add_many_fans_out_data() {
        QTest::addColumn<points>("path");
        QTest::addColumn<points>("placed");
        QTest::newRow("no move: a row, then turned up")
            << points{} << points{{100, 100}, {100, 90}, {100, 80}};
        QTest::newRow("down, the small sideways part kept")
            << points{{130, 100}, {103, 190}} << points{{100, 100}, {101, 130}, {102, 160}};
    }

    void add_many_fans_out() {
        QFETCH(points, path);
        QFETCH(points, placed);
        QVERIFY(host_->setSelection(scene_nodes.mid(0, 3)));
        QSignalSpy changed(view_->tab(), &picker_tab::changed);
        QSignalSpy steps(view_->tab()->undoer(), &QUndoStack::indexChanged);
        action_of(view_->actions(), QStringLiteral("Add Many Buttons"))->trigger();
        QCOMPARE(view_->cursor().hotSpot(), QPoint(7, 1));

        QTest::mousePress(view_, Qt::LeftButton, Qt::KeyboardModifiers(), QPoint(100, 100));
        for (const QPoint& p : path)
            QTest::mouseMove(view_, p);
        QTest::mouseRelease(view_, Qt::LeftButton, Qt::KeyboardModifiers(),
                            path.isEmpty() ? QPoint(100, 100) : path.last());

        QCOMPARE(positions(view_), placed);
        QStringList names;
        for (const buttonRecord& button : view_->tab()->buttons())
            names += button.att.sel;
        QCOMPARE(names, scene_nodes.mid(0, 3));
        QCOMPARE(lit_states(view_), (QList<qint16>{1, 1, 1}));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(steps.count(), 1);
        QCOMPARE(view_->tab()->undoer()->undoText(), QStringLiteral("Add Many Buttons"));
        QCOMPARE(view_->cursor().shape(), Qt::ArrowCursor);
        view_->tab()->undoer()->undo();
        QCOMPARE(view_->tab()->count(), 0);
    }

    // Ctrl shows the edit cursor: row 10 of its outline is 2018 under a mask of 4095.
    void edit_cursor() {
        QTest::keyPress(view_, Qt::Key_Control, Qt::ControlModifier);
        const QCursor cursor = view_->cursor();
        QCOMPARE(cursor.shape(), Qt::BitmapCursor);
        QCOMPARE(cursor.hotSpot(), QPoint(1, 1));
        const QImage shape = bitmap_of(cursor, false).toImage();
        const QImage mask = bitmap_of(cursor, true).toImage();
        QCOMPARE(shape.size(), QSize(32, 32));
        QCOMPARE(QColor(shape.pixel(5, 10)), QColor(Qt::black));
        QCOMPARE(QColor(mask.pixel(5, 10)), QColor(Qt::black));
        QCOMPARE(QColor(shape.pixel(2, 10)), QColor(Qt::white));
        QCOMPARE(QColor(mask.pixel(2, 10)), QColor(Qt::black));
        QCOMPARE(QColor(mask.pixel(12, 10)), QColor(Qt::white));

        QTest::keyRelease(view_, Qt::Key_Control, Qt::KeyboardModifiers());
        QCOMPARE(view_->cursor().shape(), Qt::ArrowCursor);
    }

    void forwarded_keys_fire_every_bound_action_data() {
        QTest::addColumn<int>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<QString>("step"); // empty: nothing fires

        const auto none = Qt::KeyboardModifiers();
        const auto shift = Qt::KeyboardModifiers(Qt::ShiftModifier);
        QTest::newRow("Backspace") << int(Qt::Key_Backspace) << none << "Delete Button";
        QTest::newRow("equal") << int(Qt::Key_Equal) << none << "Adjust Size";
        QTest::newRow("left arrow") << int(Qt::Key_Left) << none << "Button Move";
        QTest::newRow("Shift minus") << int(Qt::Key_Minus) << shift << "";
    }

    // Keys reach the view through the window, which hands them on to the front tab only.
    void forwarded_keys_fire_every_bound_action() {
        QFETCH(int, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(QString, step);
        add_row(view_);
        QVERIFY(host_->setSelection({QStringLiteral("a")}));
        QSignalSpy steps(view_->tab()->undoer(), &QUndoStack::indexChanged);
        picker_main::dock()->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(picker_main::dock()));
        window_->setFocus(Qt::MouseFocusReason);
        QVERIFY(window_->hasFocus());

        QTest::keyClick(window_, static_cast<Qt::Key>(key), modifiers);
        QCOMPARE(steps.count(), step.isEmpty() ? 0 : 1);
        QCOMPARE(view_->tab()->undoer()->undoText(), step);

        window_->new_tab();
        window_->setFocus(Qt::MouseFocusReason);
        QTest::keyClick(window_, static_cast<Qt::Key>(key), modifiers);
        QCOMPARE(steps.count(), step.isEmpty() ? 0 : 1);
    }
};

QTEST_MAIN(tst_picker_view_input)
#include "tst_picker_view_input.moc"
