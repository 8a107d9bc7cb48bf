// Runs a fuzz target once over every file of the corpus folders given, for builds without
// libFuzzer: the sanitizers watch each run, and a failed run ends the program as it would the
// fuzzer.
#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char* argv[]) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s CORPUS_DIRECTORY...\n", argv[0]);
        return 2;
    }
    int runs = 0;
    for (int i = 1; i < argc; ++i) {
        const QDir folder(QFile::decodeName(argv[i]));
        if (!folder.exists()) {
            std::fprintf(stderr, "%s: no corpus folder %s\n", argv[0], argv[i]);
            return 2;
        }
        const QFileInfoList inputs = folder.entryInfoList(QDir::Files, QDir::Name);
        for (const QFileInfo& input : inputs) {
            QFile file(input.filePath());
            if (!file.open(QIODevice::ReadOnly)) {
                std::fprintf(stderr, "%s: cannot read %s\n", argv[0], qPrintable(input.filePath()));
                return 2;
            }
            const QByteArray bytes = file.readAll();
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                                   static_cast<std::size_t>(bytes.size()));
            ++runs;
        }
    }
    std::printf("%d inputs ran\n", runs);
    return runs > 0 ? 0 : 1;
}
