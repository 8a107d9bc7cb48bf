// Writes the seed corpora of the fuzz targets from the hand-written layout vectors.
#include "picker_test_vectors.h"

#include <QDir>
#include <QFile>

#include <cstdio>

using namespace picker_test_vectors;

namespace {

bool writeSeed(const QString& directory, const QString& name, const QByteArray& bytes) {
    QFile file(QDir(directory).filePath(name));
    return QDir().mkpath(directory) && file.open(QIODevice::WriteOnly) &&
           file.write(bytes) == bytes.size();
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc != 2) {
        std::fputs("usage: fuzz_seeds CORPUS_DIRECTORY\n", stderr);
        return 2;
    }
    const QString root = QString::fromLocal8Bit(argv[1]);
    const QString files = root + QLatin1String("/fuzz_picker_file");
    const QString tabs = root + QLatin1String("/fuzz_tab_stream");
    const QString lists = root + QLatin1String("/fuzz_button_attributes");
    // Format 3: title "Arm", empty key, buttons in the version 3 layout.
    const QByteArray pkrVersion3 =
        hex("00000003 00000006 00410072006d 00000000") + buttonListVersion3();
    // Format 1 tab stream: one tab "Old", no key field, buttons in the version 1 layout.
    const QByteArray tabStreamVersion1 =
        hex("00000001 00000001 00000000 00000000 00000006 004f006c0064") + buttonListVersion1();
    const bool written =
        writeSeed(files, QStringLiteral("version4"), pkrVersion4()) &&
        writeSeed(files, QStringLiteral("version4_image"), pkrVersion4WithImage(tinyPng())) &&
        writeSeed(files, QStringLiteral("version3"), pkrVersion3) &&
        writeSeed(files, QStringLiteral("version1"), pkrVersion1()) &&
        writeSeed(tabs, QStringLiteral("version4"), tabStream()) &&
        writeSeed(tabs, QStringLiteral("version1"), tabStreamVersion1) &&
        writeSeed(lists, QStringLiteral("two_buttons"), hex("00000001") + buttonListVersion4());
    if (!written) {
        std::fputs("fuzz_seeds: cannot write the corpus\n", stderr);
        return 1;
    }
    return 0;
}
