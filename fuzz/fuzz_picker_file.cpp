// Any bytes as a .pkr file: the reader must neither crash nor hang, and whatever it accepts
// must survive a write and a second read unchanged.
#include "picker_file.h"

#include <QBuffer>

#include <cstdint>
#include <cstdlib>

namespace {

QByteArray written(const picker_tab_record& tab) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    writePickerFile(buffer, tab);
    return bytes;
}

picker_read_result readBytes(const QByteArray& bytes, picker_tab_record& tab) {
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    return readPickerFile(buffer, tab);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray input =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<int>(size));
    picker_tab_record tab;
    if (!readBytes(input, tab).ok())
        return 0;
    picker_tab_record again;
    if (!readBytes(written(tab), again).ok() || !(again == tab))
        std::abort();
    return 0;
}
