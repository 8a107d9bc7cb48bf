// Any bytes as a .pkr file: the reader must neither crash nor hang, and whatever it accepts
// must survive a write and a second read unchanged.
#include "picker_file.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray input =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<int>(size));
    picker_tab_record tab;
    if (!readPickerFile(input, tab).ok())
        return 0;
    picker_tab_record again;
    if (!readPickerFile(pickerFileBytes(tab), again).ok() || !(again == tab))
        std::abort();
    return 0;
}
