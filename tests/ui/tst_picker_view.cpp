#include "picker_selection.h"
#include "picker_view.h"

#include <QDataStream>
#include <QIODevice>
#include <QTest>

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

// The view button list of one button at (40, 30), size 10, red on black, labelled "L", naming
// "hero:a": count, then index, pos, size, type, api, color, tcolor, label, name count, names.
QByteArray one_button_list() {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << qint32(1) << qint32(0) << qint32(40) << qint32(30) << qint32(10) << qint32(0)
        << qint32(0) << quint32(0xFFB22222) << quint32(0xFF000000) << QStringLiteral("L")
        << qint32(1) << QStringLiteral("hero:a");
    return bytes;
}

} // namespace

class tst_picker_view : public QObject {
    Q_OBJECT

private slots:
    void conform_to_set_data();
    void conform_to_set();
    void push_button_places_and_bounds();
    void clear_selected_hands_names_to_the_mirror();
    void stream_round_trip_is_the_layout();
    void reset_buttons_forgets_the_history();
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

void tst_picker_view::push_button_places_and_bounds() {
    picker_view view;
    QCOMPARE(view.push_button(selection_button({QStringLiteral("a")}), -1), 0);
    QCOMPARE(view.push_button(selection_button({QStringLiteral("b")}), -1), 1);
    QCOMPARE(view.push_button(selection_button({QStringLiteral("c")}), 0), 0);

    QCOMPARE(view.buttons()->at(0).att.sel, QStringList{QStringLiteral("c")});
    QCOMPARE(view.buttons()->at(2).att.sel, QStringList{QStringLiteral("b")});
    const buttonRecord& button = view.buttons()->at(0);
    QCOMPARE(button.bounds.size(), QSize(10, 10));
    QCOMPARE(button.bounds.center(), QPoint(40, 30));
    QCOMPARE(button.which, QVector<char>{0});
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

void tst_picker_view::stream_round_trip_is_the_layout() {
    const QByteArray expected = one_button_list();
    picker_view view;
    view.push_button(selection_button({QStringLiteral("stale")}), -1);
    QDataStream in(expected);
    view.streamFrom(in, 4);
    QCOMPARE(view.buttons()->size(), 1);
    QCOMPARE(view.buttons()->at(0).att.label, QStringLiteral("L"));

    QByteArray written;
    QDataStream out(&written, QIODevice::WriteOnly);
    view.streamTo(out);
    QCOMPARE(written.toHex(), expected.toHex());
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

QTEST_MAIN(tst_picker_view)
#include "tst_picker_view.moc"
