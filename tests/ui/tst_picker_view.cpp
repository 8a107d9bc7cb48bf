#include "picker_selection.h"
#include "picker_view.h"

#include <QApplication>
#include <QRandomGenerator>
#include <QTest>
#include <QWheelEvent>

namespace {

buttonAttributes selection_button(const QStringList& names, const QPoint& pos = QPoint(40, 30)) {
    buttonAttributes att;
    att.pos = pos;
    att.size = 10;
    att.type = buttonAttributes::Selection;
    att.api = buttonAttributes::Mel;
    att.color = 0xFFB22222;
    att.tcolor = 0xFF000000;
    att.sel = names;
    return att;
}

// Zoom first: with the offset still at (0, 0) the anchor (0, 0) leaves it alone.
void place_view(picker_view& view, double zoom, const QPoint& shift) {
    view.setZoom(static_cast<float>(zoom), QPoint(0, 0));
    view.setShift(shift);
}

void finish_animation(picker_view& view) {
    for (int tick = 0; tick < 8 && view.animating(); ++tick)
        view.animate_zoom();
}

// The lighting rule read literally: every name of every button searched for in the list.
void plain_conform(button_list& buttons, const QStringList& names) {
    for (buttonRecord& button : buttons) {
        button.which.resize(button.att.sel.size());
        int hits = 0;
        for (int i = 0; i < button.att.sel.size(); ++i) {
            button.which[i] = names.contains(button.att.sel.at(i)) ? 1 : 0;
            hits += button.which[i];
        }
        button.selected = hits == button.att.sel.size() ? 1 : hits < 1 ? 0 : 2;
    }
}

} // namespace

class tst_picker_view : public QObject {
    Q_OBJECT

private slots:
    void conform_to_set_data();
    void conform_to_set();
    void clear_selected_hands_names_to_the_mirror();
    void reset_buttons_forgets_the_history();
    void mapping_data();
    void mapping();
    void wheel_zooms_about_the_pointer_data();
    void wheel_zooms_about_the_pointer();
    void framing_data();
    void framing();
    void frame_bounds_never_zooms_in_when_told();
    void animation_lands_on_the_eighth_tick();
    void hashed_conform_matches_the_plain_rule();
    void renamed_button_lights_by_its_new_names_data();
    void renamed_button_lights_by_its_new_names();
    void selection_follows_lit_buttons_data();
    void selection_follows_lit_buttons();
    void select_bounds_data();
    void select_bounds();
    void actions_without_selection_push_nothing_data();
    void actions_without_selection_push_nothing();
    void labels_size_the_button_data();
    void labels_size_the_button();
};

void tst_picker_view::conform_to_set_data() {
    QTest::addColumn<QStringList>("buttonNames");
    QTest::addColumn<QStringList>("selected");
    QTest::addColumn<int>("lit");
    QTest::addColumn<QVector<char>>("which");
    QTest::addColumn<bool>("changed");

    const QStringList ab{QStringLiteral("a"), QStringLiteral("b")};
    QTest::newRow("some") << ab << QStringList{QStringLiteral("a"), QStringLiteral("z")} << 2
                          << QVector<char>{1, 0} << true;
    QTest::newRow("all") << ab << QStringList{QStringLiteral("b"), QStringLiteral("a")} << 1
                         << QVector<char>{1, 1} << true;
    QTest::newRow("none") << ab << QStringList() << 0 << QVector<char>{0, 0} << false;
    QTest::newRow("case matters") << ab << QStringList{QStringLiteral("A")} << 0
                                  << QVector<char>{0, 0} << false;
    QTest::newRow("no names counts as all")
        << QStringList() << QStringList() << 1 << QVector<char>() << true;
}

void tst_picker_view::conform_to_set() {
    QFETCH(QStringList, buttonNames);
    QFETCH(QStringList, selected);
    QFETCH(int, lit);
    QFETCH(QVector<char>, which);
    QFETCH(bool, changed);

    picker_view view;
    view.push_button(selection_button(buttonNames), -1);
    picker_selection::clear();

    QCOMPARE(view.conform_to_set(button_set::fromStringList(selected)), changed);

    const buttonRecord& button = view.buttons()->at(0);
    QCOMPARE(int(button.selected), lit);
    QCOMPARE(button.which, which);
    QCOMPARE(view.any_selected(), lit != 0);
    QVERIFY(picker_selection::names().isEmpty());
}

void tst_picker_view::clear_selected_hands_names_to_the_mirror() {
    picker_view view;
    view.push_button(selection_button({QStringLiteral("a"), QStringLiteral("b")}), -1);
    view.push_button(selection_button({QStringLiteral("c")}), -1);
    view.conform_to_set(button_set::fromStringList({QStringLiteral("a"), QStringLiteral("b")}));
    picker_selection::setNames({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("x")});

    QVERIFY(view.clear_selected());

    QCOMPARE(picker_selection::names(), QStringList{QStringLiteral("x")});
    QVERIFY(!view.any_selected());
    QVERIFY(!view.clear_selected());
}

void tst_picker_view::reset_buttons_forgets_the_history() {
    picker_view view;
    view.push_button(selection_button({QStringLiteral("a")}), -1);
    view.undoer()->push(new QUndoCommand(QStringLiteral("edit")));
    QVERIFY(view.undoer()->canUndo());

    view.reset_buttons();

    QVERIFY(view.buttons()->isEmpty());
    QVERIFY(!view.undoer()->canUndo());
}

void tst_picker_view::mapping_data() {
    QTest::addColumn<double>("zoom");
    QTest::addColumn<QPoint>("shift");
    QTest::addColumn<QRect>("picker");
    QTest::addColumn<QRect>("screen");
    QTest::addColumn<QRectF>("screenF");
    QTest::addColumn<QRect>("backToPicker");
    QTest::addColumn<QPoint>("widgetPoint");
    QTest::addColumn<QPoint>("pickerPoint");

    // Edges 0 and 9 map to themselves and the size is their difference, 9 x 9, either way; so
    // mapping there and back loses a pixel.
    QTest::newRow("identity") << 1.0 << QPoint(0, 0) << QRect(0, 0, 10, 10) << QRect(0, 0, 9, 9)
                              << QRectF(0, 0, 9, 9) << QRect(0, 0, 8, 8) << QPoint(7, 3)
                              << QPoint(7, 3);
    QTest::newRow("zoom 2, shifted")
        << 2.0 << QPoint(5, -3) << QRect(10, 10, 10, 10) << QRect(25, 17, 18, 18)
        << QRectF(25, 17, 18, 18) << QRect(10, 10, 8, 8) << QPoint(6, -6) << QPoint(0, -1);
    // Truncation toward zero, not toward minus infinity.
    QTest::newRow("zoom 2.5, sub-pixel")
        << 2.5 << QPoint(1, 2) << QRect(0, 0, 3, 3) << QRect(1, 2, 5, 5) << QRectF(1, 2, 5, 5)
        << QRect(0, 0, 1, 1) << QPoint(-3, 9) << QPoint(-1, 2);
    QTest::newRow("zoom 0.25") << 0.25 << QPoint(0, 0) << QRect(-10, 6, 21, 7) << QRect(-2, 1, 4, 2)
                               << QRectF(-2.5, 1.5, 5, 1.5) << QRect(-8, 4, 12, 4) << QPoint(3, -3)
                               << QPoint(12, -12);
}

void tst_picker_view::mapping() {
    QFETCH(double, zoom);
    QFETCH(QPoint, shift);
    QFETCH(QRect, picker);
    QFETCH(QRect, screen);
    QFETCH(QRectF, screenF);
    QFETCH(QRect, backToPicker);
    QFETCH(QPoint, widgetPoint);
    QFETCH(QPoint, pickerPoint);

    picker_view view;
    place_view(view, zoom, shift);
    QCOMPARE(view.zoom(), zoom);
    QCOMPARE(view.shift(), shift);
    QCOMPARE(view.mapToScreen(picker), screen);
    QCOMPARE(view.mapToScreenF(picker), screenF);
    QCOMPARE(view.mapToPicker(screen), backToPicker);
    if (zoom == 1.0 && shift.isNull())
        QCOMPARE(view.mapToPicker(picker), screen);
    QCOMPARE(view.mapToPicker(widgetPoint), pickerPoint);
}

void tst_picker_view::wheel_zooms_about_the_pointer_data() {
    QTest::addColumn<double>("startZoom");
    QTest::addColumn<int>("delta");
    QTest::addColumn<bool>("buttonHeld");
    QTest::addColumn<double>("zoom");
    QTest::addColumn<QPoint>("shift");

    const QPoint none(0, 0);
    // The notch's first count is swallowed: +-120 is one step, +-60 none, 240 three.
    QTest::newRow("notch in") << 1.0 << 120 << false << 1.0625 << QPoint(-6, -3);
    QTest::newRow("notch out") << 1.0 << -120 << false << 0.9375 << QPoint(7, 4);
    QTest::newRow("half notch in") << 1.0 << 60 << false << 1.0 << none;
    QTest::newRow("two notches") << 1.0 << 240 << false << double(1.0625f * 1.0625f * 1.0625f)
                                 << QPoint(-19, -11);
    QTest::newRow("button held") << 1.0 << 120 << true << 1.0 << none;
    QTest::newRow("at the upper limit") << 16.0 << 120 << false << 16.0 << none;
    QTest::newRow("at the lower limit") << 0.25 << -120 << false << 0.25 << none;
}

void tst_picker_view::wheel_zooms_about_the_pointer() {
    QFETCH(double, startZoom);
    QFETCH(int, delta);
    QFETCH(bool, buttonHeld);
    QFETCH(double, zoom);
    QFETCH(QPoint, shift);

    picker_view view;
    view.resize(300, 200);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.setZoom(static_cast<float>(startZoom), QPoint(0, 0));
    const QPointF pointer(100, 60);
    QWheelEvent wheel(pointer, QPointF(view.mapToGlobal(pointer.toPoint())), QPoint(),
                      QPoint(0, delta), buttonHeld ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&view, &wheel);

    QCOMPARE(view.zoom(), zoom);
    QCOMPARE(view.shift(), shift);
}

void tst_picker_view::framing_data() {
    QTest::addColumn<QSize>("viewSize");
    QTest::addColumn<int>("selectedButton");
    QTest::addColumn<bool>("animates");
    QTest::addColumn<double>("zoom");
    QTest::addColumn<QPoint>("shift");

    // The two buttons span 100 x 50 picker units: min(400 / 100, 400 / 50) * 0.75 = 3; the
    // centre (49, 24) goes to (200, 200).
    QTest::newRow("all buttons") << QSize(400, 400) << -1 << true << 3.0 << QPoint(53, 128);
    QTest::newRow("wide view") << QSize(800, 100) << -1 << true << 1.5 << QPoint(326, 14);
    // One 10-unit button alone would need 30: the zoom stops at 16.
    QTest::newRow("selected only") << QSize(400, 400) << 1 << true << 16.0 << QPoint(-1304, -504);
    QTest::newRow("no buttons") << QSize(400, 400) << -2 << false << 1.0 << QPoint(0, 0);
}

void tst_picker_view::framing() {
    QFETCH(QSize, viewSize);
    QFETCH(int, selectedButton);
    QFETCH(bool, animates);
    QFETCH(double, zoom);
    QFETCH(QPoint, shift);

    picker_view view;
    view.resize(viewSize);
    if (selectedButton > -2) {
        view.push_button(selection_button({QStringLiteral("a")}, QPoint(5, 5)), -1);
        view.push_button(selection_button({QStringLiteral("b")}, QPoint(95, 45)), -1);
    }
    if (selectedButton >= 0)
        (*view.buttons())[selectedButton].selected = buttonRecord::All;

    view.frame_view();
    QCOMPARE(view.animating(), animates);
    finish_animation(view);

    QVERIFY(!view.animating());
    QCOMPARE(view.zoom(), zoom);
    QCOMPARE(view.shift(), shift);
}

void tst_picker_view::frame_bounds_never_zooms_in_when_told() {
    picker_view view;
    view.resize(400, 400);
    view.frameBounds(QRect(0, 0, 100, 50), true);
    finish_animation(view);
    QCOMPARE(view.zoom(), 1.0);
    QCOMPARE(view.shift(), QPoint(151, 176));

    view.frameBounds(QRect(0, 0, 1000, 500), true);
    finish_animation(view);
    QCOMPARE(view.zoom(), double(0.3f));
}

void tst_picker_view::animation_lands_on_the_eighth_tick() {
    picker_view view;
    view.zoomWindow(3.0f, QPoint(80, -40));
    QVERIFY(view.animating());
    for (int tick = 0; tick < 7; ++tick) {
        view.animate_zoom();
        QVERIFY(view.zoom() > 1.0 && view.zoom() < 3.0);
    }
    QVERIFY(view.animating());
    view.animate_zoom();
    QVERIFY(!view.animating());
    QCOMPARE(view.zoom(), 3.0);
    QCOMPARE(view.shift(), QPoint(80, -40));

    // Already there: "Reset View" from the start position starts nothing.
    picker_view still;
    still.reset_view();
    QVERIFY(!still.animating());
}

void tst_picker_view::hashed_conform_matches_the_plain_rule() {
    QRandomGenerator random(42);
    const auto name = [&random]() { return QStringLiteral("n%1").arg(random.bounded(40)); };
    for (int round = 0; round < 50; ++round) {
        picker_view view;
        for (int b = 0; b < 30; ++b) {
            QStringList names;
            const int count = static_cast<int>(random.bounded(4));
            for (int n = 0; n < count; ++n)
                names << name();
            view.push_button(selection_button(names), -1);
        }
        QStringList selected;
        const int count = static_cast<int>(random.bounded(30));
        for (int n = 0; n < count; ++n)
            selected << name();

        button_list expected = *view.buttons();
        plain_conform(expected, selected);
        view.conform_to_set(button_set::fromStringList(selected));

        for (int b = 0; b < expected.size(); ++b) {
            QCOMPARE(view.buttons()->at(b).selected, expected.at(b).selected);
            QCOMPARE(view.buttons()->at(b).which, expected.at(b).which);
        }
        // Once lit, the same names change nothing.
        QVERIFY(!view.conform_to_set(name_lookup(selected.cbegin(), selected.cend())));
    }
}

void tst_picker_view::renamed_button_lights_by_its_new_names_data() {
    QTest::addColumn<int>("edit");
    QTest::addColumn<QStringList>("names");

    const QString x = QStringLiteral("x");
    QTest::newRow("list replaced") << 0 << QStringList{x, QStringLiteral("a")};
    QTest::newRow("name changed in place") << 1 << QStringList{QStringLiteral("a"), x};
    QTest::newRow("name removed") << 3 << QStringList{QStringLiteral("b")};
    QTest::newRow("never seen name") << 0 << QStringList{QStringLiteral("renamed_only_here")};
}

// Lit once under its old names, the button then takes the new ones; lighting must follow them.
void tst_picker_view::renamed_button_lights_by_its_new_names() {
    QFETCH(int, edit);
    QFETCH(QStringList, names);

    picker_view view;
    view.push_button(selection_button({QStringLiteral("a"), QStringLiteral("b")}), -1);
    view.conform_to_set(button_set::fromStringList({QStringLiteral("a"), QStringLiteral("b")}));
    QStringList& sel = (*view.buttons())[0].att.sel;
    switch (edit) {
    case 0:
        sel = names;
        break;
    case 1:
        sel[1] = names.at(1);
        break;
    default:
        sel.removeFirst();
    }
    QCOMPARE(sel, names);

    const QStringList selected{QStringLiteral("a"), QStringLiteral("x"),
                               QStringLiteral("renamed_only_here")};
    button_list expected = *view.buttons();
    plain_conform(expected, selected);
    view.conform_to_set(name_lookup(selected.cbegin(), selected.cend()));
    QCOMPARE(view.buttons()->at(0).which, expected.at(0).which);
    QCOMPARE(view.buttons()->at(0).selected, expected.at(0).selected);
}

void tst_picker_view::selection_follows_lit_buttons_data() {
    QTest::addColumn<QStringList>("hostSelection");
    QTest::addColumn<int>("unselectButton");
    QTest::addColumn<QVector<int>>("lit");

    // Buttons: 0 {a}, 1 {a, b}, 2 {b}, 3 {c}, and a command button whose script is z: lit by
    // the host, but its names are not a selection of the picker's own.
    QTest::newRow("picker lights from its own lit names")
        << QStringList{QStringLiteral("a"), QStringLiteral("z")} << -1
        << QVector<int>{1, 2, 0, 0, 0};
    QTest::newRow("unselect takes the button's names out")
        << QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")} << 1
        << QVector<int>{0, 0, 0, 1, 0};
    QTest::newRow("unselect keeps the other names")
        << QStringList{QStringLiteral("b"), QStringLiteral("c")} << 3
        << QVector<int>{0, 2, 1, 0, 0};
}

void tst_picker_view::selection_follows_lit_buttons() {
    QFETCH(QStringList, hostSelection);
    QFETCH(int, unselectButton);
    QFETCH(QVector<int>, lit);

    picker_view view;
    for (const QStringList& names :
         {QStringList{QStringLiteral("a")}, QStringList{QStringLiteral("a"), QStringLiteral("b")},
          QStringList{QStringLiteral("b")}, QStringList{QStringLiteral("c")}})
        view.push_button(selection_button(names), -1);
    buttonAttributes command = selection_button({QStringLiteral("z")});
    command.type = buttonAttributes::Command;
    view.push_button(command, -1);

    picker_selection::setNames(hostSelection);
    view.conform_to_selection();
    if (unselectButton >= 0)
        view.unselect(&(*view.buttons())[unselectButton]);
    else
        view.conform_to_selected();

    QVector<int> states;
    for (const buttonRecord& button : *view.buttons())
        states << button.selected;
    QCOMPARE(states, lit);
    picker_selection::clear();
}

void tst_picker_view::select_bounds_data() {
    QTest::addColumn<int>("before");
    QTest::addColumn<bool>("add");
    QTest::addColumn<int>("after");

    QTest::newRow("adds unlit") << 0 << true << 1;
    QTest::newRow("adds partly lit") << 2 << true << 1;
    QTest::newRow("toggles partly lit on") << 2 << false << 1;
    QTest::newRow("toggles lit off") << 1 << false << 0;
}

void tst_picker_view::select_bounds() {
    QFETCH(int, before);
    QFETCH(bool, add);
    QFETCH(int, after);

    picker_view view;
    place_view(view, 2.0, QPoint(10, 0));
    // Picker (40, 30), size 10: widget pixels (80, 50) to (97, 67).
    view.push_button(selection_button({QStringLiteral("a")}), -1);
    view.push_button(selection_button({QStringLiteral("b")}, QPoint(200, 200)), -1);
    buttonRecord& button = (*view.buttons())[0];
    button.selected = static_cast<qint16>(before);
    picker_selection::clear();

    QCOMPARE(view.select_bounds(QRect(95, 65, 20, 20), add), before != after);
    QCOMPARE(int(button.selected), after);
    QCOMPARE(int(view.buttons()->at(1).selected), 0);
    // Picker-side selection reaches the mirror.
    QCOMPARE(picker_selection::names().contains(QStringLiteral("a")), after == 1 && before != 1);
    QVERIFY(!view.select_bounds(QRect(0, 0, 79, 49), add));
    picker_selection::clear();
}

void tst_picker_view::actions_without_selection_push_nothing_data() {
    QTest::addColumn<QString>("slot");
    for (const char* slot : {"delete_button", "update_button", "adjust_size_up", "adjust_size_down",
                             "nudge_left", "nudge_right", "nudge_up", "nudge_down"})
        QTest::newRow(slot) << QString::fromLatin1(slot);
}

void tst_picker_view::actions_without_selection_push_nothing() {
    QFETCH(QString, slot);
    picker_view view;
    view.push_button(selection_button({QStringLiteral("a")}), -1);

    QVERIFY(QMetaObject::invokeMethod(&view, slot.toLatin1().constData()));
    QCOMPARE(view.undoer()->count(), 0);

    (*view.buttons())[0].selected = buttonRecord::All;
    QVERIFY(QMetaObject::invokeMethod(&view, slot.toLatin1().constData()));
    QCOMPARE(view.undoer()->count(), 1);
}

void tst_picker_view::labels_size_the_button_data() {
    QTest::addColumn<QString>("label");
    QTest::addColumn<int>("size");
    QTest::newRow("size wins") << QStringLiteral("L") << 40;
    QTest::newRow("text wins") << QStringLiteral("A rather long label") << 10;
}

void tst_picker_view::labels_size_the_button() {
    QFETCH(QString, label);
    QFETCH(int, size);
    picker_view view;
    buttonAttributes att = selection_button({QStringLiteral("a")});
    att.size = size;
    att.label = label;
    view.push_button(att, -1);
    buttonRecord& button = (*view.buttons())[0];

    // The label image has even sides, so that it centres on whole pixels.
    QVERIFY(!button.img.isNull());
    QCOMPARE(button.img.width() % 2, 0);
    QCOMPARE(button.img.height() % 2, 0);
    QCOMPARE(button.bounds.size(),
             QSize(qMax(button.img.width() + 2, size), qMax(button.img.height(), size)));
    QCOMPARE(button.bounds.center(), QPoint(40, 30));

    view.set_button_label(&button, QString());
    QVERIFY(button.img.isNull());
    QCOMPARE(button.bounds, QRect(40 - size / 2, 30 - size / 2, size, size));
}

QTEST_MAIN(tst_picker_view)
#include "tst_picker_view.moc"
