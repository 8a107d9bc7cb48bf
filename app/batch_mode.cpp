#include "batch_mode.h"

#include "picker_embedded_host.h"
#include "picker_prompt.h"

#include <QCoreApplication>
#include <QDialog>

#include <cstdio>

namespace {

const QString error_prefix = QStringLiteral("// Error: ");

void tell(const QString& title, const QString& text) {
    std::fprintf(stderr, "talvora-picker: %s: %s\n", qPrintable(title), qPrintable(text));
}

// The button a message box would have focused: the one that accepts, else the first.
QMessageBox::StandardButton default_button(QMessageBox::StandardButtons buttons) {
    for (const QMessageBox::StandardButton accepting :
         {QMessageBox::Ok, QMessageBox::Save, QMessageBox::Open, QMessageBox::Yes,
          QMessageBox::Ignore}) {
        if (buttons.testFlag(accepting))
            return accepting;
    }
    for (int bit = QMessageBox::FirstButton; bit <= QMessageBox::LastButton; bit <<= 1) {
        if (buttons.testFlag(static_cast<QMessageBox::StandardButton>(bit)))
            return static_cast<QMessageBox::StandardButton>(bit);
    }
    return QMessageBox::NoButton;
}

} // namespace

void settle_host(picker_embedded_host& host) {
    for (;;) {
        QCoreApplication::processEvents();
        if (host.pendingIdleCount() == 0)
            return;
        host.processIdle();
    }
}

void answer_prompts_unattended() {
    picker_set_message_hook([](const picker_message& message) {
        tell(message.title, message.text);
        return default_button(message.buttons);
    });
    picker_set_file_hook([](const picker_file_question& question) {
        tell(question.title, QStringLiteral("no file chosen in batch mode"));
        return QStringList();
    });
    picker_set_dialog_hook([](QDialog& dialog) {
        tell(dialog.windowTitle(), QStringLiteral("cancelled in batch mode"));
        return int(QDialog::Rejected);
    });
}

int run_batch(picker_embedded_host& host, const QStringList& statements) {
    qsizetype printed = host.scriptLog().size();
    for (const QString& statement : statements) {
        picker_mel_value result;
        const host_status status = host.executeCommand(statement, &result);
        // As the host's script editor shows what a statement gave back.
        if (status && !result.items.join(QString()).isEmpty()) {
            std::printf("// Result: %s //\n", qPrintable(result.items.join(QLatin1Char(' '))));
        }
        settle_host(host);
        const QStringList log = host.scriptLog();
        bool failed = !status;
        for (; printed < log.size(); ++printed) {
            const QString& line = log.at(printed);
            // Errors have been written to stderr by the host as they happened.
            if (line.startsWith(error_prefix))
                failed = true;
            else
                std::printf("%s\n", qPrintable(line));
        }
        std::fflush(stdout);
        if (failed)
            return 1;
    }
    return 0;
}
