#include "picker_file.h"

#include "picker_piece_stream.h"
#include "picker_stream.h"

#include <QBuffer>
#include <QDataStream>
#include <QIODevice>
#include <QSaveFile>

#include <algorithm>

namespace {

bool readable(const QDataStream& stream) {
    return stream.status() == QDataStream::Ok;
}

// One line for the user: where the data stopped making sense, and why.
QString describeFault(const QDataStream& stream, const stream_fault& fault, const QString& medium,
                      const QString& part) {
    if (stream.status() == QDataStream::ReadPastEnd) {
        return QStringLiteral("the %1 ends in the middle of %2").arg(medium, part);
    }
    const QString reason = fault.reason.isEmpty() ? QStringLiteral("corrupt data") : fault.reason;
    return QStringLiteral("%1 in %2").arg(reason, part);
}

void writeTabBody(QDataStream& stream, const picker_tab_record& tab) {
    writeString(stream, tab.title);
    writeString(stream, tab.backgroundKey);
    if (!tab.backgroundKey.isEmpty()) {
        writeImage(stream, tab.backgroundPng);
    }
    writeButtonList(stream, tab.buttons);
}

// Returns the part that was being read when the stream failed; empty when everything was read.
QString readTabBody(QDataStream& stream, qint32 version, picker_tab_record& tab,
                    stream_fault& fault, qint32* announced = nullptr) {
    tab.title = readString(stream, &fault);
    if (!readable(stream)) {
        return QStringLiteral("the title");
    }
    if (version > 1) {
        tab.backgroundKey = readString(stream, &fault);
        if (!readable(stream)) {
            return QStringLiteral("the background key");
        }
        if (!tab.backgroundKey.isEmpty()) {
            tab.backgroundPng = readImage(stream, &fault);
            if (!readable(stream)) {
                return QStringLiteral("the background image");
            }
        }
    }
    qint32 count = 0;
    stream >> count;
    if (!readable(stream)) {
        return QStringLiteral("the button count");
    }
    if (announced != nullptr)
        *announced = count;
    tab.buttons = readButtonRecords(stream, version, count, &fault);
    if (!readable(stream)) {
        return QStringLiteral("button %1").arg(fault.button);
    }
    return {};
}

} // namespace

bool picker_tab_record::operator==(const picker_tab_record& other) const {
    return title == other.title && backgroundKey == other.backgroundKey &&
           backgroundPng == other.backgroundPng && buttons == other.buttons;
}

bool writePickerFile(QIODevice& device, const picker_tab_record& tab) {
    QDataStream stream(&device);
    stream.setVersion(picker_file_stream_version);
    stream << picker_format_version;
    writeTabBody(stream, tab);
    return stream.status() == QDataStream::Ok;
}

QByteArray pickerFileBytes(const picker_tab_record& tab) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    writePickerFile(buffer, tab);
    return bytes;
}

bool writeFileWhole(const QString& path, const QByteArray& bytes, QString* error) {
    QSaveFile file(path);
    // QSaveFile commits after a refusal that comes only as its buffer is flushed: flush first.
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush() &&
        file.commit())
        return true;
    if (error != nullptr)
        *error = file.errorString();
    return false;
}

picker_read_result readPickerFile(const QByteArray& bytes, picker_tab_record& tab) {
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    return readPickerFile(buffer, tab);
}

picker_read_result readPickerFile(QIODevice& device, picker_tab_record& tab) {
    const QString medium = QStringLiteral("file");
    picker_read_result result;
    tab = picker_tab_record();
    if (device.atEnd()) {
        result.error = QStringLiteral("the file is empty");
        result.isPicker = false;
        return result;
    }
    QDataStream stream(&device);
    stream.setVersion(picker_file_stream_version);
    stream_fault fault;
    stream >> result.version;
    if (!readable(stream)) {
        result.error = describeFault(stream, fault, medium, QStringLiteral("the format version"));
        result.isPicker = false;
        return result;
    }
    if (result.version < 1) {
        result.error = QStringLiteral("format version %1 was never written").arg(result.version);
        result.isPicker = false;
        return result;
    }
    const QString part = readTabBody(stream, result.version, tab, fault, &result.buttonCount);
    if (!part.isEmpty()) {
        result.error = describeFault(stream, fault, medium, part);
        result.isPicker =
            part == QLatin1String("the button count") || part.startsWith(QLatin1String("button "));
    }
    return result;
}

void writeTabStream(QDataStream& stream, const picker_tab_set& set) {
    picker_tab_stream_pieces pieces(qint32(set.tabs.size()), set.current);
    for (const picker_tab_record& tab : set.tabs) {
        pieces.addTab(tab.title, tab.backgroundKey, tab.backgroundPng, qint32(tab.buttons.size()));
        for (const buttonAttributes& att : tab.buttons) {
            pieces.addButton(att);
        }
    }
    for (const picker_stream_piece& piece : pieces.take()) {
        stream.writeRawData(piece.bytes.constData(), static_cast<int>(piece.bytes.size()));
    }
}

picker_read_result readTabStream(QDataStream& stream, picker_tab_set& set) {
    const QString medium = QStringLiteral("data");
    picker_read_result result;
    stream_fault fault;
    stream >> result.version;
    if (!readable(stream)) {
        result.error = describeFault(stream, fault, medium, QStringLiteral("the format version"));
        return result;
    }
    if (result.version > picker_format_version) {
        result.error = QStringLiteral("format version %1 is newer than this picker can read")
                           .arg(result.version);
        return result;
    }
    set = picker_tab_set();
    set.version = result.version;
    qint32 count = 0;
    stream >> count;
    if (!readable(stream)) {
        result.error = describeFault(stream, fault, medium, QStringLiteral("the tab count"));
        return result;
    }
    result.tabCount = count;
    stream >> set.current;
    if (!readable(stream)) {
        result.error =
            describeFault(stream, fault, medium, QStringLiteral("the current tab index"));
        return result;
    }
    for (qint32 i = 0; i < std::min(count, picker_max_tabs); ++i) {
        qint32 index = 0;
        stream >> index;
        if (!readable(stream)) {
            result.error =
                describeFault(stream, fault, medium, QStringLiteral("the index of tab %1").arg(i));
            return result;
        }
        picker_tab_record tab;
        const QString part = readTabBody(stream, result.version, tab, fault);
        set.tabs.append(tab);
        if (!part.isEmpty()) {
            result.error = describeFault(stream, fault, medium,
                                         QStringLiteral("%1 of tab %2").arg(part).arg(i));
            return result;
        }
        ++result.wholeTabs;
    }
    if (count > picker_max_tabs)
        result.error = QStringLiteral("the data holds %1 tabs, more than the %2 a picker may have")
                           .arg(count)
                           .arg(picker_max_tabs);
    return result;
}
