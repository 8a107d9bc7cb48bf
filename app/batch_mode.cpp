#include "batch_mode.h"

#include "picker_embedded_host.h"
#include "picker_prompt.h"

#include <QCoreApplication>
#include <QDialog>

#include <cstdio>

namespace {

QtMessageHandler qt_handler = nullptr;

void without_platform_notices(QtMsgType type, const QMessageLogContext& context,
                              const QString& message) {
    static const QLatin1String notices[] = {
        QLatin1String("This plugin does not support "),
        QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set"),
    };
    if (type == QtDebugMsg || type == QtInfoMsg || type == QtWarningMsg) {
        for (const QLatin1String& notice : notices) {
            if (message.startsWith(notice))
                return;
        }
    }
    qt_handler(type, context, message);
}

void write(std::FILE* stream, const QString& text) {
    const QByteArray bytes = text.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
    std::fflush(stream);
}

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

void quiet_platform_notices() {
    qt_handler = qInstallMessageHandler(&without_platform_notices);
}

int run_batch(picker_embedded_host& host, const QList<batch_script>& scripts) {
    int errors = 0;
    host.setOutput([&errors](picker_embedded_host::output_kind kind, const QString& text) {
        using output_kind = picker_embedded_host::output_kind;
        if (kind == output_kind::print)
            write(stdout, text);
        else if (kind == output_kind::line)
            write(stdout, text + QLatin1Char('\n'));
        else
            write(stderr, text + QLatin1Char('\n'));
        errors += kind == output_kind::error ? 1 : 0;
    });
    // As the host's script editor shows what a statement gave back.
    const auto show_result = [](const picker_mel_value& result) {
        if (!result.items.join(QString()).isEmpty())
            write(stdout,
                  QStringLiteral("// Result: %1 //\n").arg(result.items.join(QLatin1Char(' '))));
    };
    int exitCode = 0;
    for (const batch_script& script : scripts) {
        const host_status status = host.runScript(script.mel, script.source, show_result);
        settle_host(host);
        // An error the picker's queued MEL ran into fails the run as well.
        if (!status || errors > 0) {
            exitCode = 1;
            break;
        }
    }
    host.setOutput({});
    return exitCode;
}
