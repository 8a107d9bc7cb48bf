#pragma once

#include "picker_view.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QStandardPaths>
#include <QTabWidget>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <utility>

// Keeps settings and the pickers config away from the user's.
inline void isolate_settings() {
    QStandardPaths::setTestModeEnabled(true);
    qputenv("TALVORA_PICKER_CONFIG", QByteArray("/nonexistent/pickers.cfg"));
}

// A button of red (200, 30, 30) centred on pos; at zoom 1 size 20 answers widget points pos - 9
// to pos + 9.
inline buttonAttributes button_at(const QPoint& pos, const QStringList& names, int size = 10,
                                  qint32 type = buttonAttributes::Selection) {
    buttonAttributes att;
    att.pos = pos;
    att.size = size;
    att.type = type;
    att.color = 0xFFC81E1E;
    att.sel = names;
    return att;
}

inline void add_button(picker_view* view, const QPoint& pos, const QStringList& names,
                       qint32 type = buttonAttributes::Selection) {
    view->tab()->insertButton(button_at(pos, names, 20, type), -1);
}

inline QList<qint16> lit_states(const picker_view* view) {
    QList<qint16> states;
    for (const buttonRecord& button : view->tab()->buttons())
        states.append(button.selected);
    return states;
}

inline QVector<QPoint> positions(const picker_view* view) {
    QVector<QPoint> list;
    for (const buttonRecord& button : view->tab()->buttons())
        list.append(button.att.pos);
    return list;
}

inline button_att_list attributes_of(const picker_view* view) {
    button_att_list list;
    for (const buttonRecord& button : view->tab()->buttons())
        list.append(button.att);
    return list;
}

// Finds a menu of the window's bar by position and an entry of it by its text.
inline QMenu* menu_of(const QWidget& window, int index) {
    return window.findChild<QMenuBar*>()->actions().at(index)->menu();
}

inline QAction* action_of(const QList<QAction*>& actions, const QString& text) {
    for (QAction* action : actions) {
        if (action->text() == text)
            return action;
    }
    return nullptr;
}

inline QAction* entry_of(const QWidget& window, int menuIndex, const QString& text) {
    return action_of(menu_of(window, menuIndex)->actions(), text);
}

// Opens and closes a menu the way the user does, so its aboutToShow refresh runs.
inline void show_menu(const QWidget& window, int index) {
    QMenu* menu = menu_of(window, index);
    menu->popup(QPoint(0, 0));
    menu->hide();
}

inline QTabWidget* tabs_of(const QWidget& window) {
    return window.findChild<QTabWidget*>();
}

inline QStringList tab_titles(const QWidget& window) {
    QStringList titles;
    for (int i = 0; i < tabs_of(window)->count(); ++i)
        titles.append(tabs_of(window)->tabText(i));
    return titles;
}

// Hands the next window that up finds to answer once it is up: a modal exec() or a popup's
// returns only when answer closes it.
inline void answer_next(QWidget* (*up)(), std::function<void(QWidget*)> answer) {
    auto* poll = new QTimer(qApp);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, up, answer]() {
        QWidget* window = up();
        if (window == nullptr)
            return;
        poll->stop();
        poll->deleteLater();
        answer(window);
    });
    poll->start(0);
}

inline void answer_next_dialog(std::function<void(QWidget*)> answer) {
    answer_next(&QApplication::activeModalWidget, std::move(answer));
}
