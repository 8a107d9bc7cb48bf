#pragma once

// The picker as a user meets it: the embedded host with a scene, the picker window opened by the
// "TalvoraPicker" command, and events sent to the top-level window, where the window system
// would deliver them. Pictures are read back from what the window draws.

// Pointer events go through the window system, as a user's do, so that held buttons add up and
// the application sees the modifiers; on Qt 5 that is not the default.
#ifndef QTEST_QPA_MOUSE_HANDLING
#define QTEST_QPA_MOUSE_HANDLING
#endif

#include "picker_embedded_host.h"
#include "picker_file.h"
#include "picker_main.h"
#include "picker_test_kit.h"
#include "picker_view.h"
#include "picker_window.h"

#include <QApplication>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>
#include <QStandardPaths>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <functional>
#include <memory>

namespace picker_test_kit {

using namespace picker_test_vectors;

// The canvas colour and the fills of lit buttons, as the user sees them.
inline const QColor canvas(51, 51, 51);
inline const QColor lit(224, 224, 224);
inline const QColor partly_lit(128, 128, 128);

class picker_session {
public:
    explicit picker_session(const QStringList& nodes) {
        if (!picker_main::initialize(host, &picker_window::create))
            return;
        host.openScene(nodes, {});
        host.executeCommand("TalvoraPicker"_q);
        settle();
        dock()->resize(640, 560);
        if (!activate())
            return;
        // The window takes the keys once the pointer is over it.
        QTest::mouseMove(window(), QPoint(320, 300));
        up_ = true;
    }
    ~picker_session() {
        host.quit();
        picker_main::uninitialize();
    }
    picker_session(const picker_session&) = delete;
    picker_session& operator=(const picker_session&) = delete;

    bool isUp() const { return up_; }

    // Runs what the last event queued, on idle and in the host, until nothing is left.
    void settle() {
        for (;;) {
            QCoreApplication::processEvents();
            if (host.pendingIdleCount() == 0)
                return;
            host.processIdle();
        }
    }

    QDockWidget* dock() const { return picker_main::dock(); }
    QWindow* window() const { return dock()->windowHandle(); }
    QTabWidget* tabs() const { return dock()->findChild<QTabWidget*>(); }
    picker_view* front() const { return qobject_cast<picker_view*>(tabs()->currentWidget()); }

    // Opens a picker file holding the buttons, as "Open..." would, in a tab of its own.
    void open(const button_att_list& buttons, const QString& title = "rig"_q) {
        open({title, QString(), QByteArray(), buttons});
    }
    void open(const laid_tab& tab) {
        const QString path = dir_.filePath(tab.title + ".pkr"_q);
        writeBytes(path, laid_file(tab));
        host.executeCommand("TalvoraPicker open \"%1\""_q.arg(path));
        settle();
    }

    // A picker point of the front canvas, in the top-level window.
    QPoint at(const QPoint& pickerPoint) const {
        return front()->mapTo(dock(), front()->mapToScreen(pickerPoint));
    }

    void click(const QPoint& pickerPoint, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
               Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(window(), button, modifiers, at(pickerPoint));
        settle();
    }
    // Presses at the first point, moves through the others and releases at the last; key runs
    // while the button is still held.
    void drag(const QVector<QPoint>& path, Qt::KeyboardModifiers modifiers,
              const std::function<void()>& whileHeld = {}) {
        QTest::mousePress(window(), Qt::LeftButton, modifiers, at(path.first()));
        for (int i = 1; i < path.size(); ++i) {
            QTest::mouseMove(window(), at(path.at(i)));
            if (i == 1 && whileHeld)
                whileHeld();
        }
        QTest::mouseRelease(window(), Qt::LeftButton, modifiers, at(path.last()));
        settle();
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(window(), key, modifiers);
        settle();
    }

    // Right-clicks the canvas and chooses the entry, found by its text in the menu or a submenu.
    void choose(const QPoint& pickerPoint, const QString& entry) {
        answer_next(&QApplication::activePopupWidget, [entry](QWidget* popup) {
            const std::function<QAction*(const QMenu*)> find = [&](const QMenu* menu) {
                for (QAction* action : menu->actions()) {
                    if (action->text() == entry)
                        return action;
                    if (action->menu() != nullptr)
                        if (QAction* inner = find(action->menu()))
                            return inner;
                }
                return static_cast<QAction*>(nullptr);
            };
            QAction* action = find(static_cast<QMenu*>(popup));
            popup->close();
            if (action != nullptr && action->isEnabled())
                action->trigger();
        });
        QTest::mouseClick(window(), Qt::RightButton, Qt::NoModifier, at(pickerPoint));
        settle();
        // As the window manager does once a popup has gone.
        QVERIFY(activate());
    }

    bool activate() {
        dock()->activateWindow();
        return QTest::qWaitForWindowActive(dock());
    }

    // Chooses an entry of a menu of the window's bar, clicking where the user would.
    void menu(const QString& title, const QString& entry) {
        for (QAction* item : dock()->findChild<QMenuBar*>()->actions()) {
            if (item->text() != title)
                continue;
            QMenu* shown = item->menu();
            shown->popup(dock()->mapToGlobal(QPoint(0, 0)));
            QVERIFY(QTest::qWaitForWindowExposed(shown));
            for (QAction* action : shown->actions()) {
                if (action->text() == entry)
                    QTest::mouseClick(shown->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                                      shown->actionGeometry(action).center());
            }
            shown->hide();
        }
        settle();
        QVERIFY(activate());
    }

    // Clicks a tab's title in the tab bar, clear of its close button on the right.
    void show_tab(int index) {
        QTabBar* bar = tabs()->tabBar();
        const QRect tab = bar->tabRect(index);
        QTest::mouseClick(window(), Qt::LeftButton, Qt::NoModifier,
                          bar->mapTo(dock(), QPoint(tab.left() + 8, tab.center().y())));
        settle();
    }

    // Clicks a widget of the window, as the user reaches a field.
    void click_on(QWidget* widget) {
        QTest::mouseClick(window(), Qt::LeftButton, Qt::NoModifier,
                          widget->mapTo(dock(), widget->rect().center()));
        settle();
    }

    // The pointer leaves the picker for the dock's title and comes back over the canvas.
    void reenter() {
        QTest::mouseMove(window(), QPoint(dock()->width() / 2, 4));
        QTest::mouseMove(window(), at(QPoint(300, 250)));
        settle();
    }

    void type(const QString& text) {
        for (const QChar c : text)
            QTest::keyClick(window(), c.toLatin1());
        settle();
    }

    // Opens and closes a menu of the window's bar, as a user glancing at it does.
    void glance(const QString& menu) {
        for (QAction* entry : dock()->findChild<QMenuBar*>()->actions()) {
            if (entry->text() == menu) {
                entry->menu()->popup(QPoint(0, 0));
                entry->menu()->hide();
            }
        }
        QVERIFY(activate());
    }

    // The colour the window shows at a picker point of the front canvas.
    QColor pixel(const QPoint& pickerPoint) const {
        return dock()->grab().toImage().pixelColor(at(pickerPoint));
    }

    // The tabs the scene holds now.
    QByteArray storedBytes() const {
        return qUncompress(
            QByteArray::fromBase64(host.fileInfo(QLatin1String(picker_scene_data_key)).toLatin1()));
    }
    picker_tab_set stored() const {
        picker_tab_set set;
        QDataStream stream(storedBytes());
        readTabStream(stream, set);
        return set;
    }

    QString path(const QString& name) const { return dir_.filePath(name); }

    picker_embedded_host host;

private:
    QTemporaryDir dir_;
    bool up_ = false;
};

} // namespace picker_test_kit
