#pragma once

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QTabWidget>
#include <QTimer>
#include <QWidget>

#include <functional>

// Finds a menu of the window's bar by position and an entry of it by its text.
inline QMenu* menu_of(const QWidget& window, int index) {
    return window.findChild<QMenuBar*>()->actions().at(index)->menu();
}

inline QAction* entry_of(const QWidget& window, int menuIndex, const QString& text) {
    const QList<QAction*> actions = menu_of(window, menuIndex)->actions();
    for (QAction* action : actions) {
        if (action->text() == text)
            return action;
    }
    return nullptr;
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

// Hands the next modal dialog to answer once it is up; the dialog's exec() returns when answer
// closes it.
inline void answer_next_dialog(std::function<void(QWidget*)> answer) {
    auto* poll = new QTimer(qApp);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, answer]() {
        QWidget* dialog = QApplication::activeModalWidget();
        if (dialog == nullptr)
            return;
        poll->stop();
        poll->deleteLater();
        answer(dialog);
    });
    poll->start(0);
}
