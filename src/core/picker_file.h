#pragma once

#include "picker_types.h"

#include <QByteArray>
#include <QList>
#include <QString>

class QDataStream;
class QIODevice;

// Newest format version written; readers accept 1 up to it.
constexpr qint32 picker_format_version = 4;
// Stream version of .pkr files (Qt 4.0's encodings).
constexpr int picker_file_stream_version = 7;
// Tabs one tab stream may hold; more comes only from data made to be hostile.
constexpr qint32 picker_max_tabs = 1000;

// One tab as files and the scene keep it. The background is kept as the PNG bytes found in the
// data, so reading and writing back reproduces them exactly.
struct picker_tab_record {
    QString title;
    QString backgroundKey;
    QByteArray backgroundPng; // empty for no image
    button_att_list buttons;

    bool operator==(const picker_tab_record& other) const;
};

struct picker_tab_set {
    qint32 version = picker_format_version;
    qint32 current = 0;
    QList<picker_tab_record> tabs;
};

// Empty on success; otherwise a one-line description of what was wrong. What could be read before
// the fault is still handed back.
struct picker_read_result {
    qint32 version = 0;
    QString error;
    // For tab streams: the tabs the data announces (-1 before that is read) and how many of the
    // tabs handed back were read whole.
    qint32 tabCount = -1;
    qint32 wholeTabs = 0;
    // For files: the buttons the file announces (-1 before that is read).
    qint32 buttonCount = -1;
    // For files: false when the bytes are no picker file at all (empty, a format version below
    // 1, or a version, title and background that do not read whole), rather than a damaged one.
    bool isPicker = true;
    bool ok() const { return error.isEmpty(); }
};

// False when the device refused any of it.
bool writePickerFile(QIODevice& device, const picker_tab_record& tab);
picker_read_result readPickerFile(QIODevice& device, picker_tab_record& tab);
// The same for a file held whole in memory.
QByteArray pickerFileBytes(const picker_tab_record& tab);
picker_read_result readPickerFile(const QByteArray& bytes, picker_tab_record& tab);

// Writes bytes to path aside and renames them over it only once all of them reached the disk,
// so a refused write (a full disk) leaves the old file as it was. On failure error, if given,
// tells why.
bool writeFileWhole(const QString& path, const QByteArray& bytes, QString* error = nullptr);

// The tab stream of all tabs; the caller sets the stream's version. A newer format version than
// this program knows is refused with nothing read past it (result version tells which); of more
// than picker_max_tabs tabs, that many are read and the rest refused.
void writeTabStream(QDataStream& stream, const picker_tab_set& set);
picker_read_result readTabStream(QDataStream& stream, picker_tab_set& set);

// The scene's fileInfo entries: the tab stream, and each background image under the prefix and
// its key.
constexpr char picker_scene_data_key[] = "TalvoraPickerData";
constexpr char picker_scene_image_prefix[] = "TalvoraPickerImage_";
