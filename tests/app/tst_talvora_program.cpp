#include "../support/picker_test_vectors.h"
#include "batch_mode.h"
#include "host_main_window.h"
#include "picker_embedded_host.h"
#include "picker_main.h"
#include "picker_prompt.h"
#include "picker_stream.h"
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

// Files by path relative to the folder the program runs in, then their bytes; null bytes: the
// file must not be there.
using file_list = QList<QPair<QString, QByteArray>>;
Q_DECLARE_METATYPE(file_list)

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

    outcome talvora(const QStringList& arguments, const QString& folder) {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        // Batch mode must need no display of any kind, nor a runtime folder.
        environment.remove("QT_QPA_PLATFORM"_q);
        environment.remove("DISPLAY"_q);
        environment.remove("WAYLAND_DISPLAY"_q);
        environment.remove("XDG_RUNTIME_DIR"_q);
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(folder);
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

    // Every command button of the demo runs on this host without an error.
    void demo_command_buttons_run() {
        host_.clearScriptLog();
        int pressed = 0;
        for (const buttonRecord& button : front()->tab()->buttons()) {
            if (button.att.type != buttonAttributes::Command)
                continue;
            QTest::mouseClick(front(), Qt::LeftButton, Qt::NoModifier,
                              front()->mapToScreen(button.att.pos));
            host_.processIdle();
            ++pressed;
        }
        QCOMPARE(pressed, 3);
        const QStringList log = host_.scriptLog();
        QVERIFY2(log.filter("Error"_q).isEmpty(), qPrintable(log.join(QLatin1Char('\n'))));
        QVERIFY2(log.filter("python: import maya.cmds"_q).size() == 1,
                 qPrintable(log.join(QLatin1Char('\n'))));
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
        QTRY_VERIFY(main_->width() < size.width());
        QVERIFY(main_->findChild<QListWidget*>()->width() >= 150);
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

    // The scene round trip: saved as, cleared, opened again, the demo's picker and two pickers
    // under one key with two images come back, each tab with its own image, and light up.
    void scene_round_trip() {
        QTemporaryDir dir;
        const QString saved = dir.filePath("shot.ma"_q);
        QImage image(2, 2, QImage::Format_RGB32);
        image.fill(Qt::red);
        const QByteArray red = pngOf(image);
        image.fill(Qt::blue);
        const QByteArray blue = pngOf(image);
        QVERIFY(writeBytes(dir.filePath("red.pkr"_q), pkrVersion4WithImage(red)));
        QVERIFY(writeBytes(dir.filePath("blue.pkr"_q), pkrVersion4WithImage(blue)));
        // Opening a scene leaves it as it was: nothing to save yet.
        QTRY_COMPARE(main_->windowTitle(), "demo_scene.ma - Talvora host"_q);
        QVERIFY(host_.executeCommand("TalvoraPicker open \"%1\" \"%2\""_q.arg(
            dir.filePath("red.pkr"_q), dir.filePath("blue.pkr"_q))));
        settle_host(host_);
        choose("Save Scene As..."_q, saved);
        QTRY_COMPARE(main_->windowTitle(), "shot.ma - Talvora host"_q);
        choose("New Scene"_q, QString());
        QVERIFY(host_.nodes().isEmpty());
        QVERIFY(front() == nullptr || front()->tab()->count() == 0);

        choose("Open Scene..."_q, saved);
        QCOMPARE(tabs()->count(), 3);
        QStringList keys;
        for (int i = 1; i < 3; ++i) {
            const picker_view* view = qobject_cast<picker_view*>(tabs()->widget(i));
            keys.append(view->tab()->backgroundKey());
            QCOMPARE(view->tab()->background().toImage().pixel(0, 0),
                     QImage::fromData(i == 1 ? red : blue).pixel(0, 0));
            QDataStream entry(QByteArray::fromBase64(
                host_.fileInfo("TalvoraPickerImage_"_q + keys.last()).toLatin1()));
            QCOMPARE(readImage(entry), i == 1 ? red : blue);
        }
        QCOMPARE(keys.first(), "bg"_q);
        QVERIFY(keys.last() != keys.first());
        tabs()->setCurrentIndex(0);
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

    // The program as a pipeline runs it: exit codes, what it prints, what it writes.
    void batch_data() {
        QTest::addColumn<file_list>("files");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("out");
        QTest::addColumn<QByteArray>("err");
        QTest::addColumn<file_list>("after"); // compared without the picker's own statements

        const QString set = "fileInfo \"k\" \"v\""_q;
        const QString query = "fileInfo -q \"k\""_q;
        const auto batch = [](const QStringList& statements) {
            QStringList arguments{"--batch"_q};
            for (const QString& statement : statements)
                arguments << "-c"_q << statement;
            return arguments;
        };
        const file_list none;
        QTest::newRow("statements in order, results printed")
            << none << batch({set, query}) << 0 << QByteArray("// Result: v //\n") << QByteArray()
            << none;
        QTest::newRow("a failing statement ends the run")
            << none << batch({set, "select -r \"nobody\""_q, query}) << 1 << QByteArray()
            << QByteArray("// Error: No object matches name: nobody\n") << none;
        QTest::newRow("a question nobody can answer takes its default")
            << none << batch({"TalvoraPicker open \"%1/demo.pkr\""_q.arg(demo_)}) << 0
            << QByteArray()
            << QByteArray("talvora-picker: Choose Namespace: cancelled in batch mode\n") << none;
        QTest::newRow("print adds no newline; each result follows its statement's output")
            << none << batch({set + "; print \"a\"; "_q + query + "; print \"b\\n\""_q}) << 0
            << QByteArray("a// Result: v //\nb\n") << QByteArray() << none;
        QTest::newRow("a missing ';' is a syntax error")
            << none << batch({"print \"a\" print \"b\""_q}) << 1 << QByteArray()
            << QByteArray("// Error: Syntax error at \"print\": is a ';' missing before it?\n")
            << none;
        QTest::newRow("scripts run in order; an error names the file and line")
            << file_list{{"one.mel"_q, "print \"one\\n\";"},
                         {"two.mel"_q, "print \"two\\n\";\n\nselect -r nobody;\nprint \"x\";"}}
            << QStringList{"--batch"_q, "--script"_q, "one.mel"_q, "--script"_q, "two.mel"_q} << 1
            << QByteArray("one\ntwo\n")
            << QByteArray("// Error: two.mel:3: No object matches name: nobody\n") << none;
        const QByteArray missing = "talvora-picker: Open Failed: Could not open the file "
                                   "\"missing.pkr\".\n\nPlease check the file permissions and try "
                                   "again.\n";
        QTest::newRow("a picker file on the command line that cannot be read")
            << none << QStringList{"--batch"_q, "missing.pkr"_q} << 1 << QByteArray() << missing
            << none;
        QTest::newRow("a picker that does not open ends the run")
            << none << batch({"TalvoraPicker open \"missing.pkr\""_q, "print \"x\""_q}) << 1
            << QByteArray() << missing << none;
        QTest::newRow("saveas PATH writes the front tab")
            << file_list{{"arm.pkr"_q, pkrVersion4()}}
            << QStringList{"--batch"_q, "arm.pkr"_q, "-c"_q, "TalvoraPicker saveas \"out.pkr\""_q}
            << 0 << QByteArray() << QByteArray() << file_list{{"out.pkr"_q, pkrVersion4()}};
        QTest::newRow("a failed save ends the run")
            << file_list{{"arm.pkr"_q, pkrVersion4()}}
            << QStringList{"--batch"_q, "arm.pkr"_q, "-c"_q,
                           "TalvoraPicker saveas \"nowhere/out.pkr\""_q}
            << 1 << QByteArray()
            << QByteArray("talvora-picker: Save Failed: Could not open the file "
                          "\"nowhere/out.pkr\" for writing.\n\nPlease check that this file is not "
                          "locked and that you have the proper permissions and try again.\n")
            << none;
        const QByteArray header = "//Maya ASCII 2025 scene\n";
        QTest::newRow("a warning, once, on stderr")
            << file_list{{"shot.ma"_q, header + "file -r -ns \"gone\" \"gone.ma\";\n"
                                                "file -r -ns \"gone\" \"gone.ma\";\n"
                                                "createNode transform -n \"root\";\n"}}
            << QStringList{"--batch"_q, "shot.ma"_q, "-c"_q, "ls"_q} << 0
            << QByteArray("// Result: root //\n")
            << QByteArray("// Warning: shot.ma:2: could not find the referenced file \"gone.ma\"; "
                          "namespace \"gone\" is left out.\n")
            << none;
        QTest::newRow("a reference cycle is named once, as an error")
            << file_list{{"a.ma"_q, header + "file -r -ns \"b\" \"b.ma\";\n"},
                         {"b.ma"_q, header + "file -r -ns \"a\" \"a.ma\";\n"}}
            << QStringList{"--batch"_q, "a.ma"_q, "-c"_q, "ls"_q} << 1 << QByteArray()
            << QByteArray("// Error: reference cycle: a.ma \xe2\x86\x92 b.ma \xe2\x86\x92 a.ma\n")
            << none;
        QTest::newRow("a reference bomb stops at once")
            << file_list{{"bomb.ma"_q, header + "file -r -ns \"x\" \"bomb.ma\";\n"
                                                "file -r -ns \"y\" \"bomb.ma\";\n"
                                                "createNode transform -n \"n\";\n"}}
            << QStringList{"--batch"_q, "bomb.ma"_q} << 1 << QByteArray()
            << QByteArray("// Error: reference cycle: bomb.ma \xe2\x86\x92 bomb.ma\n") << none;
        QTest::newRow("usage errors exit 2")
            << none << QStringList{"--batch"_q, "--bogus"_q} << 2 << QByteArray()
            << QByteArray("talvora-picker: Unknown option 'bogus'.\nsee talvora-picker --help\n")
            << none;
        QTest::newRow("-c needs --batch")
            << none << QStringList{"-c"_q, "ls"_q} << 2 << QByteArray()
            << QByteArray("talvora-picker: -c and --script need --batch\nsee talvora-picker "
                          "--help\n")
            << none;

        // Scene writes: what the program did not change stays byte for byte.
        const file_list shot{{"shot.ma"_q, mayaShot()},
                             {"rigs/hero.ma"_q, mayaRig()},
                             {"face.pkr"_q, pkrVersion4WithImage(tinyPng())}};
        const QStringList storeFace{"--batch"_q, "shot.ma"_q,
                                    "-c"_q,      "TalvoraPicker open \"face.pkr\""_q,
                                    "-c"_q,      "file -save"_q};
        QTest::newRow("a picker stored into Maya's shot changes nothing else")
            << shot << storeFace << 0 << QByteArray() << QByteArray()
            << file_list{{"shot.ma"_q, mayaShot()}};
        QTest::newRow("Windows line ends")
            << file_list{{"shot.ma"_q, mayaShot("\r\n")}, shot.at(1), shot.at(2)} << storeFace << 0
            << QByteArray() << QByteArray() << file_list{{"shot.ma"_q, mayaShot("\r\n")}};
        QTest::newRow("renamed: the header names the new file")
            << shot
            << QStringList{"--batch"_q, "shot.ma"_q,   "-c"_q, "file -rename \"shot2.ma\""_q,
                           "-c"_q,      "file -save"_q}
            << 0 << QByteArray() << QByteArray()
            << file_list{{"shot.ma"_q, mayaShot()},
                         {"shot2.ma"_q, mayaShot()
                                            .replace("//Name: shot.ma", "//Name: shot2.ma")
                                            .replace("// End of shot.ma", "// End of shot2.ma")}};
        const QByteArray reference = "file -r -ns \"hero\" -dr 1 -rfn \"heroRN\" -op \"v=0;\" -typ "
                                     "\"mayaAscii\" \"rigs/hero.ma\";\n";
        QTest::newRow("a reference added is written after the last one")
            << shot
            << QStringList{"--batch"_q, "shot.ma"_q, "-c"_q,
                           "file -r -ns \"prop\" \"rigs/hero.ma\"; file -save"_q}
            << 0 << QByteArray() << QByteArray()
            << file_list{{"shot.ma"_q,
                          mayaShot().replace(reference, reference +
                                                            "file -r -ns \"prop\" -typ "
                                                            "\"mayaAscii\" \"rigs/hero.ma\";\n")}};
        const QByteArray windows = mayaShot().replace("UTF-8", "1252");
        QTest::newRow("what cannot be written leaves the file as it was")
            << file_list{{"shot.ma"_q, windows}, shot.at(1)}
            << QStringList{"--batch"_q, "shot.ma"_q, "-c"_q,
                           "fileInfo \"artist\" \"Jos\u00e9\"; file -save"_q}
            << 1 << QByteArray()
            << QByteArray("// Error: shot.ma: the scene's codeset is 1252, in which this cannot be "
                          "written: fileInfo \"artist\" \"Jos\xc3\xa9\";\n")
            << file_list{{"shot.ma"_q, windows}};
    }

    void batch() {
        QFETCH(file_list, files);
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QByteArray, out);
        QFETCH(QByteArray, err);
        QFETCH(file_list, after);
        QTemporaryDir dir;
        for (const auto& file : files)
            QVERIFY(writeBytes(dir.filePath(file.first), file.second));

        const outcome result = talvora(arguments, dir.path());
        QCOMPARE(result.err, QString::fromUtf8(err));
        QCOMPARE(result.out, QString::fromUtf8(out));
        QCOMPARE(result.exitCode, exitCode);
        for (const auto& file : after) {
            QCOMPARE(QFile::exists(dir.filePath(file.first)), !file.second.isNull());
            QCOMPARE(withoutPickerLines(readBytes(dir.filePath(file.first))), file.second);
        }
    }
};

QTEST_MAIN(tst_talvora_program)
#include "tst_talvora_program.moc"
