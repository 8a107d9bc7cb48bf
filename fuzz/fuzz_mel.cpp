// Any text as MEL run against the embedded host: a fixed table of nodes, a scene and a rig to
// open and reference, everything held in memory so that no statement reaches the disk. The
// reader and the host must neither crash nor hang, whatever the statements ask.
#include "picker_embedded_host.h"
#include "picker_mel.h"

#include <QCoreApplication>
#include <QEvent>

#include <cstdint>

namespace {

const QByteArray scene = QByteArrayLiteral("//Maya ASCII 2025 scene\n"
                                           "file -r -ns \"hero\" \"rig.ma\";\n"
                                           "fileInfo \"TalvoraPickerData\" \"AAAA\";\n"
                                           "createNode transform -n \"root\";\n");
const QByteArray rig = QByteArrayLiteral("//Maya ASCII 2025 scene\n"
                                         "createNode transform -n \"L_hand_ctrl\";\n"
                                         "createNode transform -n \"R_hand_ctrl\";\n");

// The host queues its idle work on the event loop of the one application.
void ensureApplication() {
    static int argc = 1;
    static char name[] = "fuzz_mel";
    static char* argv[] = {name, nullptr};
    static QCoreApplication application(argc, argv);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ensureApplication();
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<int>(size));
    picker_mel_parse(text);

    picker_ma_memory_files files;
    files.files.insert(QStringLiteral("/f/scene.ma"), scene);
    files.files.insert(QStringLiteral("/f/rig.ma"), rig);
    {
        picker_embedded_host host;
        host.setFiles(files);
        host.setOutput([](picker_embedded_host::output_kind, const QString&) {});
        host.openScene({QStringLiteral("root"), QStringLiteral("hero:L_hand_ctrl"),
                        QStringLiteral("prop:box")},
                       {{QStringLiteral("k"), QStringLiteral("v")}});
        host.runScript(text, QStringLiteral("fuzz.mel"), [](const picker_mel_value&) {});
        host.executeCommand(text);
        host.processIdle();
    }
    // The host's pending timers go with it; what they leave behind is let go here.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return 0;
}
