#include "picker_arrange_cmd.h"
#include "picker_edit_cmd.h"
#include "picker_selection.h"
#include "picker_view.h"
#include "picker_window.h"
#include "ui_test_support.h"

#include <QSignalSpy>
#include <QTest>

namespace {

// Each button its own colour, so that undo must give every one back its own.
buttonAttributes plain_button(int i, const QPoint& pos) {
    buttonAttributes att = button_at(pos, {QStringLiteral("n%1").arg(i)});
    att.color = 0xFF000000u + unsigned(i);
    return att;
}

// One button per position, none lit; buttons carry no label so nothing is rendered.
void fill(picker_view& view, const point_list& positions) {
    for (int i = 0; i < positions.size(); ++i)
        view.push_button(plain_button(i, positions.at(i)), -1);
}

// Lights exactly the listed buttons, flags only.
void light(picker_view& view, const index_list& indices) {
    for (buttonRecord& button : *view.buttons())
        button.unselect(true);
    for (int index : indices)
        (*view.buttons())[index].select(true);
}

// The commands that act on the selection, made the way the view, toolbox and gestures make them.
enum class kind { color, labelc, adjust, label, nudge };

void push(picker_view& view, kind k, int value) {
    QUndoStack* stack = view.undoer();
    const QRgb rgb = 0xFF000000u + unsigned(value);
    switch (k) {
    case kind::color:
        return stack->push(new change_color_cmd(&view, rgb));
    case kind::labelc:
        return stack->push(new change_labelc_cmd(&view, rgb));
    case kind::adjust:
        return stack->push(new adjust_size_cmd(&view, value));
    case kind::label:
        return stack->push(new change_label_cmd(&view, QString::number(value)));
    case kind::nudge:
        return stack->push(new nudge_buttons_cmd(&view, QPoint(value, 0)));
    }
}

// The attribute a step of kind k changes, read from one button.
int probe(const buttonRecord& button, kind k) {
    switch (k) {
    case kind::color:
        return int(button.att.color & 0xFFFFFF);
    case kind::labelc:
        return int(button.att.tcolor & 0xFFFFFF);
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

    void merging_data() {
        QTest::addColumn<QList<edit_step>>("steps");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("final");

        const index_list two{1, 3};
        const edit_step up{kind::adjust, 1, two};
        QTest::newRow("three increases") << QList<edit_step>{up, up, up} << 1 << 13;
        QTest::newRow("decrease after two increases")
            << QList<edit_step>{up, up, {kind::adjust, -1, two}} << 2 << 11;
        QTest::newRow("increases on another selection")
            << QList<edit_step>{up, {kind::adjust, 1, {1}}} << 2 << 12;
        QTest::newRow("colour then label colour")
            << QList<edit_step>{{kind::color, 5, two}, {kind::labelc, 6, two}} << 2 << 6;
        QTest::newRow("nudge back and forth")
            << QList<edit_step>{{kind::nudge, 1, two}, {kind::nudge, -1, two}} << 1 << 0;
        QTest::newRow("labels never merge")
            << QList<edit_step>{{kind::label, 5, two}, {kind::label, 6, two}} << 2 << 6;
    }

    void merging() {
        QFETCH(QList<edit_step>, steps);
        QFETCH(int, count);
        QFETCH(int, final);

        picker_view view;
        fill(view, point_list(5));
        const button_att_list before = attributes_of(&view);
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
        QCOMPARE(attributes_of(&view), before);

        // Redo applies the whole merged change again, relative to the restored state.
        for (int i = 0; i < count; ++i)
            stack->redo();
        QCOMPARE(probe(view.buttons()->at(1), last), final);
        QCOMPARE(clean.last().at(0).toBool(), false);
    }

    void delete_reinserts_in_order() {
        picker_view view;
        fill(view, point_list(5));
        const button_att_list before = attributes_of(&view);
        const button_att_list kept{before.at(0), before.at(2), before.at(4)};
        light(view, {1, 3});

        view.undoer()->push(new delete_buttons_cmd(&view));
        QCOMPARE(view.undoer()->undoText(), QStringLiteral("Delete Buttons"));
        QCOMPARE(attributes_of(&view), kept);

        (*view.buttons())[0].select(true);
        view.undoer()->undo();
        QCOMPARE(attributes_of(&view), before);
        // The restored buttons come back dark; the selection stays as it was.
        QCOMPARE(lit_states(&view), (QList<qint16>{1, 0, 0, 0, 0}));

        view.undoer()->redo();
        QCOMPARE(attributes_of(&view), kept);
    }

    void paste_places_and_selects_data() {
        QTest::addColumn<point_list>("pasted");
        QTest::addColumn<bool>("inplace");
        QTest::addColumn<point_list>("placed");

        // The view is 200 x 100 at zoom 1: its centre (99, 49) is picker (99, 49).
        const point_list group{{10, 10}, {30, 20}, {20, 40}};
        QTest::newRow("in place") << group << true << group;
        // Position bounds (10, 10)-(30, 40), centre (20, 25): offset (79, 24).
        QTest::newRow("centred") << group << false << point_list{{89, 34}, {109, 44}, {99, 64}};
    }

    void paste_places_and_selects() {
        QFETCH(point_list, pasted);
        QFETCH(bool, inplace);
        QFETCH(point_list, placed);

        picker_view view;
        view.resize(200, 100);
        fill(view, point_list(2));
        light(view, {0});
        button_att_list clip;
        for (const QPoint& pos : pasted)
            clip.append(plain_button(7, pos));

        view.undoer()->push(new paste_buttons_cmd(&view, clip, inplace));

        QCOMPARE(positions(&view).mid(2), placed);
        QCOMPARE(lit_states(&view), (QList<qint16>{0, 0, 1, 1, 1}));
        view.undoer()->undo();
        QCOMPARE(lit_states(&view), (QList<qint16>{0, 0}));
    }

    void update_swaps_names() {
        picker_view view;
        fill(view, point_list(3));
        const QStringList rebound{QStringLiteral("x"), QStringLiteral("y")};
        picker_selection::setNames(rebound);

        view.undoer()->push(new update_buttons_cmd(&view, &(*view.buttons())[1], rebound));
        const buttonRecord& button = view.buttons()->at(1);
        QCOMPARE(button.att.sel, rebound);
        QCOMPARE(button.which, (sel_list{1, 1}));
        QCOMPARE(int(button.selected), int(buttonRecord::All));

        view.undoer()->undo();
        QCOMPARE(view.buttons()->at(1).att.sel, QStringList{QStringLiteral("n1")});
        QCOMPARE(int(view.buttons()->at(1).selected), int(buttonRecord::None));
    }

    void add_button_takes_the_toolbox() {
        picker_window window(nullptr);
        picker_view* view = window.frontPicker();
        picker_selection::setNames({QStringLiteral("hero:a"), QStringLiteral("hero:b")});

        view->undoer()->push(
            new add_button_cmd(view, QPoint(30, 40), QStringLiteral("Add One Button")));
        QCOMPARE(view->undoer()->undoText(), QStringLiteral("Add One Button"));
        const buttonAttributes& added = view->buttons()->at(0).att;
        QCOMPARE(added.pos, view->mapToPicker(QPoint(30, 40)));
        QCOMPARE(added.type, qint32(buttonAttributes::Selection));
        QCOMPARE(added.sel, picker_selection::names());
        QCOMPARE(added.size, window.currentSize());
        QCOMPARE(added.color, window.currentColor());
        view->undoer()->undo();
        QVERIFY(view->buttons()->isEmpty());
    }

    void arrange_data() {
        QTest::addColumn<int>("action");
        QTest::addColumn<point_list>("start");
        QTest::addColumn<index_list>("selected");
        QTest::addColumn<point_list>("arranged");
        QTest::addColumn<point_list>("undone");

        const index_list three{0, 1, 2};
        const point_list spread{{0, 3}, {10, 3}, {40, 3}};
        QTest::newRow("distribute 0 10 40")
            << 2 << spread << three << point_list{{0, 3}, {21, 3}, {42, 3}} << spread;
        // Right to left: undo hands the saved positions out in sorted order.
        QTest::newRow("distribute listed right to left")
            << 2 << point_list{{40, 3}, {10, 3}, {0, 3}} << three
            << point_list{{42, 3}, {21, 3}, {0, 3}} << spread;
        QTest::newRow("align y 10 20 31 at 20")
            << 0 << point_list{{0, 10}, {5, 20}, {9, 31}} << three
            << point_list{{0, 20}, {5, 20}, {9, 20}} << point_list{{0, 10}, {5, 20}, {9, 31}};
        QTest::newRow("align truncates toward zero")
            << 0 << point_list{{0, -3}, {5, -4}} << index_list{0, 1} << point_list{{0, -3}, {5, -3}}
            << point_list{{0, -3}, {5, -4}};
    }

    void arrange() {
        QFETCH(int, action);
        QFETCH(point_list, start);
        QFETCH(index_list, selected);
        QFETCH(point_list, arranged);
        QFETCH(point_list, undone);

        picker_view view;
        fill(view, start);
        light(view, selected);

        view.undoer()->push(new arrange_buttons_cmd(&view, action));
        QCOMPARE(positions(&view), arranged);
        view.undoer()->undo();
        QCOMPARE(positions(&view), undone);
    }
};

QTEST_MAIN(tst_picker_edit_cmd)
#include "tst_picker_edit_cmd.moc"
