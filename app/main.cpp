#include "batch_mode.h"
#include "host_main_window.h"
#include "picker_embedded_host.h"
#include "picker_main.h"
#include "picker_mel_quote.h"
#include "picker_tab.h"
#include "picker_version.h"
#include "picker_window.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDockWidget>
#include <QFile>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

namespace {

// Long enough for the dock to show and the restored picker to paint.
constexpr int smoke_run_ms = 300;

void print_error(const QString& text) {
    std::fprintf(stderr, "talvora-picker: %s\n", qPrintable(text));
}

// What --smoke expects to see once the command ran: the dock shown, the demo picker restored.
bool picker_is_up() {
    const QDockWidget* dock = picker_main::dock();
    const auto* window = dynamic_cast<const picker_window*>(picker_main::window());
    return dock != nullptr && dock->isVisible() && window != nullptr &&
           window->frontTab() != nullptr && window->frontTab()->count() > 0;
}

// Exit status of a command line the program cannot take; a failed statement is 1.
constexpr int usage_exit = 2;

// Before anything else has started.
[[noreturn]] void usage_error(const QString& text) {
    print_error(text);
    std::fprintf(stderr, "see talvora-picker --help\n");
    std::exit(usage_exit);
}

struct program_arguments {
    bool batch = false;
    bool smoke = false;
    QString scene;
    QStringList pickers;
    QStringList commands;
    QStringList scripts;
};

// Help, version and errors are answered here, before anything needs a display, by an
// application object that knows the program's name.
program_arguments parse_arguments(int argc, char* argv[]) {
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("TalvoraPicker on an embedded host: Maya ASCII scenes, references and the "
                       "picker window, with a two-character demo when started without a scene."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption batch(
        QStringLiteral("batch"),
        QStringLiteral("Run the MEL of -c and --script against the scene with no window shown, "
                       "print the script log, and exit non-zero when a statement failed."));
    const QCommandLineOption command(QStringLiteral("c"),
                                     QStringLiteral("A MEL statement to run in batch mode."),
                                     QStringLiteral("MEL"));
    const QCommandLineOption script(
        QStringLiteral("script"),
        QStringLiteral("A MEL file to run in batch mode, after -c; several run in order."),
        QStringLiteral("FILE.mel"));
    const QCommandLineOption smoke(
        QStringLiteral("smoke"),
        QStringLiteral("Start, open the picker, run briefly and quit; exit 0 when it came up."));
    parser.addOptions({batch, command, script, smoke});
    parser.addPositionalArgument(QStringLiteral("SCENE.ma"),
                                 QStringLiteral("The Maya ASCII scene to open."),
                                 QStringLiteral("[SCENE.ma]"));
    parser.addPositionalArgument(QStringLiteral("FILE.pkr"),
                                 QStringLiteral("Picker files to open as tabs."),
                                 QStringLiteral("[FILE.pkr ...]"));
    // The parser's own mistakes end the program as usage errors; help and version after that.
    if (!parser.parse(QCoreApplication::arguments()))
        usage_error(parser.errorText());
    parser.process(application);

    program_arguments arguments;
    arguments.batch = parser.isSet(batch);
    arguments.smoke = parser.isSet(smoke);
    arguments.commands = parser.values(command);
    arguments.scripts = parser.values(script);
    for (const QString& path : parser.positionalArguments()) {
        if (path.endsWith(QLatin1String(".pkr"), Qt::CaseInsensitive))
            arguments.pickers.append(path);
        else if (arguments.scene.isEmpty())
            arguments.scene = path;
        else
            usage_error(QStringLiteral("one scene at a time: %1").arg(path));
    }
    if (!arguments.batch && (!arguments.commands.isEmpty() || !arguments.scripts.isEmpty()))
        usage_error(QStringLiteral("-c and --script need --batch"));
    return arguments;
}

// The scene, the picker window, then the picker files: as a user would bring them up in MEL.
QStringList opening_statements(const QString& scene, const QStringList& pickers) {
    QStringList statements;
    if (!scene.isEmpty())
        statements.append(QStringLiteral("file -open ") + picker_mel_quote(scene));
    statements.append(QStringLiteral("TalvoraPicker"));
    for (const QString& picker : pickers)
        statements.append(QStringLiteral("TalvoraPicker open ") + picker_mel_quote(picker));
    return statements;
}

// Started with nothing to open: the demo beside the program, two characters and their picker
// stored in the scene.
QStringList opening_statements(const program_arguments& arguments) {
    if (arguments.batch || !arguments.scene.isEmpty() || !arguments.pickers.isEmpty())
        return opening_statements(arguments.scene, arguments.pickers);
    const QString demo = QCoreApplication::applicationDirPath() + QStringLiteral("/demo/");
    return opening_statements(demo + QStringLiteral("demo_scene.ma"), {});
}

int run_batch_mode(const program_arguments& arguments, int argc, char* argv[]) {
    // No display is needed: the window exists, so every directive works, but is never seen.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", QByteArray("offscreen"));
    QList<batch_script> scripts;
    for (const QString& statement : opening_statements(arguments) + arguments.commands)
        scripts.append({statement, QString()});
    for (const QString& path : arguments.scripts) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
            print_error(
                QStringLiteral("cannot read the script %1: %2").arg(path, file.errorString()));
            return 1;
        }
        scripts.append({QString::fromUtf8(file.readAll()), path});
    }

    quiet_platform_notices();
    QApplication app(argc, argv);
    answer_prompts_unattended();
    picker_embedded_host host;
    const host_status loaded = picker_main::initialize(host, &picker_window::create);
    if (!loaded) {
        print_error(loaded.errorString());
        return 1;
    }
    const int exitCode = run_batch(host, scripts);
    host.quit();
    picker_main::uninitialize();
    return exitCode;
}

int run_interactive(const program_arguments& arguments, int argc, char* argv[]) {
    QApplication app(argc, argv);
    picker_embedded_host host;
    int exitCode = 0;
    host_main_window mainWindow(host);
    host.setMainWindow(&mainWindow);
    const host_status loaded = picker_main::initialize(host, &picker_window::create);
    if (!loaded) {
        print_error(loaded.errorString());
        return 1;
    }
    mainWindow.show();
    // Each file that does not open says why in the log; the window comes up all the same.
    for (const QString& statement : opening_statements(arguments)) {
        const host_status status = host.executeCommand(statement);
        settle_host(host);
        if (!status && statement == QLatin1String("TalvoraPicker")) {
            print_error(status.errorString());
            exitCode = 1;
        }
    }
    if (exitCode == 0) {
        bool cameUp = true;
        if (arguments.smoke) {
            // Judged before leaving; leaving the loop directly asks nothing of a modified scene.
            QTimer::singleShot(smoke_run_ms, &app, [&cameUp] {
                cameUp = picker_is_up();
                QCoreApplication::exit(0);
            });
        }
        exitCode = QApplication::exec();
        if (!cameUp) {
            print_error(QStringLiteral("the picker did not come up"));
            exitCode = 1;
        }
    }
    host.quit();
    picker_main::uninitialize();
    return exitCode;
}

} // namespace

int main(int argc, char* argv[]) {
    QCoreApplication::setApplicationName(QStringLiteral("talvora-picker"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PICKER_VERSION));
    const program_arguments arguments = parse_arguments(argc, argv);
    return arguments.batch ? run_batch_mode(arguments, argc, argv)
                           : run_interactive(arguments, argc, argv);
}
