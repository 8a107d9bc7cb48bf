#pragma once

// What the suites share: settings kept away from the user's, scripted answers to the picker's
// questions, and modal windows answered as they come up.

#include "picker_prompt.h"
#include "picker_test_vectors.h"
#include "picker_view.h"

#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QStandardPaths>
#include <QTabWidget>
#include <QTimer>
#include <QWidget>

#include <functional>

namespace picker_test_kit {

using namespace picker_test_vectors;

// Keeps settings and the pickers config away from the user's.
inline void isolate_settings() {
    QStandardPaths::setTestModeEnabled(true);
    qputenv("TALVORA_PICKER_CONFIG", QByteArray("/nonexistent/pickers.cfg"));
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

// Answers the picker's questions from scripts, in order, and keeps what was asked. A question
// nobody scripted an answer for is answered with NoButton or no file.
class scripted_prompts {
public:
    scripted_prompts() {
        picker_set_message_hook([this](const picker_message& message) {
            messages.append(message);
            return answers.isEmpty() ? QMessageBox::NoButton : answers.takeFirst();
        });
        picker_set_file_hook([this](const picker_file_question& question) {
            questions.append(question);
            return files.isEmpty() ? QStringList() : files.takeFirst();
        });
    }
    ~scripted_prompts() {
        picker_set_message_hook(picker_message_hook());
        picker_set_file_hook(picker_file_hook());
    }
    scripted_prompts(const scripted_prompts&) = delete;
    scripted_prompts& operator=(const scripted_prompts&) = delete;

    QList<QMessageBox::StandardButton> answers;
    QList<QStringList> files;
    QList<picker_message> messages;
    QList<picker_file_question> questions;
};

// An entry of the window's menu bar, by the menu's place and the entry's text.
inline QAction* entry_of(const QWidget& window, int menu, const QString& text) {
    for (QAction* action : window.findChild<QMenuBar*>()->actions().at(menu)->menu()->actions()) {
        if (action->text() == text)
            return action;
    }
    return nullptr;
}

inline QStringList tab_titles(const QWidget& window) {
    const QTabWidget* tabs = window.findChild<QTabWidget*>();
    QStringList titles;
    for (int i = 0; i < tabs->count(); ++i)
        titles << tabs->tabText(i);
    return titles;
}

inline QList<qint16> lit_states(const picker_view* view) {
    QList<qint16> states;
    for (const buttonRecord& button : view->tab()->buttons())
        states << button.selected;
    return states;
}

} // namespace picker_test_kit
