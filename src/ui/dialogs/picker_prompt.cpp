#include "picker_prompt.h"

#include <QFileDialog>

namespace {

picker_message_hook& message_hook() {
    static picker_message_hook hook;
    return hook;
}

picker_file_hook& file_hook() {
    static picker_file_hook hook;
    return hook;
}

picker_dialog_hook& dialog_hook() {
    static picker_dialog_hook hook;
    return hook;
}

} // namespace

QMessageBox::StandardButton picker_ask(const picker_message& message) {
    if (message_hook())
        return message_hook()(message);
    switch (message.icon) {
    case QMessageBox::Critical:
        return QMessageBox::critical(message.parent, message.title, message.text, message.buttons,
                                     message.defaultButton);
    case QMessageBox::Warning:
        return QMessageBox::warning(message.parent, message.title, message.text, message.buttons,
                                    message.defaultButton);
    case QMessageBox::Question:
        return QMessageBox::question(message.parent, message.title, message.text, message.buttons,
                                     message.defaultButton);
    default:
        return QMessageBox::information(message.parent, message.title, message.text,
                                        message.buttons, message.defaultButton);
    }
}

QStringList picker_ask_files(const picker_file_question& question) {
    if (file_hook())
        return file_hook()(question);
    if (question.type == picker_file_question::kind::open_file) {
        const QString chosen = QFileDialog::getOpenFileName(question.parent, question.title,
                                                            question.directory, question.filter);
        return chosen.isEmpty() ? QStringList() : QStringList{chosen};
    }
    if (question.type == picker_file_question::kind::open_files)
        return QFileDialog::getOpenFileNames(question.parent, question.title, question.directory,
                                             question.filter);
    const QString chosen = QFileDialog::getSaveFileName(question.parent, question.title,
                                                        question.directory, question.filter);
    return chosen.isEmpty() ? QStringList() : QStringList{chosen};
}

int picker_exec(QDialog& dialog) {
    if (dialog_hook())
        return dialog_hook()(dialog);
    return dialog.exec();
}

void picker_set_message_hook(picker_message_hook hook) {
    message_hook() = std::move(hook);
}

void picker_set_file_hook(picker_file_hook hook) {
    file_hook() = std::move(hook);
}

void picker_set_dialog_hook(picker_dialog_hook hook) {
    dialog_hook() = std::move(hook);
}
