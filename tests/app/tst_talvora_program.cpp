#include "host_main_window.h"
#include "picker_embedded_host.h"
#include "picker_main.h"
#include "picker_prompt.h"
#include "picker_view.h"
#include "picker_window.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <memory>

// The program's window as a user meets it: the demo scene, its picker, the outliner, the script
// line, driven with real events.
class tst_talvora_program : public QObject {
    Q_OBJECT

    picker_embedded_host host_;
    std::unique_ptr<host_main_window> main_;
    const QString demo_ = QStringLiteral(TALVORA_PICKER_DEMO);

    picker_view* front() const {
        auto* picker = dynamic_cast<picker_window*>(picker_main::window());
        return qobject_cast<picker_view*>(picker->findChild<QTabWidget*>()->currentWidget());
    }
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
    const buttonRecord* button_for(const QString& node) const {
        for (const buttonRecord& button : *front()->buttons()) {
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
        picker_set_message_hook({});
    }

    void clickOutlinerAndScriptLineAgree() {
        click(QStringLiteral("hero:head_ctrl"));
        QCOMPARE(host_.selection(), QStringList{QStringLiteral("hero:head_ctrl")});
        QTRY_VERIFY(outlined(QStringLiteral("hero:head_ctrl"))->isSelected());

        outlined(QStringLiteral("hero:COG_ctrl"))->setSelected(true);
        host_.processIdle();
        QCOMPARE(button_for(QStringLiteral("hero:COG_ctrl"))->selected, buttonRecord::All);

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
