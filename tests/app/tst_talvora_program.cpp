#include "../core/picker_test_vectors.h"
#include "host_main_window.h"
#include "picker_embedded_host.h"
#include "picker_main.h"
#include "picker_prompt.h"
#include "picker_view.h"
#include "picker_window.h"

#include <QComboBox>
#include <QDockWidget>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QWindow>
#include <QtTest>

#include <algorithm>
#include <memory>

using namespace picker_test_vectors;

// The program's window as a user meets it: the demo scene, its picker, the outliner, the script
// line and the File menu, driven with real events; and the program run in batch mode.
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
        for (const buttonRecord& button : (view ? view : front())->tab()->buttons()) {
            if (button.att.sel == QStringList{node})
                return &button;
        }
        return nullptr;
    }

    struct outcome {
        int exitCode = -1;
        QString out;
        QString err;
    };

    outcome talvora(const QStringList& arguments) {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        // Batch mode must need no display of any kind.
        environment.remove("QT_QPA_PLATFORM"_q);
        environment.remove("DISPLAY"_q);
        environment.remove("WAYLAND_DISPLAY"_q);
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(TALVORA_PICKER), arguments);
        if (!process.waitForFinished(60000))
            return {};
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

private slots:
    void initTestCase() {
        // Settings of a test's own, from a clean start: the window's place is remembered there.
        QStandardPaths::setTestModeEnabled(true);
        QSettings(QStringLiteral("Talvora"), QStringLiteral("talvora-picker")).clear();
        QSettings(QStringLiteral("Talvora"), QStringLiteral("picker")).clear();
        picker_set_dialog_hook([](QDialog&) { return int(QDialog::Rejected); });
        // Leaving a modified scene asks first; these cases leave it without saving.
        picker_set_message_hook([](const picker_message&) { return QMessageBox::Discard; });
        main_ = std::make_unique<host_main_window>(host_);
        host_.setMainWindow(main_.get());
        QVERIFY(picker_main::initialize(host_, &picker_window::create));
        main_->show();
        QVERIFY(QTest::qWaitForWindowExposed(main_.get()));
        QVERIFY(host_.executeCommand("TalvoraPicker"_q));
    }

    // Each case starts from the demo as the program opens it: the scene brings its picker back.
    void init() {
        QVERIFY(host_.executeCommand("file -open -f \"%1/demo_scene.ma\""_q.arg(demo_)));
        host_.processIdle();
        QCOMPARE(front()->tab()->count(), 74);
        // The outliner follows the scene on its own time, as a user sees it.
        QTRY_VERIFY(outlined("villain:head_ctrl"_q) != nullptr);
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
        click("hero:head_ctrl"_q);
        QCOMPARE(host_.selection(), QStringList{"hero:head_ctrl"_q});
        QTRY_VERIFY(outlined("hero:head_ctrl"_q)->isSelected());

        QVERIFY(host_.executeCommand("TalvoraPicker open \"%1/demo.pkr\""_q.arg(demo_)));
        outlined("hero:COG_ctrl"_q)->setSelected(true);
        host_.processIdle();
        QCOMPARE(tabs()->count(), 2);
        for (int i = 0; i < 2; ++i) {
            auto* view = qobject_cast<picker_view*>(tabs()->widget(i));
            QCOMPARE(button_for("hero:COG_ctrl"_q, view)->selected, buttonRecord::All);
            QCOMPARE(button_for("hero:L_arm_IK_ctrl"_q, view)->selected, buttonRecord::None);
        }

        QLineEdit* line = main_->scriptLine();
        QTest::keyClicks(line, "select -r \"hero:L_arm_IK_ctrl\""_q);
        QTest::keyClick(line, Qt::Key_Return);
        host_.processIdle();
        QCOMPARE(button_for("hero:L_arm_IK_ctrl"_q)->selected, buttonRecord::All);
        QVERIFY(line->text().isEmpty());
    }

    // One picker drives either character: the namespace dialog turns it from hero to villain.
    void namespaceDialogSwitchesCharacter() {
        QStringList offered;
        picker_set_dialog_hook([&offered](QDialog& dialog) {
            auto* combo = dialog.findChild<QComboBox*>();
            for (int i = 0; i < combo->count(); ++i)
                offered << combo->itemText(i);
            combo->setEditText("villain"_q);
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
        QCOMPARE(button_for("hero:head_ctrl"_q), nullptr);
        click("villain:head_ctrl"_q);
        QCOMPARE(host_.selection(), QStringList{"villain:head_ctrl"_q});
    }

    // Typing into the host's script line stays there while the pointer drifts over the picker.
    void typing_in_the_script_line_stays_there() {
        click("hero:head_ctrl"_q);
        main_->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(main_.get()));
        QWindow* window = main_->windowHandle();
        QLineEdit* line = main_->scriptLine();
        QTest::mouseClick(window, Qt::LeftButton, Qt::NoModifier,
                          line->mapTo(main_.get(), line->rect().center()));
        picker_view* view = front();
        QTest::mouseMove(window, view->mapTo(main_.get(), view->rect().center()));
        const qreal zoom = view->zoom();
        for (const QChar c : "select -r hero:chest_ctrl; // fh+-"_q)
            QTest::keyClick(window, c.toLatin1());
        QTest::keyClick(window, Qt::Key_Return);
        host_.processIdle();
        QCOMPARE(host_.selection(), QStringList{"hero:chest_ctrl"_q});
        QVERIFY(!view->animating());
        QCOMPARE(view->zoom(), zoom);
        QCOMPARE(view->tab()->undoer()->count(), 0);
    }

    // The picker docks beside the outliner, which keeps a usable width as the window is resized.
    void picker_docks_beside_the_outliner() {
        QDockWidget* dock = picker_main::dock();
        QTRY_VERIFY(!dock->isFloating());
        QCOMPARE(main_->dockWidgetArea(dock), Qt::RightDockWidgetArea);
        const QSize size = main_->size();
        main_->resize(420, 500);
        QTRY_COMPARE(main_->width(), 420);
        main_->resize(size);
        QTRY_COMPARE(main_->size(), size);
        QTRY_VERIFY(main_->findChild<QListWidget*>()->width() >= 150);
    }

    // Where the user left the picker is where the next start puts it.
    void picker_place_is_remembered() {
        QDockWidget* dock = picker_main::dock();
        dock->setFloating(true);
        dock->setGeometry(QRect(60, 80, 470, 520));
        QVERIFY(main_->close());
        main_ = std::make_unique<host_main_window>(host_);
        host_.setMainWindow(main_.get());
        main_->show();
        QVERIFY(QTest::qWaitForWindowExposed(main_.get()));
        QVERIFY(host_.executeCommand("TalvoraPicker"_q));
        host_.processIdle();
        dock = picker_main::dock();
        QTRY_VERIFY(dock != nullptr && dock->isFloating());
        QTRY_COMPARE(dock->size(), QSize(470, 520));
        dock->setFloating(false);
    }

    void sceneSavedClearedAndOpened() {
        QTemporaryDir dir;
        const QString saved = dir.filePath("shot.ma"_q);
        // Opening a scene leaves it as it was: nothing to save yet.
        QTRY_COMPARE(main_->windowTitle(), "demo_scene.ma - Talvora host"_q);
        choose("Save Scene As..."_q, saved);
        QCOMPARE(host_.scenePath(), saved);
        QTRY_COMPARE(main_->windowTitle(), "shot.ma - Talvora host"_q);

        choose("New Scene"_q, QString());
        QVERIFY(host_.nodes().isEmpty());
        QVERIFY(front() == nullptr || front()->tab()->count() == 0);

        choose("Open Scene..."_q, saved);
        QCOMPARE(tabs()->count(), 1);
        QCOMPARE(front()->tab()->count(), 74);
        QVERIFY(!front()->tab()->background().isNull());
        outlined("hero:head_ctrl"_q)->setSelected(true);
        host_.processIdle();
        QCOMPARE(button_for("hero:head_ctrl"_q)->selected, buttonRecord::All);
    }

    void unreadableSceneKeepsTheOpenOne() {
        QTemporaryDir dir;
        const QString broken = dir.filePath("broken.ma"_q);
        QVERIFY(writeBytes(broken, "//Maya ASCII 2025 scene\ncreateNode transform -n \"broken;\n"));
        const QStringList nodes = host_.nodes();
        QVERIFY(!host_.executeCommand("file -open -f \"%1\""_q.arg(broken)));
        host_.processIdle();
        QCOMPARE(host_.nodes(), nodes);
        QCOMPARE(front()->tab()->count(), 74);
        QTRY_VERIFY(main_->findChild<QPlainTextEdit*>()->toPlainText().contains(
            broken + QLatin1String(":2")));
    }

    // The program as a pipeline runs it: exit codes and what it prints.
    void batch_data() {
        QTest::addColumn<QStringList>("statements");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("err");

        const QString set = "fileInfo \"k\" \"v\""_q;
        const QString query = "fileInfo -q \"k\""_q;
        QTest::newRow("statements in order, results printed")
            << QStringList{set, query} << 0 << "// Result: v //"_q << QString();
        QTest::newRow("a failing statement ends the run")
            << QStringList{set, "select -r \"nobody\""_q, query} << 1 << QString()
            << "No object matches name: nobody"_q;
        QTest::newRow("a question nobody can answer takes its default")
            << QStringList{"TalvoraPicker open \"%1/demo.pkr\""_q.arg(demo_)} << 0 << QString()
            << "Choose Namespace: cancelled in batch mode"_q;
    }

    void batch() {
        QFETCH(QStringList, statements);
        QFETCH(int, exitCode);
        QFETCH(QString, out);
        QFETCH(QString, err);
        QStringList arguments{"--batch"_q};
        for (const QString& statement : statements)
            arguments << "-c"_q << statement;
        const outcome result = talvora(arguments);
        QCOMPARE(result.exitCode, exitCode);
        QVERIFY2(result.out.contains(out), qPrintable(result.out));
        QVERIFY2(result.err.contains(err), qPrintable(result.err));
        if (exitCode != 0)
            QVERIFY2(!result.out.contains(QLatin1String("// Result: v //")),
                     qPrintable(result.out));
    }
};

QTEST_MAIN(tst_talvora_program)
#include "tst_talvora_program.moc"
