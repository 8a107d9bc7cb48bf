#include "picker_test_vectors.h"
#include "picker_view.h"
#include "picker_window.h"
#include "ui_test_support.h"

#include <QClipboard>
#include <QMimeData>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

#include <memory>

using namespace picker_test_vectors;

Q_DECLARE_METATYPE(buttonAttributes)

namespace {

const int edit_menu = 1;
const QString button_format = QStringLiteral("application/x-qt-picker-mime;value=\"buttons\"");

// The attribute list of selectionButton() and commandButton(), laid out by hand.
QByteArray two_button_list() {
    return hex("00000001 00000002") + selectionRecord() + commandRecord();
}

buttonAttributes plain_button(int x, const QString& name) {
    return makeButton(QPoint(x, 10), 10, 0, 0, 0xFF808080, 0xFF000000, name, {name});
}

picker_view* view_at(const picker_window& window, int index) {
    return qobject_cast<picker_view*>(tabs_of(window)->widget(index));
}

// Buttons a, b, c; the ones named in lit are selected.
void fill(picker_view* view, const QStringList& lit) {
    const QStringList names{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")};
    for (int i = 0; i < names.size(); ++i) {
        view->push_button(plain_button(20 * (i + 1), names.at(i)), -1);
        if (lit.contains(names.at(i)))
            (*view->buttons())[i].selected = buttonRecord::All;
    }
}

button_att_list attributes_of(const picker_view* view) {
    button_att_list list;
    for (const buttonRecord& button : view->buttons())
        list.append(button.att);
    return list;
}

void put_on_clipboard(const QString& format, const QByteArray& bytes) {
    auto mime = std::make_unique<QMimeData>();
    mime->setData(format, bytes);
    QApplication::clipboard()->setMimeData(mime.release());
}

QByteArray clipboard_buttons() {
    const QMimeData* mime = QApplication::clipboard()->mimeData();
    return mime != nullptr ? mime->data(button_format) : QByteArray();
}

void trigger(const picker_window& window, const QString& entry) {
    QAction* action = entry_of(window, edit_menu, entry);
    QVERIFY2(action != nullptr, qPrintable(entry));
    action->trigger();
}

} // namespace

class tst_picker_clipboard : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void nothing_selected_leaves_the_clipboard_data();
    void nothing_selected_leaves_the_clipboard();
    void copy_puts_only_the_lit_buttons();
    void cut_then_undo_keeps_the_clipboard();
    void paste_data();
    void paste();
    void paste_between_two_tabs();
};

void tst_picker_clipboard::initTestCase() {
    QStandardPaths::setTestModeEnabled(true);
    qputenv("TALVORA_PICKER_CONFIG", QByteArray("/nonexistent/pickers.cfg"));
}

void tst_picker_clipboard::cleanup() {
    QApplication::clipboard()->clear();
}

void tst_picker_clipboard::nothing_selected_leaves_the_clipboard_data() {
    QTest::addColumn<QString>("entry");
    QTest::newRow("copy") << QStringLiteral("Copy");
    QTest::newRow("cut") << QStringLiteral("Cut");
}

void tst_picker_clipboard::nothing_selected_leaves_the_clipboard() {
    QFETCH(QString, entry);
    picker_window window(nullptr);
    picker_view* view = window.frontPicker();
    fill(view, {});
    QApplication::clipboard()->setText(QStringLiteral("kept"));
    QSignalSpy steps(view->undoer(), &QUndoStack::indexChanged);

    trigger(window, entry);

    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("kept"));
    QVERIFY(!QApplication::clipboard()->mimeData()->hasFormat(button_format));
    QCOMPARE(steps.count(), 0);
    QCOMPARE(view->buttons()->size(), 3);
}

void tst_picker_clipboard::copy_puts_only_the_lit_buttons() {
    picker_window window(nullptr);
    picker_view* view = window.frontPicker();
    view->push_button(plain_button(5, QStringLiteral("first")), -1);
    view->push_button(selectionButton(), -1);
    view->push_button(commandButton(), -1);
    (*view->buttons())[1].selected = buttonRecord::Some;
    (*view->buttons())[2].selected = buttonRecord::All;
    QApplication::clipboard()->setText(QStringLiteral("replaced"));

    trigger(window, QStringLiteral("Copy"));

    const QMimeData* mime = QApplication::clipboard()->mimeData();
    QCOMPARE(mime->formats(), QStringList{button_format});
    QCOMPARE(mime->data(button_format), two_button_list());
    QCOMPARE(view->buttons()->size(), 3);
    QCOMPARE(view->undoer()->count(), 0);
}

void tst_picker_clipboard::cut_then_undo_keeps_the_clipboard() {
    picker_window window(nullptr);
    picker_view* view = window.frontPicker();
    fill(view, {QStringLiteral("b")});
    const button_att_list before = attributes_of(view);
    QSignalSpy steps(view->undoer(), &QUndoStack::indexChanged);

    trigger(window, QStringLiteral("Cut"));

    QCOMPARE(steps.count(), 1);
    QCOMPARE(view->buttons()->size(), 2);
    QCOMPARE(view->buttons()->at(1).att.label, QStringLiteral("c"));
    // Format 1, one record: index 0, pos (40, 10), size 10, selection, MEL, the colours,
    // label "b", names "b".
    const QByteArray expected = hex("00000001 00000001"
                                    "00000000 00000028 0000000a 0000000a 00000000 00000000"
                                    "ff808080 ff000000 00000002 0062 00000001 00000002 0062");
    QCOMPARE(clipboard_buttons(), expected);

    show_menu(window, edit_menu);
    trigger(window, QStringLiteral("Undo Cut Button"));
    QCOMPARE(steps.count(), 2);
    QCOMPARE(attributes_of(view), before);
    QCOMPARE(int(view->buttons()->at(1).selected), int(buttonRecord::All));
    QCOMPARE(clipboard_buttons(), expected);
}

void tst_picker_clipboard::paste_data() {
    QTest::addColumn<QString>("format");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("inplace");
    QTest::addColumn<int>("steps");
    QTest::addColumn<button_att_list>("added");

    const button_att_list none;
    const button_att_list two{selectionButton(), commandButton()};
    const QString text = QStringLiteral("text/plain");
    QTest::newRow("text only") << text << QByteArray("a:b") << false << 0 << none;
    QTest::newRow("list format 2")
        << button_format << hex("00000002 00000000") << false << 1 << none;
    QTest::newRow("list format 0, in place")
        << button_format << hex("00000000 00000002") + selectionRecord() + commandRecord() << true
        << 1 << none;
    QTest::newRow("empty data") << button_format << QByteArray() << false << 1 << none;
    QTest::newRow("two buttons, in place")
        << button_format << two_button_list() << true << 1 << two;
}

void tst_picker_clipboard::paste() {
    QFETCH(QString, format);
    QFETCH(QByteArray, bytes);
    QFETCH(bool, inplace);
    QFETCH(int, steps);
    QFETCH(button_att_list, added);
    picker_window window(nullptr);
    picker_view* view = window.frontPicker();
    fill(view, {});
    const button_att_list before = attributes_of(view);
    put_on_clipboard(format, bytes);
    QSignalSpy pushed(view->undoer(), &QUndoStack::indexChanged);

    trigger(window, inplace ? QStringLiteral("Paste in Place") : QStringLiteral("Paste"));

    QCOMPARE(pushed.count(), steps);
    QCOMPARE(view->undoer()->count(), steps);
    QCOMPARE(attributes_of(view), before + added);
    QCOMPARE(QApplication::clipboard()->mimeData()->data(format), bytes);
}

void tst_picker_clipboard::paste_between_two_tabs() {
    picker_window window(nullptr);
    picker_view* source = window.frontPicker();
    fill(source, {QStringLiteral("a"), QStringLiteral("c")});
    window.new_tab();
    picker_view* target = window.frontPicker();
    QVERIFY(target != source);
    QCOMPARE(tabs_of(window)->count(), 2);
    const button_att_list sourceButtons = attributes_of(source);

    tabs_of(window)->setCurrentIndex(0);
    trigger(window, QStringLiteral("Copy"));
    tabs_of(window)->setCurrentIndex(1);
    trigger(window, QStringLiteral("Paste"));

    QCOMPARE(view_at(window, 1), target);
    QCOMPARE(target->undoer()->count(), 1);
    QCOMPARE(source->undoer()->count(), 0);
    QCOMPARE(attributes_of(source), sourceButtons);
    QCOMPARE(target->buttons()->size(), 2);
    // Placed elsewhere, but the group keeps its shape and everything else.
    const QPoint offset = target->buttons()->at(0).att.pos - sourceButtons.at(0).pos;
    for (int i = 0; i < 2; ++i) {
        buttonAttributes expected = sourceButtons.at(2 * i);
        expected.pos += offset;
        QCOMPARE(target->buttons()->at(i).att, expected);
    }
}

QTEST_MAIN(tst_picker_clipboard)
#include "tst_picker_clipboard.moc"
