#include "picker_version.h"
#include "picker_view.h"
#include "picker_window.h"
#include "ui_test_support.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QInputDialog>
#include <QKeySequence>
#include <QMessageBox>
#include <QMimeData>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

namespace {

enum menu_index { file_menu = 0, edit_menu = 1, picker_menu = 2 };

} // namespace

class tst_picker_window : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void menu_states_data();
    void menu_states();
    void shared_sequence_fires_every_enabled_action();
    void keys_reach_the_window_only_while_the_pointer_is_over_it();
    void paste_in_place_keys_do_not_paste_through_the_window();
    void rename_tab_data();
    void rename_tab();
    void close_tab_asks_first_data();
    void close_tab_asks_first();
    void about_box_names_version_and_build_hour();

private:
    // Shows the window active with keyboard focus, as after the pointer entered it.
    static bool focus(picker_window& window);
};

void tst_picker_window::initTestCase() {
    QStandardPaths::setTestModeEnabled(true);
    qputenv("TALVORA_PICKER_CONFIG", QByteArray("/nonexistent/pickers.cfg"));
}

bool tst_picker_window::focus(picker_window& window) {
    window.show();
    window.activateWindow();
    if (!QTest::qWaitForWindowActive(&window))
        return false;
    QEnterEvent enter(QPointF(5, 5), QPointF(5, 5), QPointF(5, 5));
    QApplication::sendEvent(&window, &enter);
    return window.hasFocus();
}

void tst_picker_window::menu_states_data() {
    QTest::addColumn<bool>("withTab");
    QTest::addColumn<int>("menu");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("enabled");

    struct row {
        int menu;
        const char* text;
        bool withoutTab;
        bool withTab;
    };
    // Edit with a tab: empty undo stack, nothing selected, no picker data on the clipboard.
    const row rows[] = {
        {file_menu, "New...", true, true},
        {file_menu, "Save", false, true},
        {file_menu, "Rename Tab...", false, true},
        {edit_menu, "Can't Undo", false, false},
        {edit_menu, "Cut", false, false},
        {edit_menu, "Paste in Place", true, false},
        {edit_menu, "Hide Toolbox", true, true},
        {picker_menu, "Add One Button", false, true},
        {picker_menu, "Change Background...", false, true},
        {picker_menu, "Change Namespace...", true, true},
    };
    for (const row& r : rows) {
        QTest::addRow("no tab: %s", r.text)
            << false << r.menu << QString::fromUtf8(r.text) << r.withoutTab;
        QTest::addRow("one tab: %s", r.text)
            << true << r.menu << QString::fromUtf8(r.text) << r.withTab;
    }
}

void tst_picker_window::menu_states() {
    QFETCH(bool, withTab);
    QFETCH(int, menu);
    QFETCH(QString, text);
    QFETCH(bool, enabled);

    QApplication::clipboard()->clear();
    picker_window window(nullptr);
    if (!withTab)
        window.close_tab(0);
    QCOMPARE(tabs_of(window)->count(), withTab ? 1 : 0);
    show_menu(window, menu);
    QAction* action = entry_of(window, menu, text);
    QVERIFY2(action != nullptr, qPrintable(text));
    QCOMPARE(action->isEnabled(), enabled);
}

void tst_picker_window::shared_sequence_fires_every_enabled_action() {
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

    QTest::keyClick(&window, Qt::Key_N, Qt::ControlModifier);

    QCOMPARE(tabs_of(window)->count(), 2);
    QCOMPARE(extraFired.count(), 1);
    QCOMPARE(disabledFired.count(), 0);
}

void tst_picker_window::keys_reach_the_window_only_while_the_pointer_is_over_it() {
    picker_window window(nullptr);
    QVERIFY(focus(window));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&window, &leave);
    QVERIFY(!window.hasFocus());

    QTest::keyClick(&window, Qt::Key_N, Qt::ControlModifier);
    QCOMPARE(tabs_of(window)->count(), 1);

    QVERIFY(focus(window));
    QTest::keyClick(&window, Qt::Key_N, Qt::ControlModifier);
    QCOMPARE(tabs_of(window)->count(), 2);
}

void tst_picker_window::paste_in_place_keys_do_not_paste_through_the_window() {
    auto* mime = new QMimeData;
    mime->setData(QStringLiteral("application/x-qt-picker-mime;value=\"buttons\""),
                  QByteArray("x"));
    QApplication::clipboard()->setMimeData(mime);
    picker_window window(nullptr);
    show_menu(window, edit_menu);
    QAction* inPlace = entry_of(window, edit_menu, QStringLiteral("Paste in Place"));
    QAction* paste = entry_of(window, edit_menu, QStringLiteral("Paste"));
    QVERIFY(inPlace != nullptr && paste != nullptr);
    QVERIFY(inPlace->isEnabled() && paste->isEnabled());
    QCOMPARE(inPlace->shortcut(), QKeySequence(QStringLiteral("Shift+Ctrl+V")));
    QSignalSpy inPlaceFired(inPlace, &QAction::triggered);
    QSignalSpy pasteFired(paste, &QAction::triggered);
    QVERIFY(focus(window));

    QTest::keyClick(&window, Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(inPlaceFired.count(), 0);
    QCOMPARE(pasteFired.count(), 0);

    QTest::keyClick(&window, Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(pasteFired.count(), 1);
    QCOMPARE(inPlaceFired.count(), 0);
    QApplication::clipboard()->clear();
}

void tst_picker_window::rename_tab_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("accept");
    QTest::addColumn<QString>("expected");

    QTest::newRow("new name") << QStringLiteral("Arms") << true << QStringLiteral("Arms");
    QTest::newRow("empty keeps the name") << QString() << true << QStringLiteral("Untitled");
    QTest::newRow("cancel keeps the name")
        << QStringLiteral("Arms") << false << QStringLiteral("Untitled");
}

void tst_picker_window::rename_tab() {
    QFETCH(QString, typed);
    QFETCH(bool, accept);
    QFETCH(QString, expected);

    picker_window window(nullptr);
    QString shownLabel;
    QString shownValue;
    answer_next_dialog([&](QWidget* dialog) {
        auto* input = qobject_cast<QInputDialog*>(dialog);
        if (input == nullptr) {
            dialog->close();
            return;
        }
        shownLabel = input->labelText();
        shownValue = input->textValue();
        input->setTextValue(typed);
        if (accept)
            input->accept();
        else
            input->reject();
    });
    entry_of(window, file_menu, QStringLiteral("Rename Tab..."))->trigger();

    QCOMPARE(shownLabel, QStringLiteral("Name"));
    QCOMPARE(shownValue, QStringLiteral("Untitled"));
    QCOMPARE(tabs_of(window)->tabText(0), expected);
}

void tst_picker_window::close_tab_asks_first_data() {
    QTest::addColumn<int>("answer");
    QTest::addColumn<int>("tabsLeft");

    QTest::newRow("cancel") << int(QMessageBox::Cancel) << 1;
    QTest::newRow("ok") << int(QMessageBox::Ok) << 0;
}

void tst_picker_window::close_tab_asks_first() {
    QFETCH(int, answer);
    QFETCH(int, tabsLeft);

    picker_window window(nullptr);
    QString question;
    answer_next_dialog([&](QWidget* dialog) {
        auto* box = qobject_cast<QMessageBox*>(dialog);
        if (box == nullptr) {
            dialog->close();
            return;
        }
        question = box->text();
        box->button(static_cast<QMessageBox::StandardButton>(answer))->click();
    });
    QVERIFY(focus(window));
    QTest::keyClick(&window, Qt::Key_W, Qt::ControlModifier);

    QCOMPARE(question, QStringLiteral("Are you sure you want to close the tab \"Untitled\"?\n\n"
                                      "All changes will be lost."));
    QCOMPARE(tabs_of(window)->count(), tabsLeft);
}

void tst_picker_window::about_box_names_version_and_build_hour() {
    picker_window window(nullptr);
    QString title;
    QString text;
    answer_next_dialog([&](QWidget* dialog) {
        title = dialog->windowTitle();
        if (auto* box = qobject_cast<QMessageBox*>(dialog))
            text = box->text();
        dialog->close();
    });
    entry_of(window, 3, QStringLiteral("About TalvoraPicker..."))->trigger();

    QCOMPARE(title, QStringLiteral("About"));
    const QStringList lines = text.split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 3);
    QCOMPARE(lines.at(0), QStringLiteral("TalvoraPicker"));
    const QString version = QRegularExpression::escape(QStringLiteral(PICKER_VERSION));
    QVERIFY2(QRegularExpression(QStringLiteral("^Version %1 \\(build [0-2][0-9]\\)$").arg(version))
                 .match(lines.at(1))
                 .hasMatch(),
             qPrintable(lines.at(1)));
}

QTEST_MAIN(tst_picker_window)
#include "tst_picker_window.moc"
