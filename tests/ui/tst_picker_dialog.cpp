#include "../support/picker_test_kit.h"
#include "../support/picker_test_vectors.h"
#include "picker_dialog.h"
#include "picker_embedded_host.h"
#include "picker_main.h"
#include "picker_view.h"
#include "picker_window.h"

#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>
#include <QTextEdit>

#include <memory>

using namespace picker_test_vectors;

using namespace picker_test_kit;

namespace {

const QString size_key = "editCommandWindowSize"_q;
const QString pos_key = "editCommandWindowPos"_q;

template <typename T>
T* titled(QWidget* dialog, const QString& text) {
    const QList<T*> buttons = dialog->findChildren<T*>();
    for (T* button : buttons) {
        if (button->text() == text)
            return button;
    }
    return nullptr;
}

void click(QWidget* dialog, const QString& text) {
    QTest::mouseClick(titled<QPushButton>(dialog, text), Qt::LeftButton);
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

buttonAttributes command_button(qint32 api, const QString& label, const QStringList& sel) {
    return {QPoint(60, 60), 20, buttonAttributes::Command, api, 0xFF2222B2, 0xFFFFFFFF, label, sel};
}

} // namespace

class tst_picker_dialog : public QObject {
    Q_OBJECT

    std::unique_ptr<picker_embedded_host> host_;
    std::unique_ptr<picker_view> view_;

private slots:
    void initTestCase() {
        QStandardPaths::setTestModeEnabled(true);
        qputenv("TALVORA_PICKER_CONFIG", QByteArray("/nonexistent/pickers.cfg"));
        host_ = std::make_unique<picker_embedded_host>();
        QVERIFY(picker_main::initialize(*host_, &picker_window::create));
    }

    void cleanupTestCase() {
        view_.reset();
        host_->quit();
        picker_main::uninitialize();
        host_.reset();
    }

    void init() {
        QSettings settings("Talvora"_q, "picker"_q);
        settings.remove(size_key);
        settings.remove(pos_key);
        host_->clearScriptLog();
        view_ = std::make_unique<picker_view>();
        view_->resize(320, 240);
        view_->show();
        QVERIFY(QTest::qWaitForWindowExposed(view_.get()));
    }

    void edit_from_the_canvas_data() {
        QTest::addColumn<bool>("existing");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<int>("steps");
        QTest::newRow("new button, tested, cancelled") << false << false << 0;
        QTest::newRow("existing button, tested, cancelled") << true << false << 0;
        QTest::newRow("new button, OK") << false << true << 1;
        QTest::newRow("existing button, OK") << true << true << 1;
    }

    void edit_from_the_canvas() {
        QFETCH(bool, existing);
        QFETCH(bool, ok);
        QFETCH(int, steps);
        const buttonAttributes original =
            command_button(buttonAttributes::Python, "Go"_q, {"go()"_q});
        if (existing)
            view_->tab()->insertButton(original, -1);
        const QString script = "print \"tested\";"_q;
        QStringList queuedByTest;
        pick_from_next_popup(existing ? "Edit Command Button..."_q : "Add Command Button..."_q);
        bool nameFocused = false;
        bool okWithoutScript = true;
        answer_next(&QApplication::activeModalWidget, [&](QWidget* dialog) {
            // Typing goes to the name at once; OK waits for a script.
            nameFocused = dialog->focusWidget() == dialog->findChild<QLineEdit*>();
            dialog->findChild<QTextEdit*>()->clear();
            okWithoutScript = titled<QPushButton>(dialog, "OK"_q)->isEnabled();
            dialog->findChild<QLineEdit*>()->setText("Wave"_q);
            dialog->findChild<QTextEdit*>()->setPlainText(script);
            QTest::mouseClick(titled<QRadioButton>(dialog, "MEL"_q), Qt::LeftButton);
            click(dialog, "Test"_q);
            queuedByTest = host_->pendingMel();
            click(dialog, ok ? "OK"_q : "Cancel"_q);
        });
        QSignalSpy changed(view_->tab(), &picker_tab::changed);

        const QPoint at = view_->mapToScreen(QPoint(60, 60));
        QTest::mousePress(view_.get(), Qt::RightButton, Qt::KeyboardModifiers(), at);
        QTest::mouseRelease(view_.get(), Qt::RightButton, Qt::KeyboardModifiers(), at);

        QVERIFY2(queuedByTest.contains(script), qPrintable(queuedByTest.join(QLatin1Char('|'))));
        QVERIFY(nameFocused);
        QVERIFY(!okWithoutScript);
        QCOMPARE(view_->tab()->undoer()->count(), steps);
        QCOMPARE(changed.count(), ok ? 1 : 0);
        QCOMPARE(view_->tab()->count(), existing || ok ? 1 : 0);
        if (!ok) {
            if (existing)
                QCOMPARE(view_->tab()->buttons().at(0).att, original);
            return;
        }
        const buttonAttributes edited = view_->tab()->buttons().at(0).att;
        QCOMPARE(edited.label, "Wave"_q);
        QCOMPARE(edited.sel, QStringList{script});
        QCOMPARE(edited.api, qint32(buttonAttributes::Mel));
        QCOMPARE(view_->mapToScreen(edited.pos), QPoint(60, 60));
        // Undo and redo give back each state whole, never a stale one.
        QUndoStack* stack = view_->tab()->undoer();
        stack->undo();
        QCOMPARE(view_->tab()->count(), existing ? 1 : 0);
        if (existing)
            QCOMPARE(view_->tab()->buttons().at(0).att, original);
        stack->redo();
        QCOMPARE(view_->tab()->buttons().at(0).att, edited);
    }

    void name_limit() {
        buttonAttributes att =
            command_button(buttonAttributes::Mel, QString(127, QLatin1Char('n')), {"s"_q});
        answer_next(&QApplication::activeModalWidget, [&](QWidget* dialog) {
            auto* name = dialog->findChild<QLineEdit*>();
            name->setFocus();
            name->end(false);
            QTest::keyClicks(name, "xyz"_q);
            click(dialog, "OK"_q);
        });
        QVERIFY(picker_editCmdDialog::do_dialog(view_.get(), &att));
        QCOMPARE(att.label, QString(127, QLatin1Char('n')) + QLatin1Char('x'));
    }

    // Opens where the settings say when both keys are readable, and stores where it was left.
    void remembered_geometry_data() {
        QTest::addColumn<bool>("bothKeys");
        QTest::newRow("both") << true;
        QTest::newRow("size only") << false;
    }

    void remembered_geometry() {
        QFETCH(bool, bothKeys);
        const QRect stored(123, 97, 611, 577);
        QSettings settings("Talvora"_q, "picker"_q);
        settings.setValue(size_key, stored.size());
        if (bothKeys)
            settings.setValue(pos_key, stored.topLeft());
        settings.sync();
        QRect seen;
        answer_next(&QApplication::activeModalWidget, [&](QWidget* dialog) {
            seen = QRect(dialog->pos(), dialog->size());
            dialog->resize(503, 471);
            dialog->move(41, 37);
            click(dialog, "Cancel"_q);
        });
        buttonAttributes att = command_button(buttonAttributes::Mel, QString(), {});
        QVERIFY(!picker_editCmdDialog::do_dialog(view_.get(), &att));

        if (bothKeys)
            QCOMPARE(seen, stored);
        else
            QVERIFY(seen.size() != stored.size());
        settings.sync();
        QCOMPARE(settings.value(size_key).toSize(), QSize(503, 471));
        QCOMPARE(settings.value(pos_key).toPoint(), QPoint(41, 37));
    }

    // Neither language is shown for an unknown one, which OK keeps; only the first command
    // line is edited.
    void unknown_language_is_kept() {
        buttonAttributes att = command_button(7, "L"_q, {"first"_q, "second"_q});
        bool checked = true;
        QString commandSeen;
        answer_next(&QApplication::activeModalWidget, [&](QWidget* dialog) {
            checked = titled<QRadioButton>(dialog, "MEL"_q)->isChecked() ||
                      titled<QRadioButton>(dialog, "Python"_q)->isChecked();
            auto* command = dialog->findChild<QTextEdit*>();
            commandSeen = command->toPlainText();
            command->setPlainText("typed"_q);
            click(dialog, "OK"_q);
        });
        QVERIFY(picker_editCmdDialog::do_dialog(view_.get(), &att));
        QVERIFY(!checked);
        QCOMPARE(commandSeen, "first"_q);
        QCOMPARE(att.api, 7);
        QCOMPARE(att.sel, (QStringList{"typed"_q, "second"_q}));
    }
};

QTEST_MAIN(tst_picker_dialog)
#include "tst_picker_dialog.moc"
