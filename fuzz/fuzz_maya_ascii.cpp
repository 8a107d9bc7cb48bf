// Any bytes as a Maya ASCII scene with the files it may reference: the input is the scene, then
// after each separator line one more file, 1.ma, 2.ma and so on beside it, all held in memory so
// that reference cycles, depth and the scene's limits are within reach. The reader must neither
// crash nor hang; a scene it reads must be written back byte for byte, and with the picker's
// entries set must read back with them.
#include "picker_file.h"
#include "picker_maya_ascii.h"

#include <cstdint>
#include <cstdlib>

namespace {

const QByteArray separator = QByteArrayLiteral("\n--8<--\n");

QString fileName(int index) {
    return index == 0 ? QStringLiteral("/f/scene.ma") : QStringLiteral("/f/%1.ma").arg(index);
}

QString lastValue(const picker_ma_scene& scene, const QString& key) {
    QString value;
    for (const auto& entry : scene.fileInfo) {
        if (entry.first == key)
            value = entry.second;
    }
    return value;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<int>(size));
    picker_ma_memory_files files;
    int index = 0;
    for (int from = 0; from <= input.size(); ++index) {
        int end = int(input.indexOf(separator, from));
        if (end < 0)
            end = int(input.size());
        files.files.insert(fileName(index), input.mid(from, end - from));
        from = end + int(separator.size());
    }
    picker_ma_scene scene;
    if (!readMayaAscii(fileName(0), scene, files).ok())
        return 0;

    QByteArray written;
    if (!mayaAsciiBytes(scene, QString(), written, nullptr) ||
        written != files.files.value(fileName(0)))
        std::abort();

    const QString key = QLatin1String(picker_scene_data_key);
    const QString value = QString::fromLatin1(input.left(64).toBase64());
    scene.fileInfo.append(qMakePair(key, value));
    scene.nodes.append(QStringLiteral("fuzz_node"));
    picker_ma_scene again;
    if (!mayaAsciiBytes(scene, QStringLiteral("renamed.ma"), written, nullptr) ||
        !parseMayaAsciiFile(written, fileName(0), again).ok() || lastValue(again, key) != value ||
        !again.nodes.contains(QStringLiteral("fuzz_node")))
        std::abort();
    return 0;
}
