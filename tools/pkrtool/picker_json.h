#pragma once

#include "picker_file.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

// The JSON form of one picker file. Every field of the file is kept: colours as "#AARRGGBB",
// the background as base64 of its exact PNG bytes, null strings as JSON null, so that a
// description turns back into the same bytes. "formatVersion" tells what a file was read as;
// building always writes the current format.
QJsonObject pickerToJson(const picker_tab_record& tab, qint32 formatVersion);
QByteArray pickerJsonText(const picker_tab_record& tab, qint32 formatVersion);

// Empty on success, otherwise one line saying where and what: "buttons[2].color: ...".
QString pickerFromJson(const QJsonObject& object, picker_tab_record& tab);
// As above, from JSON text; syntax errors say "line L, column C: ...".
QString pickerFromJsonText(const QByteArray& text, picker_tab_record& tab);
