#include "picker_test_vectors.h"
#include "picker_view.h"
#include "picker_window.h"
#include "ui_test_support.h"

#include <QClipboard>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace picker_test_vectors;

Q_DECLARE_METATYPE(buttonAttributes)

namespace {

const QString button_format = QStringLiteral("application/x-qt-picker-mime;value=\"buttons\"");

// Buttons a, b, c at x 20, 40, 60; lit[i] is button i's selection state.
void fill(picker_view* view, const QList<qint16>& lit) {
    const QStringList names{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")};
    for (int i = 0; i < names.size(); ++i) {
        view->tab()->insertButton(makeButton(QPoint(20 * (i + 1), 10), 10, 0, 0, 0xFF808080,
                                             0xFF000000, names.at(i), {names.at(i)}),
                                  -1);
        if (lit.value(i, buttonRecord::None) != buttonRecord::None)
            view->tab()->select(i, false);
    }
}

QByteArray clipboard_buttons() {
    const QMimeData* mime = QApplication::clipboard()->mimeData();
    return mime != nullptr ? mime->data(button_format) : QByteArray();
}

void trigger(const picker_window& window, const QString& entry) {
    QAction* action = entry_of(window, 1, entry);
    QVERIFY2(action != nullptr, qPrintable(entry));
    action->trigger();
}

} // namespace

class tst_picker_clipboard : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { isolate_settings(); }

    void cleanup() { QApplication::clipboard()->clear(); }

    void copy_of_nothing_leaves_the_clipboard() {
        picker_window window(nullptr);
        picker_view* view = window.frontPicker();
        fill(view, {});
        QApplication::clipboard()->setText(QStringLiteral("kept"));

        trigger(window, QStringLiteral("Copy"));

        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("kept"));
        QVERIFY(!QApplication::clipboard()->mimeData()->hasFormat(button_format));
    }

    void cut_then_undo_reselects() {
        picker_window window(nullptr);
        picker_view* view = window.frontPicker();
        fill(view, {buttonRecord::None, buttonRecord::All});
        const button_att_list before = attributes_of(view);
        QSignalSpy steps(view->tab()->undoer(), &QUndoStack::indexChanged);

        trigger(window, QStringLiteral("Cut"));

        QCOMPARE(steps.count(), 1);
        QCOMPARE(view->tab()->count(), 2);
        // Format 1, one record: index 0, pos (40, 10), size 10, selection, MEL, the colours,
        // label "b", names "b".
        const QByteArray expected = hex("00000001 00000001"
                                        "00000000 00000028 0000000a 0000000a 00000000 00000000"
                                        "ff808080 ff000000 00000002 0062 00000001 00000002 0062");
        QCOMPARE(clipboard_buttons(), expected);

        show_menu(window, 1);
        trigger(window, QStringLiteral("Undo Cut Button"));
        QCOMPARE(steps.count(), 2);
        QCOMPARE(attributes_of(view), before);
        QCOMPARE(int(view->tab()->buttons().at(1).selected), int(buttonRecord::All));
        QCOMPARE(clipboard_buttons(), expected);
    }

    void paste_data() {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("steps");
        QTest::addColumn<button_att_list>("added");

        QTest::newRow("text only")
            << QStringLiteral("text/plain") << QByteArray("a:b") << 0 << button_att_list();
        QTest::newRow("list format 2")
            << button_format << hex("00000002 00000000") << 1 << button_att_list();
        QTest::newRow("two buttons")
            << button_format << hex("00000001 00000002") + selectionRecord() + commandRecord() << 1
            << button_att_list{selectionButton(), commandButton()};
    }

    void paste() {
        QFETCH(QString, format);
        QFETCH(QByteArray, bytes);
        QFETCH(int, steps);
        QFETCH(button_att_list, added);
        picker_window window(nullptr);
        picker_view* view = window.frontPicker();
        fill(view, {});
        const button_att_list before = attributes_of(view);
        auto mime = std::make_unique<QMimeData>();
        mime->setData(format, bytes);
        QApplication::clipboard()->setMimeData(mime.release());
        QSignalSpy pushed(view->tab()->undoer(), &QUndoStack::indexChanged);

        trigger(window, QStringLiteral("Paste in Place"));

        QCOMPARE(pushed.count(), steps);
        QCOMPARE(view->tab()->undoer()->count(), steps);
        QCOMPARE(attributes_of(view), before + added);
        QCOMPARE(QApplication::clipboard()->mimeData()->data(format), bytes);
    }

    // Partly lit buttons are copied too; the copy replaces any text on the clipboard.
    void paste_between_two_tabs() {
        picker_window window(nullptr);
        picker_view* source = window.frontPicker();
        fill(source, {buttonRecord::All, buttonRecord::None, buttonRecord::Some});
        QApplication::clipboard()->setText(QStringLiteral("replaced"));
        window.new_tab();
        picker_view* target = window.frontPicker();
        const button_att_list sourceButtons = attributes_of(source);

        tabs_of(window)->setCurrentIndex(0);
        trigger(window, QStringLiteral("Copy"));
        QCOMPARE(QApplication::clipboard()->mimeData()->formats(), QStringList{button_format});
        tabs_of(window)->setCurrentIndex(1);
        trigger(window, QStringLiteral("Paste"));

        QCOMPARE(target->tab()->undoer()->count(), 1);
        QCOMPARE(attributes_of(source), sourceButtons);
        QCOMPARE(target->tab()->count(), 2);
        // Placed elsewhere, but the group keeps its shape and everything else.
        const QPoint offset = target->tab()->buttons().at(0).att.pos - sourceButtons.at(0).pos;
        for (int i = 0; i < 2; ++i) {
            buttonAttributes expected = sourceButtons.at(2 * i);
            expected.pos += offset;
            QCOMPARE(target->tab()->buttons().at(i).att, expected);
        }
    }
};

QTEST_MAIN(tst_picker_clipboard)
#include "tst_picker_clipboard.moc"
