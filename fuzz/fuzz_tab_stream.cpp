// Any bytes as the tab stream kept in a scene: no crash or hang, and an accepted tab set must
// survive a write and a second read unchanged.
#include "picker_file.h"

#include <QBuffer>
#include <QDataStream>

#include <cstdint>
#include <cstdlib>

namespace {

bool sameTabs(const picker_tab_set& a, const picker_tab_set& b) {
    return a.current == b.current && a.tabs == b.tabs;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray input =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<int>(size));
    picker_tab_set set;
    QDataStream in(input);
    if (!readTabStream(in, set).ok())
        return 0;

    QByteArray bytes;
    {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        writeTabStream(out, set);
    }
    picker_tab_set again;
    QDataStream reread(bytes);
    if (!readTabStream(reread, again).ok() || !sameTabs(set, again))
        std::abort();
    return 0;
}
