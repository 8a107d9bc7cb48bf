#include "../support/picker_test_kit.h"
#include "picker_arrange_cmd.h"
#include "picker_field_cmd.h"

#include <QSignalSpy>
#include <QTest>

using namespace picker_test_kit;

namespace {

// Each button its own colour, so that undo must give every one back its own.
buttonAttributes plain_button(int i, const QPoint& pos) {
    buttonAttributes att = button({QStringLiteral("n%1").arg(i)}, pos, 10);
    att.color = 0xFF000000u + unsigned(i);
    return att;
}

// One button per position, none lit.
void fill(picker_tab& tab, const point_list& positions) {
    for (int i = 0; i < positions.size(); ++i)
        tab.insertButton(plain_button(i, positions.at(i)), -1);
}

// Lights exactly the listed buttons, flags only.
void light(picker_tab& tab, const index_list& indices) {
    for (int i = 0; i < tab.count(); ++i)
        tab.unselect(i, false);
    tab.select_list(indices, false);
}

QVector<QPoint> positions(const picker_tab& tab) {
    QVector<QPoint> list;
    for (const buttonRecord& button : tab.buttons())
        list.append(button.att.pos);
    return list;
}

button_att_list attributes_of(const picker_tab& tab) {
    button_att_list list;
    for (const buttonRecord& button : tab.buttons())
        list.append(button.att);
    return list;
}

QList<qint16> lit_states(const picker_tab& tab) {
    QList<qint16> states;
    for (const buttonRecord& button : tab.buttons())
        states.append(button.selected);
    return states;
}

// The commands that act on the selection, made the way the view, toolbox and gestures make them.
enum class kind { color, labelc, adjust, label, nudge };

void push(picker_tab& tab, kind k, int value) {
    QUndoStack* stack = tab.undoer();
    const QRgb rgb = 0xFF000000u + unsigned(value);
    switch (k) {
    case kind::color:
        return stack->push(new change_color_cmd(&tab, rgb));
    case kind::labelc:
        return stack->push(new change_labelc_cmd(&tab, rgb));
    case kind::adjust:
        return stack->push(new adjust_size_cmd(&tab, value));
    case kind::label:
        return stack->push(new change_label_cmd(&tab, QString::number(value)));
    case kind::nudge:
        return stack->push(new nudge_buttons_cmd(&tab, QPoint(value, 0)));
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

// The tab document and its undo commands, on their own: what each step changes and what undo
// and redo give back.
class tst_picker_edit_cmd : public QObject {
    Q_OBJECT

private slots:
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

        picker_tab tab;
        fill(tab, point_list(5));
        const button_att_list before = attributes_of(tab);
        QUndoStack* stack = tab.undoer();
        QSignalSpy index(stack, &QUndoStack::indexChanged);
        QSignalSpy clean(stack, &QUndoStack::cleanChanged);

        for (const edit_step& step : steps) {
            light(tab, step.selected);
            push(tab, step.k, step.value);
        }
        const kind last = steps.last().k;
        QCOMPARE(stack->count(), count);
        QCOMPARE(index.last().at(0).toInt(), count);
        QCOMPARE(probe(tab.buttons().at(1), last), final);

        // The oldest command's saved values take every button back, one undo per step.
        index.clear();
        for (int i = 0; i < count; ++i)
            stack->undo();
        QCOMPARE(index.count(), count);
        QCOMPARE(index.last().at(0).toInt(), 0);
        QCOMPARE(clean.last().at(0).toBool(), true);
        QCOMPARE(attributes_of(tab), before);

        // Redo applies the whole merged change again, relative to the restored state.
        for (int i = 0; i < count; ++i)
            stack->redo();
        QCOMPARE(probe(tab.buttons().at(1), last), final);
        QCOMPARE(clean.last().at(0).toBool(), false);
    }

    void delete_reinserts_in_order() {
        picker_tab tab;
        fill(tab, point_list(5));
        const button_att_list before = attributes_of(tab);
        const button_att_list kept{before.at(0), before.at(2), before.at(4)};
        light(tab, {1, 3});

        tab.undoer()->push(new delete_buttons_cmd(&tab));
        QCOMPARE(tab.undoer()->undoText(), QStringLiteral("Delete Buttons"));
        QCOMPARE(attributes_of(tab), kept);

        tab.select(0, false);
        tab.undoer()->undo();
        QCOMPARE(attributes_of(tab), before);
        // The restored buttons come back dark; the selection stays as it was.
        QCOMPARE(lit_states(tab), (QList<qint16>{1, 0, 0, 0, 0}));

        tab.undoer()->redo();
        QCOMPARE(attributes_of(tab), kept);
    }

    void arrange_data() {
        QTest::addColumn<int>("action");
        QTest::addColumn<point_list>("start");
        QTest::addColumn<index_list>("selected");
        QTest::addColumn<point_list>("arranged");

        const index_list three{0, 1, 2};
        const point_list spread{{0, 3}, {10, 3}, {40, 3}};
        QTest::newRow("distribute 0 10 40")
            << 2 << spread << three << point_list{{0, 3}, {21, 3}, {42, 3}};
        QTest::newRow("distribute listed right to left")
            << 2 << point_list{{40, 3}, {10, 3}, {0, 3}} << three
            << point_list{{42, 3}, {21, 3}, {0, 3}};
        QTest::newRow("align y 10 20 31 at 20") << 0 << point_list{{0, 10}, {5, 20}, {9, 31}}
                                                << three << point_list{{0, 20}, {5, 20}, {9, 20}};
        QTest::newRow("align truncates toward zero")
            << 0 << point_list{{0, -3}, {5, -4}} << index_list{0, 1}
            << point_list{{0, -3}, {5, -3}};
    }

    void arrange() {
        QFETCH(int, action);
        QFETCH(point_list, start);
        QFETCH(index_list, selected);
        QFETCH(point_list, arranged);

        picker_tab tab;
        fill(tab, start);
        light(tab, selected);

        tab.undoer()->push(new arrange_buttons_cmd(&tab, action));
        QCOMPARE(positions(tab), arranged);
        // Every button goes back to where it was, whatever order the arrangement sorted them in.
        tab.undoer()->undo();
        QCOMPARE(positions(tab), start);
    }
};

QTEST_MAIN(tst_picker_edit_cmd)
#include "tst_picker_edit_cmd.moc"
