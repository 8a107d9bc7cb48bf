// Any bytes as a clipboard attribute list: no crash or hang, and the buttons read must survive
// a write and a second read unchanged.
#include "picker_types.h"

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray input =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<int>(size));
    QDataStream in(input);
    const button_att_list buttons = readButtonAttributes(in);

    QByteArray bytes;
    {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        writeButtonAttributes(out, buttons);
    }
    QDataStream reread(bytes);
    if (readButtonAttributes(reread) != buttons)
        std::abort();
    return 0;
}
