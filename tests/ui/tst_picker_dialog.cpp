#include "picker_dialog.h"
#include "picker_embedded_host.h"
#include "picker_main.h"
#include "picker_view.h"
#include "picker_window.h"
#include "ui_test_support.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>
#include <QTextEdit>

#include <functional>
#include <memory>

Q_DECLARE_METATYPE(buttonAttributes)

namespace {

const QString size_key = QStringLiteral("editCommandWindowSize");
const QString pos_key = QStringLiteral("editCommandWindowPos");

QVariant stored(const QString& key) {
    return QSettings(QStringLiteral("Talvora"), QStringLiteral("picker")).value(key);
}

QPushButton* push_button(QWidget* dialog, const QString& text) {
    const QList<QPushButton*> buttons = dialog->findChildren<QPushButton*>();
    for (QPushButton* button : buttons) {
        if (button->text() == text)
            return button;
    }
    return nullptr;
}

QRadioButton* radio(QWidget* dialog, const QString& text) {
    const QList<QRadioButton*> buttons = dialog->findChildren<QRadioButton*>();
    for (QRadioButton* button : buttons) {
        if (button->text() == text)
            return button;
    }
    return nullptr;
}

void click(QWidget* dialog, const QString& text) {
    QPushButton* button = push_button(dialog, text);
    if (button != nullptr)
        QTest::mouseClick(button, Qt::LeftButton);
    else
        dialog->close();
}

// Clicks the entry of the next context menu, as the user picks it.
void pick_from_next_popup(const QString& entry) {
    auto* poll = new QTimer(qApp);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, entry]() {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (menu == nullptr)
            return;
        poll->stop();
        poll->deleteLater();
        const QList<QAction*> actions = menu->actions();
        for (QAction* action : actions) {
            if (action->text() == entry) {
                QTest::mouseClick(menu, Qt::LeftButton, Qt::KeyboardModifiers(),
                                  menu->actionGeometry(action).center());
                return;
            }
        }
        menu->close();
    });
    poll->start(0);
}

// Opens the context menu over the picker point, where a button at that point sits.
void right_click(picker_view* view, const QPoint& pickerPoint) {
    const QPoint at = view->mapToScreen(pickerPoint);
    QTest::mousePress(view, Qt::RightButton, Qt::KeyboardModifiers(), at);
    QTest::mouseRelease(view, Qt::RightButton, Qt::KeyboardModifiers(), at);
}

buttonAttributes command_button(qint32 api, const QString& label, const QStringList& sel) {
    buttonAttributes att;
    att.pos = QPoint(60, 60);
    att.size = 20;
    att.type = buttonAttributes::Command;
    att.api = api;
    att.color = 0xFF2222B2;
    att.tcolor = 0xFFFFFFFF;
    att.label = label;
    att.sel = sel;
    return att;
}

} // namespace

class tst_picker_dialog : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void edit_from_the_canvas_data();
    void edit_from_the_canvas();
    void name_limit_data();
    void name_limit();
    void remembered_geometry_data();
    void remembered_geometry();
    void reopens_where_it_was_left();
    void language_data();
    void language();
    void namespace_rows_data();
    void namespace_rows();
    void rebind_through_the_host_data();
    void rebind_through_the_host();

private:
    std::unique_ptr<picker_embedded_host> host_;
    std::unique_ptr<picker_view> view_;
};

void tst_picker_dialog::initTestCase() {
    QStandardPaths::setTestModeEnabled(true);
    qputenv("TALVORA_PICKER_CONFIG", QByteArray("/nonexistent/pickers.cfg"));
    host_ = std::make_unique<picker_embedded_host>();
    QVERIFY(picker_main::initialize(*host_, &picker_window::create));
}

void tst_picker_dialog::cleanupTestCase() {
    view_.reset();
    host_->quit();
    picker_main::uninitialize();
    host_.reset();
}

void tst_picker_dialog::init() {
    QSettings settings(QStringLiteral("Talvora"), QStringLiteral("picker"));
    settings.remove(size_key);
    settings.remove(pos_key);
    host_->clearScriptLog();
    view_ = std::make_unique<picker_view>();
    view_->resize(320, 240);
    view_->show();
    QVERIFY(QTest::qWaitForWindowExposed(view_.get()));
}

void tst_picker_dialog::edit_from_the_canvas_data() {
    QTest::addColumn<bool>("existing");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<int>("steps");
    const QString add = QStringLiteral("Add Command Button...");
    const QString edit = QStringLiteral("Edit Command Button...");
    QTest::newRow("new button, tested, cancelled") << false << add << false << 0;
    QTest::newRow("existing button, tested, cancelled") << true << edit << false << 0;
    QTest::newRow("new button, OK") << false << add << true << 1;
    QTest::newRow("existing button, OK") << true << edit << true << 0;
}

void tst_picker_dialog::edit_from_the_canvas() {
    QFETCH(bool, existing);
    QFETCH(QString, entry);
    QFETCH(bool, ok);
    QFETCH(int, steps);
    const buttonAttributes original =
        command_button(buttonAttributes::Python, QStringLiteral("Go"), {QStringLiteral("go()")});
    if (existing)
        view_->push_button(original, -1);
    const QString script = QStringLiteral("print \"tested\";");
    QStringList queuedByTest;
    pick_from_next_popup(entry);
    answer_next_dialog([&](QWidget* dialog) {
        dialog->findChild<QLineEdit*>()->setText(QStringLiteral("Wave"));
        dialog->findChild<QTextEdit*>()->setPlainText(script);
        QTest::mouseClick(radio(dialog, QStringLiteral("MEL")), Qt::LeftButton);
        click(dialog, QStringLiteral("Test"));
        queuedByTest = host_->pendingMel();
        click(dialog, ok ? QStringLiteral("OK") : QStringLiteral("Cancel"));
    });
    QSignalSpy changed(view_.get(), &picker_view::changed);

    right_click(view_.get(), QPoint(60, 60));

    QVERIFY2(queuedByTest.contains(script), qPrintable(queuedByTest.join(QLatin1Char('|'))));
    QCOMPARE(view_->undoer()->count(), steps);
    QCOMPARE(changed.count(), ok ? 1 : 0);
    QCOMPARE(view_->buttons()->size(), existing || ok ? 1 : 0);
    if (!ok) {
        if (existing)
            QCOMPARE(view_->buttons()->at(0).att, original);
        return;
    }
    const buttonAttributes& att = view_->buttons()->at(0).att;
    QCOMPARE(att.type, qint32(buttonAttributes::Command));
    QCOMPARE(att.label, QStringLiteral("Wave"));
    QCOMPARE(att.sel, QStringList{script});
    QCOMPARE(att.api, qint32(buttonAttributes::Mel));
    QCOMPARE(view_->mapToScreen(att.pos), QPoint(60, 60));
    QVERIFY(!view_->buttons()->at(0).img.isNull());
}

void tst_picker_dialog::name_limit_data() {
    QTest::addColumn<QString>("loaded");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("stored");
    const QString exact(128, QLatin1Char('n'));
    QTest::newRow("loaded 200") << QString(200, QLatin1Char('n')) << QString() << exact;
    QTest::newRow("typed 131") << QString() << QString(131, QLatin1Char('n')) << exact;
    QTest::newRow("typed onto 127") << QString(127, QLatin1Char('n')) << QStringLiteral("xyz")
                                    << QString(127, QLatin1Char('n')) + QLatin1Char('x');
}

void tst_picker_dialog::name_limit() {
    QFETCH(QString, loaded);
    QFETCH(QString, typed);
    QFETCH(QString, stored);
    buttonAttributes att = command_button(buttonAttributes::Mel, loaded, {QStringLiteral("s")});
    answer_next_dialog([&](QWidget* dialog) {
        auto* name = dialog->findChild<QLineEdit*>();
        name->setFocus();
        name->end(false);
        QTest::keyClicks(name, typed);
        click(dialog, QStringLiteral("OK"));
    });
    QVERIFY(picker_editCmdDialog::do_dialog(view_.get(), &att));
    QCOMPARE(att.label, stored);
}

void tst_picker_dialog::remembered_geometry_data() {
    QTest::addColumn<QVariant>("size");
    QTest::addColumn<QVariant>("pos");
    QTest::addColumn<QSize>("openSize");
    QTest::addColumn<QPoint>("openPos");
    const QVariant none;
    const QSize size(611, 577);
    const QPoint pos(123, 97);
    QTest::newRow("size unreadable")
        << QVariant(QStringLiteral("big")) << QVariant(pos) << QSize(400, 450) << pos;
    QTest::newRow("position unreadable")
        << QVariant(size) << QVariant(QStringLiteral("left")) << size << QPoint(50, 50);
    QTest::newRow("size only") << QVariant(size) << none << QSize() << QPoint();
    QTest::newRow("position only") << none << QVariant(pos) << QSize() << QPoint();
}

void tst_picker_dialog::remembered_geometry() {
    QFETCH(QVariant, size);
    QFETCH(QVariant, pos);
    QFETCH(QSize, openSize);
    QFETCH(QPoint, openPos);
    {
        QSettings settings(QStringLiteral("Talvora"), QStringLiteral("picker"));
        if (size.isValid())
            settings.setValue(size_key, size);
        if (pos.isValid())
            settings.setValue(pos_key, pos);
    }
    QSize seenSize;
    QPoint seenPos;
    answer_next_dialog([&](QWidget* dialog) {
        seenSize = dialog->size();
        seenPos = dialog->pos();
        click(dialog, QStringLiteral("Cancel"));
    });
    buttonAttributes att = command_button(buttonAttributes::Mel, QString(), {});
    QVERIFY(!picker_editCmdDialog::do_dialog(view_.get(), &att));

    if (openSize.isValid()) {
        QCOMPARE(seenSize, openSize);
        QCOMPARE(seenPos, openPos);
    } else {
        QVERIFY(seenSize != QSize(611, 577));
        QVERIFY(seenPos != QPoint(123, 97));
    }
}

void tst_picker_dialog::reopens_where_it_was_left() {
    buttonAttributes att = command_button(buttonAttributes::Mel, QString(), {});
    answer_next_dialog([](QWidget* dialog) {
        dialog->resize(503, 471);
        dialog->move(41, 37);
        click(dialog, QStringLiteral("Cancel"));
    });
    QVERIFY(!picker_editCmdDialog::do_dialog(view_.get(), &att));
    QCOMPARE(stored(size_key).toSize(), QSize(503, 471));
    QCOMPARE(stored(pos_key).toPoint(), QPoint(41, 37));

    QSize seenSize;
    QPoint seenPos;
    answer_next_dialog([&](QWidget* dialog) {
        seenSize = dialog->size();
        seenPos = dialog->pos();
        click(dialog, QStringLiteral("OK"));
    });
    QVERIFY(picker_editCmdDialog::do_dialog(view_.get(), &att));
    QCOMPARE(seenSize, QSize(503, 471));
    QCOMPARE(seenPos, QPoint(41, 37));
}

void tst_picker_dialog::language_data() {
    QTest::addColumn<qint32>("api");
    QTest::addColumn<QStringList>("sel");
    QTest::addColumn<QString>("choose");
    QTest::addColumn<bool>("mel");
    QTest::addColumn<bool>("python");
    QTest::addColumn<qint32>("storedApi");
    QTest::addColumn<QStringList>("storedSel");
    const QStringList none;
    const QStringList two{QStringLiteral("first"), QStringLiteral("second")};
    const QStringList typed{QStringLiteral("typed")};
    const QStringList typedTwo{QStringLiteral("typed"), QStringLiteral("second")};
    QTest::newRow("MEL kept") << 0 << two << QString() << true << false << 0 << typedTwo;
    QTest::newRow("Python kept") << 1 << two << QString() << false << true << 1 << typedTwo;
    QTest::newRow("unknown kept") << 7 << none << QString() << false << false << 7 << typed;
    QTest::newRow("unknown, Python chosen")
        << 7 << none << QStringLiteral("Python") << false << false << 1 << typed;
    QTest::newRow("MEL, Python chosen")
        << 0 << two << QStringLiteral("Python") << true << false << 1 << typedTwo;
}

void tst_picker_dialog::language() {
    QFETCH(qint32, api);
    QFETCH(QStringList, sel);
    QFETCH(QString, choose);
    QFETCH(bool, mel);
    QFETCH(bool, python);
    QFETCH(qint32, storedApi);
    QFETCH(QStringList, storedSel);
    buttonAttributes att = command_button(api, QStringLiteral("L"), sel);
    bool melSeen = false;
    bool pythonSeen = false;
    QString commandSeen;
    answer_next_dialog([&](QWidget* dialog) {
        melSeen = radio(dialog, QStringLiteral("MEL"))->isChecked();
        pythonSeen = radio(dialog, QStringLiteral("Python"))->isChecked();
        auto* command = dialog->findChild<QTextEdit*>();
        commandSeen = command->toPlainText();
        if (!choose.isEmpty())
            QTest::mouseClick(radio(dialog, choose), Qt::LeftButton);
        command->setPlainText(QStringLiteral("typed"));
        click(dialog, QStringLiteral("OK"));
    });
    QVERIFY(picker_editCmdDialog::do_dialog(view_.get(), &att));
    QCOMPARE(melSeen, mel);
    QCOMPARE(pythonSeen, python);
    QCOMPARE(commandSeen, sel.value(0));
    QCOMPARE(att.api, storedApi);
    QCOMPARE(att.sel, storedSel);
}

void tst_picker_dialog::namespace_rows_data() {
    QTest::addColumn<QStringList>("used");
    QTest::addColumn<QStringList>("available");
    QTest::addColumn<QList<QStringList>>("items");
    QTest::addColumn<QStringList>("current");
    const QStringList scene{QStringLiteral("shot3"), QStringLiteral("shot3:char1"),
                            QStringLiteral("prop")};
    QTest::newRow("none used") << QStringList() << scene << QList<QStringList>() << QStringList();
    QTest::newRow("in the scene") << QStringList{QStringLiteral("prop")} << scene
                                  << QList<QStringList>{scene}
                                  << QStringList{QStringLiteral("prop")};
    QTest::newRow("nested in the scene")
        << QStringList{QStringLiteral("char1")} << scene << QList<QStringList>{scene}
        << QStringList{QStringLiteral("shot3:char1")};
    QTest::newRow("missing, and the blank-led one")
        << QStringList{QStringLiteral("gone"), QStringLiteral(" b")} << scene
        << QList<QStringList>{QStringList{QStringLiteral("gone")} + scene,
                              QStringList{QStringLiteral(" b")} + scene}
        << QStringList{QStringLiteral("gone"), QStringLiteral(" b")};
}

void tst_picker_dialog::namespace_rows() {
    QFETCH(QStringList, used);
    QFETCH(QStringList, available);
    QFETCH(QList<QStringList>, items);
    QFETCH(QStringList, current);
    picker_editNamespaceDialog dialog(view_.get(), used, available);

    const QList<QComboBox*> combos = dialog.findChildren<QComboBox*>();
    QCOMPARE(combos.size(), items.size());
    for (int i = 0; i < combos.size(); ++i) {
        QStringList seen;
        for (int j = 0; j < combos.at(i)->count(); ++j)
            seen.append(combos.at(i)->itemText(j));
        QCOMPARE(seen, items.at(i));
        QCOMPARE(combos.at(i)->currentText(), current.at(i));
        QVERIFY(combos.at(i)->isEditable());
    }
    QStringList labels;
    const QList<QLabel*> found = dialog.findChildren<QLabel*>();
    for (const QLabel* label : found)
        labels.append(label->text());
    for (const QString& ns : used)
        QVERIFY(labels.contains(QStringLiteral("<b>%1</b>").arg(ns)));
    QCOMPARE(dialog.chosen(), current);
}

void tst_picker_dialog::rebind_through_the_host_data() {
    QTest::addColumn<bool>("force");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("script");
    const QString nested = QStringLiteral("select \"shot3:char1:leg\"; // shot3:char1:x");
    QTest::newRow("rebind, nested one preselected")
        << true << QStringLiteral("OK") << QStringLiteral("shot3:char1:arm") << nested;
    QTest::newRow("rebind to the root") << true << QStringLiteral("root") << QStringLiteral("arm")
                                        << QStringLiteral("select \"leg\"; // x");
    QTest::newRow("rebind cancelled")
        << true << QStringLiteral("Cancel") << QStringLiteral("char1:arm")
        << QStringLiteral("select \"char1:leg\"; // char1:x");
    QTest::newRow("bind, a namespace missing")
        << false << QStringLiteral("OK") << QStringLiteral("shot3:char1:arm") << nested;
}

void tst_picker_dialog::rebind_through_the_host() {
    QFETCH(bool, force);
    QFETCH(QString, answer);
    QFETCH(QString, name);
    QFETCH(QString, script);
    if (picker_main::window() == nullptr) {
        host_->openScene({QStringLiteral("shot3:char1:arm"), QStringLiteral("shot3:char1:leg")},
                         {});
        QVERIFY(host_->executeCommand(QStringLiteral("TalvoraPicker")));
        host_->processIdle();
    }
    auto* window = dynamic_cast<picker_window*>(picker_main::window());
    QVERIFY(window != nullptr);
    picker_view* view = window->frontPicker();
    view->reset_buttons();
    buttonAttributes selection = command_button(0, QString(), {QStringLiteral("char1:arm")});
    selection.type = buttonAttributes::Selection;
    view->push_button(selection, -1);
    view->push_button(
        command_button(0, QString(), {QStringLiteral("select \"char1:leg\"; // char1:x")}), -1);
    QSignalSpy changed(view, &picker_view::changed);
    answer_next_dialog([answer](QWidget* dialog) {
        if (answer == QLatin1String("root"))
            dialog->findChild<QComboBox*>()->setEditText(QString());
        click(dialog, answer == QLatin1String("Cancel") ? answer : QStringLiteral("OK"));
    });

    host_->processIdle(); // the scene write an earlier row left queued
    if (force)
        entry_of(*window, 2, QStringLiteral("Change Namespace..."))->trigger();
    else
        window->request_rebind(false);
    const QString directive = force ? QStringLiteral("rebind") : QStringLiteral("bind");
    QCOMPARE(host_->pendingMel(),
             QStringList{
                 QStringLiteral("TalvoraPicker \"%1\" `picker_ListNamespaces`;").arg(directive)});
    host_->processIdle();

    QCOMPARE(view->buttons()->at(0).att.sel, QStringList{name});
    QCOMPARE(view->buttons()->at(1).att.sel, QStringList{script});
    QCOMPARE(changed.count(), answer == QLatin1String("Cancel") ? 0 : 1);
    QCOMPARE(view->undoer()->count(), 0);
}

QTEST_MAIN(tst_picker_dialog)
#include "tst_picker_dialog.moc"
