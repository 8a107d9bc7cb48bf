// Any bytes as pkrtool's JSON description: no crash or hang, and an accepted description must
// survive being written out as JSON and read again.
#include "picker_json.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray input =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<int>(size));
    picker_tab_record tab;
    if (!pickerFromJsonText(input, tab).isEmpty())
        return 0;
    picker_tab_record again;
    if (!pickerFromJsonText(pickerJsonText(tab, picker_format_version), again).isEmpty() ||
        !(again == tab))
        std::abort();
    return 0;
}
