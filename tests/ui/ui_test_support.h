#pragma once

#include <QAction>
#include <QApplication>
#include <QDataStream>
#include <QIODevice>
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

// A button list laid out field by field: one selection button per list of node names, at
// (10 b, 20), size 8, with the fields the version has.
inline void lay_buttons(QDataStream& out, qint32 version, const QList<QStringList>& buttons) {
    out << qint32(buttons.size());
    for (int b = 0; b < buttons.size(); ++b) {
        out << qint32(b) << qint32(10 * b) << qint32(20) << qint32(8);
        if (version > 1)
            out << qint32(0) << qint32(0);
        out << quint32(0xFFB22222);
        if (version > 3)
            out << quint32(0xFF000000);
        out << QString() << qint32(buttons.at(b).size());
        for (const QString& name : buttons.at(b))
            out << name;
    }
}

// One tab of a hand-laid tab stream: its title and one button per list of node names.
struct hand_tab {
    QString title;
    QList<QStringList> buttons;
};

// A tab stream laid out field by field: version, count, current, then per tab its index, title,
// (from version 2) an empty background key, and its button records.
inline QByteArray tab_stream(qint32 version, qint32 current, const QList<hand_tab>& tabs) {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << version << qint32(tabs.size()) << current;
    for (int t = 0; t < tabs.size(); ++t) {
        out << qint32(t) << tabs.at(t).title;
        if (version > 1)
            out << QString();
        lay_buttons(out, version, tabs.at(t).buttons);
    }
    return bytes;
}
