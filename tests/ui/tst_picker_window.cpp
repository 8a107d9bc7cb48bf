#include "picker_window.h"
#include "ui_test_support.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QInputDialog>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTest>

namespace {

enum menu_index { file_menu = 0, edit_menu = 1, picker_menu = 2 };

// Shows the window active with keyboard focus, as after the pointer entered it.
bool focus(picker_window& window) {
    window.show();
    window.activateWindow();
    if (!QTest::qWaitForWindowActive(&window))
        return false;
    QEnterEvent enter(QPointF(5, 5), QPointF(5, 5), QPointF(5, 5));
    QApplication::sendEvent(&window, &enter);
    return window.hasFocus();
}

} // namespace

class tst_picker_window : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { isolate_settings(); }

    // Edit with a tab: empty undo stack, nothing selected, no picker data on the clipboard.
    void menu_states_data() {
        QTest::addColumn<int>("menu");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("withTab");
        QTest::addColumn<bool>("withoutTab");

        QTest::newRow("New") << int(file_menu) << "New..." << true << true;
        QTest::newRow("Save") << int(file_menu) << "Save" << true << false;
        QTest::newRow("Cut") << int(edit_menu) << "Cut" << false << false;
        QTest::newRow("Paste in Place") << int(edit_menu) << "Paste in Place" << false << false;
        QTest::newRow("Add One Button") << int(picker_menu) << "Add One Button" << true << false;
        QTest::newRow("Change Namespace")
            << int(picker_menu) << "Change Namespace..." << true << true;
    }
    void menu_states() {
        QFETCH(int, menu);
        QFETCH(QString, text);
        QFETCH(bool, withTab);
        QFETCH(bool, withoutTab);
        QApplication::clipboard()->clear();
        picker_window window(nullptr);
        window.close_tab(0);
        show_menu(window, menu);
        QVERIFY2(entry_of(window, menu, text) != nullptr, qPrintable(text));
        QCOMPARE(entry_of(window, menu, text)->isEnabled(), withoutTab);
        window.new_tab();
        show_menu(window, menu);
        QCOMPARE(entry_of(window, menu, text)->isEnabled(), withTab);
    }

    // Every enabled action on a sequence fires, and only while the pointer is over the window.
    void keys_fire_every_enabled_action_under_the_pointer() {
        picker_window window(nullptr);
        QAction extra(QStringLiteral("also on Ctrl+N"), &window);
        window.setWidgetShortcut(&extra, QKeySequence(QStringLiteral("Ctrl+N")));
        window.addAction(&extra);
        QAction disabled(QStringLiteral("disabled on Ctrl+N"), &window);
        window.setWidgetShortcut(&disabled, QKeySequence(QStringLiteral("Ctrl+N")));
        disabled.setEnabled(false);
        window.addAction(&disabled);
        QSignalSpy extraFired(&extra, &QAction::triggered);
        QSignalSpy disabledFired(&disabled, &QAction::triggered);
        QVERIFY(focus(window));
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(&window, &leave);
        QTest::keyClick(&window, Qt::Key_N, Qt::ControlModifier);
        QCOMPARE(tabs_of(window)->count(), 1);

        QVERIFY(focus(window));
        QTest::keyClick(&window, Qt::Key_N, Qt::ControlModifier);
        QCOMPARE(tabs_of(window)->count(), 2);
        QCOMPARE(extraFired.count(), 1);
        QCOMPARE(disabledFired.count(), 0);
    }

    void rename_tab_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("expected");
        QTest::newRow("new name") << QStringLiteral("Arms") << QStringLiteral("Arms");
        QTest::newRow("empty keeps the name") << QString() << QStringLiteral("Untitled");
    }
    void rename_tab() {
        QFETCH(QString, typed);
        QFETCH(QString, expected);
        picker_window window(nullptr);
        QString shown;
        answer_next_dialog([&](QWidget* dialog) {
            auto* input = qobject_cast<QInputDialog*>(dialog);
            if (input == nullptr) {
                dialog->close();
                return;
            }
            shown = input->labelText() + QLatin1Char('=') + input->textValue();
            input->setTextValue(typed);
            input->accept();
        });
        entry_of(window, file_menu, QStringLiteral("Rename Tab..."))->trigger();

        QCOMPARE(shown, QStringLiteral("Name=Untitled"));
        QCOMPARE(tabs_of(window)->tabText(0), expected);
    }

    // Ctrl+W asks first; Cancel keeps the tab, Ok closes it.
    void close_tab_asks_first() {
        picker_window window(nullptr);
        window.frontTab()->insertButton(button_at(QPoint(10, 10), {QStringLiteral("a")}), -1);
        const QString question = QStringLiteral(
            "Are you sure you want to close the tab \"Untitled\"?\n\nAll changes will be lost.");
        for (const QMessageBox::StandardButton answer : {QMessageBox::Cancel, QMessageBox::Ok}) {
            QString asked;
            answer_next_dialog([&asked, answer](QWidget* dialog) {
                auto* box = qobject_cast<QMessageBox*>(dialog);
                if (box != nullptr) {
                    asked = box->text();
                    box->button(answer)->click();
                } else {
                    dialog->close();
                }
            });
            QVERIFY(focus(window));
            QTest::keyClick(&window, Qt::Key_W, Qt::ControlModifier);
            QCOMPARE(asked, question);
            QCOMPARE(tabs_of(window)->count(), answer == QMessageBox::Ok ? 0 : 1);
        }
        // A tab with nothing on it goes without a question.
        window.new_tab();
        QVERIFY(focus(window));
        QTest::keyClick(&window, Qt::Key_W, Qt::ControlModifier);
        QCOMPARE(tabs_of(window)->count(), 0);
    }
};

QTEST_MAIN(tst_picker_window)
#include "tst_picker_window.moc"
