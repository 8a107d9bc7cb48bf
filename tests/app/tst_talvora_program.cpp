#include "host_main_window.h"
#include "picker_embedded_host.h"
#include "picker_main.h"
#include "picker_prompt.h"
#include "picker_view.h"
#include "picker_window.h"

#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

// The program's window as a user meets it: the demo scene, its picker, the outliner, the script
// line and the File menu, driven with real events.
class tst_talvora_program : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();
    void clickSelectsInOutliner();
    void outlinerLightsEveryTab();
    void scriptLineRunsMel();
    void sceneSavedClearedAndOpened();
    void corruptSceneChangesNothing();

private:
    picker_window* picker() const { return dynamic_cast<picker_window*>(picker_main::window()); }
    QTabWidget* tabs() const { return picker()->findChild<QTabWidget*>(); }
    picker_view* tab(int index) const { return qobject_cast<picker_view*>(tabs()->widget(index)); }
    QListWidgetItem* outlined(const QString& name) const;
    void run(const QString& mel);
    void choose(const QString& entry, const QString& file);
    static const buttonRecord* button_for(const picker_view* view, const QString& node);

    QTemporaryDir dir_;
    picker_embedded_host host_;
    std::unique_ptr<host_main_window> main_;
    const QString demo_ = QStringLiteral(TALVORA_PICKER_DEMO);
};

void tst_talvora_program::initTestCase() {
    QVERIFY(dir_.isValid());
    picker_set_dialog_hook([](QDialog&) { return int(QDialog::Rejected); });
    // Leaving a modified scene asks first; these cases leave it without saving.
    picker_set_message_hook([](const picker_message&) { return QMessageBox::Discard; });
    main_ = std::make_unique<host_main_window>(host_);
    host_.setMainWindow(main_.get());
    QVERIFY(picker_main::initialize(host_, &picker_window::create));
    main_->show();
    QVERIFY(QTest::qWaitForWindowExposed(main_.get()));
    run(QStringLiteral("TalvoraPicker"));
}

// Each case starts from the demo as the program opens it: the scene brings its picker back.
void tst_talvora_program::init() {
    run(QStringLiteral("file -open -f \"%1/demo_scene.ma\"").arg(demo_));
    QCOMPARE(tabs()->count(), 1);
    QCOMPARE(tab(0)->buttons()->size(), 74);
    // The outliner follows the scene on its own time, as a user sees it.
    QTRY_VERIFY(outlined(QStringLiteral("villain:head_ctrl")) != nullptr);
}

void tst_talvora_program::cleanupTestCase() {
    host_.quit();
    picker_main::uninitialize();
    main_.reset();
    picker_set_dialog_hook({});
    picker_set_file_hook({});
    picker_set_message_hook({});
}

void tst_talvora_program::run(const QString& mel) {
    QVERIFY2(host_.executeCommand(mel), qPrintable(mel));
    host_.processIdle();
}

QListWidgetItem* tst_talvora_program::outlined(const QString& name) const {
    const QList<QListWidgetItem*> items =
        main_->findChild<QListWidget*>()->findItems(name, Qt::MatchExactly);
    return items.value(0);
}

const buttonRecord* tst_talvora_program::button_for(const picker_view* view, const QString& node) {
    for (const buttonRecord& button : view->buttons()) {
        if (button.att.sel == QStringList{node})
            return &button;
    }
    return nullptr;
}

// Triggers a File menu entry with the file chooser answering file.
void tst_talvora_program::choose(const QString& entry, const QString& file) {
    picker_set_file_hook([file](const picker_file_question&) { return QStringList{file}; });
    for (QAction* action : main_->menuBar()->actions().first()->menu()->actions()) {
        if (action->text().remove(QLatin1Char('&')) == entry) {
            action->trigger();
            host_.processIdle();
            return;
        }
    }
    QFAIL(qPrintable(QStringLiteral("no File entry ") + entry));
}

void tst_talvora_program::clickSelectsInOutliner() {
    picker_view* view = tab(0);
    const buttonRecord* head = button_for(view, QStringLiteral("hero:head_ctrl"));
    QVERIFY(head != nullptr);
    QTest::mouseClick(view, Qt::LeftButton, Qt::NoModifier, view->mapToScreen(head->att.pos));
    host_.processIdle();
    QCOMPARE(host_.selection(), QStringList{QStringLiteral("hero:head_ctrl")});
    QTRY_VERIFY(outlined(QStringLiteral("hero:head_ctrl"))->isSelected());
    QVERIFY(!outlined(QStringLiteral("villain:head_ctrl"))->isSelected());
}

void tst_talvora_program::outlinerLightsEveryTab() {
    run(QStringLiteral("TalvoraPicker open \"%1/demo.pkr\"").arg(demo_));
    QCOMPARE(tabs()->count(), 2);
    outlined(QStringLiteral("hero:COG_ctrl"))->setSelected(true);
    host_.processIdle();
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(button_for(tab(i), QStringLiteral("hero:COG_ctrl"))->selected, buttonRecord::All);
        QCOMPARE(button_for(tab(i), QStringLiteral("hero:head_ctrl"))->selected,
                 buttonRecord::None);
    }
}

void tst_talvora_program::scriptLineRunsMel() {
    QLineEdit* line = main_->scriptLine();
    QTest::keyClicks(line, QStringLiteral("select -r \"hero:L_arm_IK_ctrl\""));
    QTest::keyClick(line, Qt::Key_Return);
    host_.processIdle();
    QCOMPARE(host_.selection(), QStringList{QStringLiteral("hero:L_arm_IK_ctrl")});
    QCOMPARE(button_for(tab(0), QStringLiteral("hero:L_arm_IK_ctrl"))->selected, buttonRecord::All);
    QVERIFY(line->text().isEmpty());

    QTest::keyClicks(line, QStringLiteral("select -r \"nobody\""));
    QTest::keyClick(line, Qt::Key_Return);
    QCOMPARE(line->text(), QStringLiteral("select -r \"nobody\""));
    QVERIFY(main_->findChild<QPlainTextEdit*>()->toPlainText().contains(
        QLatin1String("No object matches name: nobody")));
}

void tst_talvora_program::sceneSavedClearedAndOpened() {
    const QString saved = dir_.filePath(QStringLiteral("shot.ma"));
    QTRY_VERIFY(main_->windowTitle().contains(QLatin1Char('*')));
    choose(QStringLiteral("Save Scene As..."), saved);
    QCOMPARE(host_.scenePath(), saved);
    QTRY_COMPARE(main_->windowTitle(), QStringLiteral("shot.ma - Talvora host"));

    choose(QStringLiteral("New Scene"), QString());
    QVERIFY(host_.nodes().isEmpty());
    QVERIFY(tab(0) == nullptr || tab(0)->buttons()->isEmpty());

    choose(QStringLiteral("Open Scene..."), saved);
    QCOMPARE(tabs()->count(), 1);
    QCOMPARE(tab(0)->buttons()->size(), 74);
    QVERIFY(!tab(0)->background().isNull());
    outlined(QStringLiteral("hero:head_ctrl"))->setSelected(true);
    host_.processIdle();
    QCOMPARE(button_for(tab(0), QStringLiteral("hero:head_ctrl"))->selected, buttonRecord::All);
}

void tst_talvora_program::corruptSceneChangesNothing() {
    const QString corrupt = dir_.filePath(QStringLiteral("corrupt.ma"));
    QFile file(corrupt);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("//Maya ASCII 2025 scene\ncreateNode transform -n \"broken;\n");
    file.close();
    const QStringList nodes = host_.nodes();
    choose(QStringLiteral("Open Scene..."), corrupt);
    QCOMPARE(host_.nodes(), nodes);
    QCOMPARE(tabs()->count(), 1);
    QCOMPARE(tab(0)->buttons()->size(), 74);
    QVERIFY(main_->findChild<QPlainTextEdit*>()->toPlainText().contains(corrupt));
}

QTEST_MAIN(tst_talvora_program)
#include "tst_talvora_program.moc"
