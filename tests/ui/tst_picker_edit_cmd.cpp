#include "picker_arrange_cmd.h"
#include "picker_edit_cmd.h"
#include "picker_selection.h"
#include "picker_view.h"
#include "picker_window.h"

#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <memory>

namespace {

buttonAttributes plain_button(int i, const QPoint& pos) {
    buttonAttributes att;
    att.pos = pos;
    att.size = 10;
    att.color = 0xFF000000u + unsigned(i);
    att.tcolor = 0xFF000000u;
    att.sel = QStringList{QStringLiteral("n%1").arg(i)};
    return att;
}

// One button per position, none lit; buttons carry no label so nothing is rendered.
void fill(picker_view& view, const point_list& positions) {
    for (int i = 0; i < positions.size(); ++i)
        view.push_button(plain_button(i, positions.at(i)), -1);
}

void fill(picker_view& view, int count) {
    point_list positions;
    for (int i = 0; i < count; ++i)
        positions.append(QPoint(10 * i, 5 * i));
    fill(view, positions);
}

// Lights exactly the listed buttons, flags only.
void light(picker_view& view, const index_list& indices) {
    for (buttonRecord& button : *view.buttons())
        button.unselect(true);
    for (int index : indices)
        (*view.buttons())[index].select(true);
}

index_list lit(const picker_view& view) {
    index_list indices;
    for (int i = 0; i < view.buttons().size(); ++i) {
        if (view.buttons().at(i).selected != buttonRecord::None)
            indices.append(i);
    }
    return indices;
}

button_att_list attributes(const picker_view& view) {
    button_att_list list;
    for (const buttonRecord& button : view.buttons())
        list.append(button.att);
    return list;
}

point_list positions(const picker_view& view) {
    point_list list;
    for (const buttonRecord& button : view.buttons())
        list.append(button.att.pos);
    return list;
}

// The commands that act on the selection, made the way the view, toolbox and gestures make them.
enum class kind { del, cut, color, labelc, size, adjust, label, nudge, arrange, move };

std::unique_ptr<QUndoCommand> make_cmd(picker_view* view, kind k, int value) {
    switch (k) {
    case kind::del:
        return std::make_unique<delete_buttons_cmd>(view);
    case kind::cut:
        return std::make_unique<cut_buttons_cmd>(view);
    case kind::color:
        return std::make_unique<change_color_cmd>(view, QRgb(0xFF000000u + unsigned(value)));
    case kind::labelc:
        return std::make_unique<change_labelc_cmd>(view, QRgb(0xFF000000u + unsigned(value)));
    case kind::size:
        return std::make_unique<change_size_cmd>(view, value);
    case kind::adjust:
        return std::make_unique<adjust_size_cmd>(view, value);
    case kind::label:
        return std::make_unique<change_label_cmd>(view, QString::number(value));
    case kind::nudge:
        return std::make_unique<nudge_buttons_cmd>(view, QPoint(value, 0));
    case kind::arrange:
        return std::make_unique<arrange_buttons_cmd>(view, value);
    case kind::move:
        return std::make_unique<move_buttons_cmd>(view, point_list(), index_list(),
                                                  QPoint(value, 0));
    }
    return nullptr;
}

void push(picker_view& view, kind k, int value) {
    view.undoer()->push(make_cmd(&view, k, value).release());
}

// The attribute a step of kind k changes, read from one button.
int probe(const buttonRecord& button, kind k) {
    switch (k) {
    case kind::color:
        return int(button.att.color & 0xFFFFFF);
    case kind::labelc:
        return int(button.att.tcolor & 0xFFFFFF);
    case kind::size:
    case kind::adjust:
        return button.att.size;
    case kind::label:
        return button.att.label.toInt();
    default:
        return button.att.pos.x();
    }
}

struct edit_step {
    kind k;
    int value;
    index_list selected;
};

} // namespace

Q_DECLARE_METATYPE(kind)
Q_DECLARE_METATYPE(QList<edit_step>)

class tst_picker_edit_cmd : public QObject {
    Q_OBJECT

private slots:
    void init() { picker_selection::clear(); }

    void undo_text_counts_buttons_data();
    void undo_text_counts_buttons();
    void merging_data();
    void merging();
    void empty_selection_data();
    void empty_selection();
    void out_of_range_indices_are_skipped_data();
    void out_of_range_indices_are_skipped();
    void delete_reinserts_in_order();
    void paste_places_and_selects_data();
    void paste_places_and_selects();
    void update_swaps_names();
    void update_of_a_foreign_button_does_nothing();
    void add_button_takes_the_toolbox();
    void arrange_data();
    void arrange();
};

void tst_picker_edit_cmd::undo_text_counts_buttons_data() {
    QTest::addColumn<kind>("k");
    QTest::addColumn<int>("selectedCount");
    QTest::addColumn<QString>("text");

    QTest::newRow("delete none") << kind::del << 0 << "Delete Button";
    QTest::newRow("delete two") << kind::del << 2 << "Delete Buttons";
    QTest::newRow("cut one") << kind::cut << 1 << "Cut Button";
    QTest::newRow("cut three") << kind::cut << 3 << "Cut Buttons";
}

void tst_picker_edit_cmd::undo_text_counts_buttons() {
    QFETCH(kind, k);
    QFETCH(int, selectedCount);
    QFETCH(QString, text);

    picker_view view;
    fill(view, 4);
    index_list selected;
    for (int i = 0; i < selectedCount; ++i)
        selected.append(i);
    light(view, selected);

    push(view, k, 0);

    QCOMPARE(view.undoer()->undoText(), text);
}

void tst_picker_edit_cmd::merging_data() {
    QTest::addColumn<QList<edit_step>>("steps");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("final");

    const index_list two{1, 3};
    QTest::newRow("three increases")
        << QList<edit_step>{{kind::adjust, 1, two}, {kind::adjust, 1, two}, {kind::adjust, 1, two}}
        << 1 << 13;
    QTest::newRow("decrease after two increases")
        << QList<edit_step>{{kind::adjust, 1, two}, {kind::adjust, 1, two}, {kind::adjust, -1, two}}
        << 2 << 11;
    QTest::newRow("increases on another selection")
        << QList<edit_step>{{kind::adjust, 1, two}, {kind::adjust, 1, {1}}} << 2 << 12;
    QTest::newRow("colour twice") << QList<edit_step>{{kind::color, 5, two}, {kind::color, 6, two}}
                                  << 1 << 6;
    QTest::newRow("colour on another selection")
        << QList<edit_step>{{kind::color, 5, two}, {kind::color, 6, {1, 2}}} << 2 << 6;
    QTest::newRow("colour then label colour")
        << QList<edit_step>{{kind::color, 5, two}, {kind::labelc, 6, two}} << 2 << 6;
    QTest::newRow("label colour twice")
        << QList<edit_step>{{kind::labelc, 5, two}, {kind::labelc, 6, two}} << 1 << 6;
    QTest::newRow("size twice") << QList<edit_step>{{kind::size, 20, two}, {kind::size, 14, two}}
                                << 1 << 14;
    QTest::newRow("size then adjust")
        << QList<edit_step>{{kind::size, 20, two}, {kind::adjust, 1, two}} << 2 << 21;
    QTest::newRow("held arrow key")
        << QList<edit_step>{{kind::nudge, 1, two}, {kind::nudge, 1, two}, {kind::nudge, 1, two}}
        << 1 << 13;
    QTest::newRow("nudge back and forth")
        << QList<edit_step>{{kind::nudge, 1, two}, {kind::nudge, -1, two}} << 1 << 10;
    QTest::newRow("labels never merge")
        << QList<edit_step>{{kind::label, 5, two}, {kind::label, 6, two}} << 2 << 6;
    QTest::newRow("arranges never merge")
        << QList<edit_step>{{kind::arrange, 2, {0, 1, 3}}, {kind::arrange, 2, {0, 1, 3}}} << 2
        << 18;
}

void tst_picker_edit_cmd::merging() {
    QFETCH(QList<edit_step>, steps);
    QFETCH(int, count);
    QFETCH(int, final);

    picker_view view;
    fill(view, 5);
    const button_att_list before = attributes(view);
    QUndoStack* stack = view.undoer();
    QSignalSpy index(stack, &QUndoStack::indexChanged);
    QSignalSpy clean(stack, &QUndoStack::cleanChanged);

    for (const edit_step& step : steps) {
        light(view, step.selected);
        push(view, step.k, step.value);
    }
    const kind last = steps.last().k;
    QCOMPARE(stack->count(), count);
    QCOMPARE(index.last().at(0).toInt(), count);
    QCOMPARE(probe(view.buttons()->at(1), last), final);

    // The oldest command's saved values take every button back, one undo per step.
    index.clear();
    for (int i = 0; i < count; ++i)
        stack->undo();
    QCOMPARE(index.count(), count);
    QCOMPARE(index.last().at(0).toInt(), 0);
    QCOMPARE(clean.last().at(0).toBool(), true);
    QCOMPARE(attributes(view), before);

    // Redo applies the whole merged change again, relative to the restored state.
    for (int i = 0; i < count; ++i)
        stack->redo();
    QCOMPARE(probe(view.buttons()->at(1), last), final);
    QCOMPARE(clean.last().at(0).toBool(), false);
}

void tst_picker_edit_cmd::empty_selection_data() {
    QTest::addColumn<kind>("k");
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("redoSignals");
    QTest::addColumn<int>("undoSignals");

    QTest::newRow("delete") << kind::del << 0 << 0 << 0;
    QTest::newRow("cut still clears") << kind::cut << 0 << 1 << 0;
    QTest::newRow("colour") << kind::color << 3 << 0 << 0;
    QTest::newRow("label colour") << kind::labelc << 3 << 0 << 0;
    QTest::newRow("size") << kind::size << 30 << 0 << 0;
    QTest::newRow("adjust") << kind::adjust << 1 << 0 << 0;
    QTest::newRow("label") << kind::label << 1 << 0 << 0;
    QTest::newRow("nudge") << kind::nudge << 1 << 0 << 0;
    QTest::newRow("arrange") << kind::arrange << 2 << 0 << 0;
    QTest::newRow("move still signals") << kind::move << 1 << 1 << 1;
}

void tst_picker_edit_cmd::empty_selection() {
    QFETCH(kind, k);
    QFETCH(int, value);
    QFETCH(int, redoSignals);
    QFETCH(int, undoSignals);

    picker_view view;
    fill(view, 3);
    const button_att_list before = attributes(view);
    QSignalSpy changed(&view, &picker_view::changed);

    push(view, k, value);
    QCOMPARE(changed.count(), redoSignals);
    QCOMPARE(view.undoer()->count(), 1);
    view.undoer()->undo();
    QCOMPARE(changed.count(), redoSignals + undoSignals);
    QCOMPARE(attributes(view), before);
}

void tst_picker_edit_cmd::out_of_range_indices_are_skipped_data() {
    QTest::addColumn<kind>("k");
    QTest::addColumn<int>("value");

    QTest::newRow("colour") << kind::color << 9;
    QTest::newRow("label colour") << kind::labelc << 9;
    QTest::newRow("size") << kind::size << 30;
    QTest::newRow("adjust") << kind::adjust << 4;
}

void tst_picker_edit_cmd::out_of_range_indices_are_skipped() {
    QFETCH(kind, k);
    QFETCH(int, value);

    picker_view view;
    fill(view, 5);
    light(view, {1, 4});
    std::unique_ptr<QUndoCommand> cmd = make_cmd(&view, k, value);
    const int before = probe(view.buttons()->at(1), k);
    // The captured index 4 is gone by the time the command runs.
    view.pop_button(4);

    cmd->redo();
    QVERIFY(probe(view.buttons()->at(1), k) != before);
    cmd->undo();
    QCOMPARE(probe(view.buttons()->at(1), k), before);
    QCOMPARE(view.buttons()->size(), 4);
}

void tst_picker_edit_cmd::delete_reinserts_in_order() {
    picker_view view;
    fill(view, 5);
    const button_att_list before = attributes(view);
    light(view, {1, 3});

    push(view, kind::del, 0);
    QCOMPARE(view.undoer()->undoText(), QStringLiteral("Delete Buttons"));
    QCOMPARE(attributes(view), (button_att_list{before.at(0), before.at(2), before.at(4)}));

    (*view.buttons())[0].select(true);
    view.undoer()->undo();
    QCOMPARE(attributes(view), before);
    // The restored buttons come back dark; the selection stays as it was.
    QCOMPARE(lit(view), index_list{0});

    view.undoer()->redo();
    QCOMPARE(attributes(view), (button_att_list{before.at(0), before.at(2), before.at(4)}));
}

void tst_picker_edit_cmd::paste_places_and_selects_data() {
    QTest::addColumn<point_list>("pasted");
    QTest::addColumn<bool>("inplace");
    QTest::addColumn<point_list>("placed");
    QTest::addColumn<bool>("framed");

    // The view is 200 x 100 at zoom 1: its centre (99, 49) is picker (99, 49).
    const point_list group{QPoint(10, 10), QPoint(30, 20), QPoint(20, 40)};
    QTest::newRow("in place") << group << true << group << false;
    // Position bounds (10, 10)-(30, 40), centre (20, 25): offset (79, 24).
    QTest::newRow("centred") << group << false
                             << point_list{QPoint(89, 34), QPoint(109, 44), QPoint(99, 64)}
                             << false;
    QTest::newRow("in place, off the widget")
        << point_list{QPoint(300, 10), QPoint(310, 10)} << true
        << point_list{QPoint(300, 10), QPoint(310, 10)} << true;
    QTest::newRow("centred, stored off the widget")
        << point_list{QPoint(300, 10), QPoint(310, 10)} << false
        << point_list{QPoint(94, 49), QPoint(104, 49)} << true;
}

void tst_picker_edit_cmd::paste_places_and_selects() {
    QFETCH(point_list, pasted);
    QFETCH(bool, inplace);
    QFETCH(point_list, placed);
    QFETCH(bool, framed);

    picker_view view;
    view.resize(200, 100);
    fill(view, 2);
    light(view, {0});
    button_att_list clip;
    for (const QPoint& pos : pasted)
        clip.append(plain_button(7, pos));

    view.undoer()->push(new paste_buttons_cmd(&view, clip, inplace));

    QCOMPARE(positions(view).mid(2), placed);
    index_list pastedIndices;
    for (int i = 0; i < pasted.size(); ++i)
        pastedIndices.append(2 + i);
    QCOMPARE(lit(view), pastedIndices);
    QCOMPARE(view.animating(), framed);

    view.undoer()->undo();
    QCOMPARE(view.buttons()->size(), 2);
    QVERIFY(lit(view).isEmpty());
}

void tst_picker_edit_cmd::update_swaps_names() {
    picker_view view;
    fill(view, 3);
    picker_selection::setNames({QStringLiteral("x"), QStringLiteral("y")});
    const QStringList rebound{QStringLiteral("x"), QStringLiteral("y")};
    QSignalSpy changed(&view, &picker_view::changed);

    view.undoer()->push(new update_buttons_cmd(&view, &(*view.buttons())[1], rebound));

    const buttonRecord& button = view.buttons()->at(1);
    QCOMPARE(button.att.sel, rebound);
    QCOMPARE(button.which, (sel_list{1, 1}));
    QCOMPARE(int(button.selected), int(buttonRecord::All));
    QCOMPARE(changed.count(), 1);

    view.undoer()->undo();
    QCOMPARE(view.buttons()->at(1).att.sel, QStringList{QStringLiteral("n1")});
    QCOMPARE(view.buttons()->at(1).which, sel_list{0});
    QCOMPARE(int(view.buttons()->at(1).selected), int(buttonRecord::None));
}

void tst_picker_edit_cmd::update_of_a_foreign_button_does_nothing() {
    picker_view view;
    fill(view, 2);
    const button_att_list before = attributes(view);
    buttonRecord stranger;
    QSignalSpy changed(&view, &picker_view::changed);

    view.undoer()->push(new update_buttons_cmd(&view, &stranger, {QStringLiteral("x")}));
    view.undoer()->undo();

    QCOMPARE(changed.count(), 0);
    QCOMPARE(attributes(view), before);
}

void tst_picker_edit_cmd::add_button_takes_the_toolbox() {
    picker_window window(nullptr);
    picker_view* view = window.frontPicker();
    picker_selection::setNames({QStringLiteral("hero:a"), QStringLiteral("hero:b")});

    view->undoer()->push(
        new add_button_cmd(view, QPoint(30, 40), QStringLiteral("Add One Button")));
    auto* command = new add_button_cmd(view, QPoint(50, 60), QStringLiteral("Add Command Button"),
                                       buttonAttributes::Python, QStringLiteral("Go"),
                                       QStringLiteral("print(1)"));
    command->button()->label = QStringLiteral("Run");
    view->undoer()->push(command);

    QCOMPARE(view->undoer()->undoText(), QStringLiteral("Add Command Button"));
    QCOMPARE(view->buttons()->size(), 2);
    const buttonAttributes& selection = view->buttons()->at(0).att;
    QCOMPARE(selection.pos, view->mapToPicker(QPoint(30, 40)));
    QCOMPARE(selection.type, qint32(buttonAttributes::Selection));
    QCOMPARE(selection.sel, picker_selection::names());
    QCOMPARE(selection.size, window.currentSize());
    QCOMPARE(selection.color, window.currentColor());
    QCOMPARE(selection.tcolor, window.currentTextColor());
    const buttonAttributes& script = view->buttons()->at(1).att;
    QCOMPARE(script.type, qint32(buttonAttributes::Command));
    QCOMPARE(script.api, qint32(buttonAttributes::Python));
    QCOMPARE(script.label, QStringLiteral("Run"));
    QCOMPARE(script.sel, QStringList{QStringLiteral("print(1)")});

    view->undoer()->undo();
    QCOMPARE(view->buttons()->size(), 1);
    view->undoer()->undo();
    QVERIFY(view->buttons()->isEmpty());
}

void tst_picker_edit_cmd::arrange_data() {
    QTest::addColumn<int>("action");
    QTest::addColumn<point_list>("start");
    QTest::addColumn<index_list>("selected");
    QTest::addColumn<point_list>("arranged");
    QTest::addColumn<point_list>("undone");

    const point_list spread{QPoint(0, 3), QPoint(10, 3), QPoint(40, 3)};
    QTest::newRow("distribute 0 10 40")
        << 2 << spread << index_list{0, 1, 2}
        << point_list{QPoint(0, 3), QPoint(21, 3), QPoint(42, 3)} << spread;
    // Right to left: undo hands the saved positions out in sorted order.
    QTest::newRow("distribute listed right to left")
        << 2 << point_list{QPoint(40, 3), QPoint(10, 3), QPoint(0, 3)} << index_list{0, 1, 2}
        << point_list{QPoint(42, 3), QPoint(21, 3), QPoint(0, 3)}
        << point_list{QPoint(0, 3), QPoint(10, 3), QPoint(40, 3)};
    // Width 6 widens to 9, step 4; the earlier of the equal xs comes first.
    QTest::newRow("equal keys keep list order")
        << 2 << point_list{QPoint(5, 0), QPoint(5, 1), QPoint(0, 2)} << index_list{0, 1, 2}
        << point_list{QPoint(4, 0), QPoint(8, 1), QPoint(0, 2)}
        << point_list{QPoint(5, 1), QPoint(0, 2), QPoint(5, 0)};
    // Height 31 widens to 33, step 16.
    QTest::newRow("distribute vertically, unselected stay")
        << 3 << point_list{QPoint(1, 30), QPoint(2, 0), QPoint(3, 99), QPoint(4, 9)}
        << index_list{0, 1, 3}
        << point_list{QPoint(1, 32), QPoint(2, 0), QPoint(3, 99), QPoint(4, 16)}
        << point_list{QPoint(4, 9), QPoint(1, 30), QPoint(3, 99), QPoint(2, 0)};
    QTest::newRow("align truncates toward zero")
        << 0 << point_list{QPoint(0, -3), QPoint(5, -4)} << index_list{0, 1}
        << point_list{QPoint(0, -3), QPoint(5, -3)} << point_list{QPoint(0, -3), QPoint(5, -4)};
    QTest::newRow("align vertically")
        << 1 << point_list{QPoint(3, 7), QPoint(-10, 1), QPoint(8, 4)} << index_list{0, 1, 2}
        << point_list{QPoint(0, 7), QPoint(0, 1), QPoint(0, 4)}
        << point_list{QPoint(8, 4), QPoint(3, 7), QPoint(-10, 1)};
    QTest::newRow("one button stays")
        << 2 << point_list{QPoint(4, 4), QPoint(9, 9)} << index_list{1}
        << point_list{QPoint(4, 4), QPoint(9, 9)} << point_list{QPoint(4, 4), QPoint(9, 9)};
    QTest::newRow("unknown mode moves nothing")
        << 7 << point_list{QPoint(4, 9), QPoint(9, 4)} << index_list{0, 1}
        << point_list{QPoint(4, 9), QPoint(9, 4)} << point_list{QPoint(9, 4), QPoint(4, 9)};
}

void tst_picker_edit_cmd::arrange() {
    QFETCH(int, action);
    QFETCH(point_list, start);
    QFETCH(index_list, selected);
    QFETCH(point_list, arranged);
    QFETCH(point_list, undone);

    picker_view view;
    fill(view, start);
    light(view, selected);

    view.undoer()->push(new arrange_buttons_cmd(&view, action));
    QCOMPARE(view.undoer()->count(), 1);
    QCOMPARE(positions(view), arranged);
    view.undoer()->undo();
    QCOMPARE(positions(view), undone);
}

QTEST_MAIN(tst_picker_edit_cmd)
#include "tst_picker_edit_cmd.moc"
