#pragma once

#include <QMessageBox>
#include <QString>
#include <QStringList>

#include <functional>

class QDialog;
class QWidget;

// The window's modal questions: message boxes, file choosers and its own dialogs. Each goes to the
// real dialog unless a hook is installed, so a caller without a user (the tests) answers them
// directly.
struct picker_message {
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QWidget* parent = nullptr;
    QString title;
    QString text;
    QMessageBox::StandardButtons buttons = QMessageBox::Ok;
    // What Enter answers; NoButton leaves the choice to the box.
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
};

struct picker_file_question {
    enum class kind { open_file, open_files, save_file };
    kind type = kind::open_files;
    QWidget* parent = nullptr;
    QString title;
    QString directory;
    QString filter;
    // Added to a name typed without an extension, for saves.
    QString defaultSuffix;
};

using picker_message_hook = std::function<QMessageBox::StandardButton(const picker_message&)>;
// The chosen paths; none when cancelled, at most one for a save.
using picker_file_hook = std::function<QStringList(const picker_file_question&)>;

// The dialog's result code, as QDialog::exec gives it.
using picker_dialog_hook = std::function<int(QDialog&)>;

QMessageBox::StandardButton picker_ask(const picker_message& message);
QStringList picker_ask_files(const picker_file_question& question);
int picker_exec(QDialog& dialog);

// An empty hook brings the real dialogs back.
void picker_set_message_hook(picker_message_hook hook);
void picker_set_file_hook(picker_file_hook hook);
void picker_set_dialog_hook(picker_dialog_hook hook);
