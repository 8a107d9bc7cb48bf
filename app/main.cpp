#include "demo_scene.h"
#include "host_main_window.h"
#include "picker_embedded_host.h"
#include "picker_main.h"
#include "picker_version.h"
#include "picker_view.h"
#include "picker_window.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDockWidget>
#include <QTimer>

#include <cstdio>

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
           window->frontPicker() != nullptr && !window->frontPicker()->buttons()->isEmpty();
}

} // namespace

int main(int argc, char* argv[]) {
    QCoreApplication::setApplicationName(QStringLiteral("talvora-picker"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PICKER_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("TalvoraPicker on an embedded host with a demo character rig."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption smoke(
        QStringLiteral("smoke"),
        QStringLiteral("Start, open the picker, run briefly and quit; exit 0 when it came up."));
    parser.addOption(smoke);
    {
        // Help, version and errors are answered here, before anything needs a display, by an
        // application object that knows the program's name.
        QCoreApplication arguments(argc, argv);
        parser.process(arguments);
    }

    QApplication app(argc, argv);
    picker_embedded_host host;
    host.openScene(demo_scene_nodes(), demo_scene_file_info());
    int exitCode = 0;
    {
        host_main_window mainWindow(host);
        host.setMainWindow(&mainWindow);
        const host_status loaded = picker_main::initialize(host, &picker_window::create);
        if (!loaded) {
            print_error(loaded.errorString());
            return 1;
        }
        mainWindow.show();
        const host_status opened = host.executeCommand(QStringLiteral("TalvoraPicker"));
        if (!opened) {
            print_error(opened.errorString());
            exitCode = 1;
        } else {
            bool cameUp = true;
            if (parser.isSet(smoke)) {
                // Judged before quitting: quitting closes the windows.
                QTimer::singleShot(smoke_run_ms, &app, [&cameUp] {
                    cameUp = picker_is_up();
                    QCoreApplication::quit();
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
    }
    return exitCode;
}
