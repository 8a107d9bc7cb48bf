#include "picker_prompt.h"

#include <QFileDialog>

namespace {

// Once a question is answered the keys go back to the window that asked it, so its shortcuts
// work at once.
void give_focus_back(QWidget* parent) {
    if (parent == nullptr)
        return;
    parent->window()->activateWindow();
    parent->setFocus(Qt::OtherFocusReason);
}

QMessageBox::StandardButton ask_box(const picker_message& message) {
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

QStringList ask_files(const picker_file_question& question) {
    QFileDialog dialog(question.parent, question.title, question.directory, question.filter);
    switch (question.type) {
    case picker_file_question::kind::open_file:
        dialog.setFileMode(QFileDialog::ExistingFile);
        break;
    case picker_file_question::kind::open_files:
        dialog.setFileMode(QFileDialog::ExistingFiles);
        break;
    case picker_file_question::kind::save_file:
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setFileMode(QFileDialog::AnyFile);
        // A name typed without the extension still lands where the filter shows it.
        dialog.setDefaultSuffix(question.defaultSuffix);
        break;
    }
    if (dialog.exec() != QDialog::Accepted)
        return {};
    const QStringList chosen = dialog.selectedFiles();
    return question.type == picker_file_question::kind::open_files ? chosen
                                                                   : QStringList(chosen.mid(0, 1));
}

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
    const QMessageBox::StandardButton answer = ask_box(message);
    give_focus_back(message.parent);
    return answer;
}

QStringList picker_ask_files(const picker_file_question& question) {
    if (file_hook())
        return file_hook()(question);
    const QStringList chosen = ask_files(question);
    give_focus_back(question.parent);
    return chosen;
}

int picker_exec(QDialog& dialog) {
    if (dialog_hook())
        return dialog_hook()(dialog);
    const int result = dialog.exec();
    give_focus_back(dialog.parentWidget());
    return result;
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
