#include "host_main_window.h"
#include "picker_embedded_host.h"
#include "picker_main.h"
#include "picker_prompt.h"
#include "picker_view.h"
#include "picker_window.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <memory>

// The program's window as a user meets it: the demo scene, its picker, the outliner, the script
// line and the File menu, driven with real events.
class tst_talvora_program : public QObject {
    Q_OBJECT

    picker_embedded_host host_;
    std::unique_ptr<host_main_window> main_;
    const QString demo_ = QStringLiteral(TALVORA_PICKER_DEMO);

    QTabWidget* tabs() const {
        return dynamic_cast<picker_window*>(picker_main::window())->findChild<QTabWidget*>();
    }
    picker_view* front() const { return qobject_cast<picker_view*>(tabs()->currentWidget()); }
    QListWidgetItem* outlined(const QString& name) const {
        return main_->findChild<QListWidget*>()->findItems(name, Qt::MatchExactly).value(0);
    }
    void click(const QString& node) {
        const buttonRecord* button = button_for(node);
        QVERIFY2(button != nullptr, qPrintable(node));
        QTest::mouseClick(front(), Qt::LeftButton, Qt::NoModifier,
                          front()->mapToScreen(button->att.pos));
        host_.processIdle();
    }
    // Triggers a File menu entry with the file chooser answering file.
    void choose(const QString& entry, const QString& file) {
        picker_set_file_hook([file](const picker_file_question&) { return QStringList{file}; });
        const QList<QAction*> actions = main_->menuBar()->actions().first()->menu()->actions();
        const auto found = std::find_if(actions.begin(), actions.end(), [&entry](QAction* a) {
            return a->text().remove(QLatin1Char('&')) == entry;
        });
        QVERIFY2(found != actions.end(), qPrintable(entry));
        (*found)->trigger();
        host_.processIdle();
    }
    const buttonRecord* button_for(const QString& node, picker_view* view = nullptr) const {
        for (const buttonRecord& button : *(view ? view : front())->buttons()) {
            if (button.att.sel == QStringList{node})
                return &button;
        }
        return nullptr;
    }
private slots:
    void initTestCase() {
        picker_set_dialog_hook([](QDialog&) { return int(QDialog::Rejected); });
        // Leaving a modified scene asks first; these cases leave it without saving.
        picker_set_message_hook([](const picker_message&) { return QMessageBox::Discard; });
        main_ = std::make_unique<host_main_window>(host_);
        host_.setMainWindow(main_.get());
        QVERIFY(picker_main::initialize(host_, &picker_window::create));
        main_->show();
        QVERIFY(QTest::qWaitForWindowExposed(main_.get()));
        QVERIFY(host_.executeCommand(QStringLiteral("TalvoraPicker")));
    }

    // Each case starts from the demo as the program opens it: the scene brings its picker back.
    void init() {
        QVERIFY(
            host_.executeCommand(QStringLiteral("file -open -f \"%1/demo_scene.ma\"").arg(demo_)));
        host_.processIdle();
        QCOMPARE(front()->buttons()->size(), 74);
        // The outliner follows the scene on its own time, as a user sees it.
        QTRY_VERIFY(outlined(QStringLiteral("villain:head_ctrl")) != nullptr);
    }

    void cleanupTestCase() {
        host_.quit();
        picker_main::uninitialize();
        main_.reset();
        picker_set_dialog_hook({});
        picker_set_file_hook({});
        picker_set_message_hook({});
    }

    void clickOutlinerAndScriptLineAgree() {
        click(QStringLiteral("hero:head_ctrl"));
        QCOMPARE(host_.selection(), QStringList{QStringLiteral("hero:head_ctrl")});
        QTRY_VERIFY(outlined(QStringLiteral("hero:head_ctrl"))->isSelected());

        QVERIFY(
            host_.executeCommand(QStringLiteral("TalvoraPicker open \"%1/demo.pkr\"").arg(demo_)));
        outlined(QStringLiteral("hero:COG_ctrl"))->setSelected(true);
        host_.processIdle();
        QCOMPARE(tabs()->count(), 2);
        for (int i = 0; i < 2; ++i) {
            auto* view = qobject_cast<picker_view*>(tabs()->widget(i));
            QCOMPARE(button_for(QStringLiteral("hero:COG_ctrl"), view)->selected,
                     buttonRecord::All);
            QCOMPARE(button_for(QStringLiteral("hero:L_arm_IK_ctrl"), view)->selected,
                     buttonRecord::None);
        }

        QLineEdit* line = main_->scriptLine();
        QTest::keyClicks(line, QStringLiteral("select -r \"hero:L_arm_IK_ctrl\""));
        QTest::keyClick(line, Qt::Key_Return);
        host_.processIdle();
        QCOMPARE(button_for(QStringLiteral("hero:L_arm_IK_ctrl"))->selected, buttonRecord::All);
        QVERIFY(line->text().isEmpty());
    }

    // One picker drives either character: the namespace dialog turns it from hero to villain.
    void namespaceDialogSwitchesCharacter() {
        QStringList offered;
        picker_set_dialog_hook([&offered](QDialog& dialog) {
            auto* combo = dialog.findChild<QComboBox*>();
            for (int i = 0; i < combo->count(); ++i)
                offered << combo->itemText(i);
            combo->setEditText(QStringLiteral("villain"));
            return int(QDialog::Accepted);
        });
        const QList<QAction*> actions =
            dynamic_cast<picker_window*>(picker_main::window())->findChildren<QAction*>();
        const auto entry = std::find_if(actions.begin(), actions.end(), [](QAction* action) {
            return action->text() == QLatin1String("Change Namespace...");
        });
        QVERIFY(entry != actions.end() && (*entry)->isEnabled());
        (*entry)->trigger();
        host_.processIdle();
        picker_set_dialog_hook([](QDialog&) { return int(QDialog::Rejected); });

        QVERIFY(offered.contains(QLatin1String("villain")));
        QCOMPARE(button_for(QStringLiteral("hero:head_ctrl")), nullptr);
        click(QStringLiteral("villain:head_ctrl"));
        QCOMPARE(host_.selection(), QStringList{QStringLiteral("villain:head_ctrl")});
    }

    void sceneSavedClearedAndOpened() {
        QTemporaryDir dir;
        const QString saved = dir.filePath(QStringLiteral("shot.ma"));
        QTRY_VERIFY(main_->windowTitle().contains(QLatin1Char('*')));
        choose(QStringLiteral("Save Scene As..."), saved);
        QCOMPARE(host_.scenePath(), saved);
        QTRY_COMPARE(main_->windowTitle(), QStringLiteral("shot.ma - Talvora host"));

        choose(QStringLiteral("New Scene"), QString());
        QVERIFY(host_.nodes().isEmpty());
        QVERIFY(front() == nullptr || front()->buttons()->isEmpty());

        choose(QStringLiteral("Open Scene..."), saved);
        QCOMPARE(tabs()->count(), 1);
        QCOMPARE(front()->buttons()->size(), 74);
        QVERIFY(!front()->background().isNull());
        outlined(QStringLiteral("hero:head_ctrl"))->setSelected(true);
        host_.processIdle();
        QCOMPARE(button_for(QStringLiteral("hero:head_ctrl"))->selected, buttonRecord::All);
    }

    void unreadableSceneKeepsTheOpenOne() {
        QTemporaryDir dir;
        const QString broken = dir.filePath(QStringLiteral("broken.ma"));
        QFile file(broken);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("//Maya ASCII 2025 scene\ncreateNode transform -n \"broken;\n");
        file.close();
        const QStringList nodes = host_.nodes();
        QVERIFY(!host_.executeCommand(QStringLiteral("file -open -f \"%1\"").arg(broken)));
        host_.processIdle();
        QCOMPARE(host_.nodes(), nodes);
        QCOMPARE(front()->buttons()->size(), 74);
        QTRY_VERIFY(main_->findChild<QPlainTextEdit*>()->toPlainText().contains(
            broken + QLatin1String(":2")));
    }
};

QTEST_MAIN(tst_talvora_program)
#include "tst_talvora_program.moc"
