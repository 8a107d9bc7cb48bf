#include "picker_json.h"

#include "png_chunks.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QJsonValue>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

const QLatin1String key_format_version("formatVersion");
const QLatin1String key_title("title");
const QLatin1String key_background_key("backgroundKey");
const QLatin1String key_background("background");
const QLatin1String key_buttons("buttons");
const QLatin1String key_pos("pos");
const QLatin1String key_size("size");
const QLatin1String key_type("type");
const QLatin1String key_api("api");
const QLatin1String key_color("color");
const QLatin1String key_tcolor("tcolor");
const QLatin1String key_label("label");
const QLatin1String key_sel("sel");

const QLatin1String type_selection("selection");
const QLatin1String type_command("command");
const QLatin1String api_mel("mel");
const QLatin1String api_python("python");
constexpr QRgb default_label_color = 0xFF000000;

bool isHexDigit(QChar c) {
    const char16_t unit = c.unicode();
    return (unit >= u'0' && unit <= u'9') || (unit >= u'a' && unit <= u'f') ||
           (unit >= u'A' && unit <= u'F');
}

QJsonValue stringOrNull(const QString& text) {
    return text.isNull() ? QJsonValue(QJsonValue::Null) : QJsonValue(text);
}

QString colorName(QRgb color) {
    return QLatin1Char('#') +
           QString::number(color, 16).rightJustified(8, QLatin1Char('0')).toUpper();
}

QJsonValue enumName(qint32 value, QLatin1String zero, QLatin1String one) {
    if (value == 0)
        return QJsonValue(zero);
    if (value == 1)
        return QJsonValue(one);
    return QJsonValue(value);
}

QJsonObject buttonToJson(const buttonAttributes& button) {
    QJsonArray names;
    for (const QString& name : button.sel)
        names.append(stringOrNull(name));
    QJsonObject object;
    object.insert(key_pos, QJsonArray{button.pos.x(), button.pos.y()});
    object.insert(key_size, button.size);
    object.insert(key_type, enumName(button.type, type_selection, type_command));
    object.insert(key_api, enumName(button.api, api_mel, api_python));
    object.insert(key_color, colorName(button.color));
    object.insert(key_tcolor, colorName(button.tcolor));
    object.insert(key_label, stringOrNull(button.label));
    object.insert(key_sel, names);
    return object;
}

// Reads one description, keeping the first fault with the place it was found.
class picker_json_reader {
public:
    QString error;

    bool fail(const QString& where, const QString& what) {
        if (error.isEmpty())
            error = where + QLatin1String(": ") + what;
        return false;
    }

    bool checkKeys(const QJsonObject& object, const QString& where,
                   const QList<QLatin1String>& required, const QList<QLatin1String>& optional) {
        for (const QLatin1String& key : required) {
            if (!object.contains(key))
                return fail(where, QStringLiteral("missing \"%1\"").arg(key));
        }
        for (auto it = object.begin(); it != object.end(); ++it) {
            const QString key = it.key();
            const auto isKey = [&key](QLatin1String known) { return key == known; };
            if (std::none_of(required.begin(), required.end(), isKey) &&
                std::none_of(optional.begin(), optional.end(), isKey))
                return fail(where, QStringLiteral("unknown key \"%1\"").arg(key));
        }
        return true;
    }

    bool readInt(const QJsonValue& value, const QString& where, qint32& out) {
        const double number = value.toDouble();
        if (!value.isDouble() || std::floor(number) != number ||
            number < double(std::numeric_limits<qint32>::min()) ||
            number > double(std::numeric_limits<qint32>::max()))
            return fail(where, QStringLiteral("expected a whole number in 32 bits"));
        out = qint32(number);
        return true;
    }

    bool readString(const QJsonValue& value, const QString& where, QString& out) {
        if (value.isNull() || value.isUndefined()) {
            out = QString();
            return true;
        }
        if (!value.isString())
            return fail(where, QStringLiteral("expected a string or null"));
        out = value.toString();
        // "" and null are different strings in the file.
        if (out.isNull())
            out = QString(QLatin1String(""));
        return true;
    }

    bool readColor(const QJsonValue& value, const QString& where, QRgb& out) {
        const QString text = value.toString();
        const QString digits = text.mid(1);
        if (!value.isString() || !text.startsWith(QLatin1Char('#')) ||
            (digits.size() != 8 && digits.size() != 6) ||
            !std::all_of(digits.begin(), digits.end(), isHexDigit))
            return fail(where, QStringLiteral("expected a colour \"#AARRGGBB\" or \"#RRGGBB\""));
        const QRgb color = digits.toUInt(nullptr, 16);
        out = digits.size() == 6 ? (0xff000000u | color) : color;
        return true;
    }

    bool readEnum(const QJsonValue& value, const QString& where, QLatin1String zero,
                  QLatin1String one, qint32& out) {
        if (value == QJsonValue(zero))
            out = 0;
        else if (value == QJsonValue(one))
            out = 1;
        else
            return fail(where, QStringLiteral("expected \"%1\" or \"%2\"").arg(zero, one));
        return true;
    }

    bool readPoint(const QJsonValue& value, const QString& where, QPoint& out) {
        const QJsonArray pair = value.toArray();
        if (!value.isArray() || pair.size() != 2)
            return fail(where, QStringLiteral("expected [x, y]"));
        qint32 x = 0;
        qint32 y = 0;
        if (!readInt(pair.at(0), where + QLatin1String("[0]"), x) ||
            !readInt(pair.at(1), where + QLatin1String("[1]"), y))
            return false;
        out = QPoint(x, y);
        return true;
    }

    bool readNames(const QJsonValue& value, const QString& where, QStringList& out) {
        const QJsonArray names = value.toArray();
        if (!value.isArray())
            return fail(where, QStringLiteral("expected an array of names"));
        // A record without names is dropped by every reader, so it would vanish from the file.
        if (names.isEmpty())
            return fail(where, QStringLiteral("a button needs at least one name or a script"));
        out.clear();
        for (int i = 0; i < names.size(); ++i) {
            QString name;
            if (!readString(names.at(i), QStringLiteral("%1[%2]").arg(where).arg(i), name))
                return false;
            out.append(name);
        }
        return true;
    }

    bool readButton(const QJsonValue& value, const QString& where, buttonAttributes& button) {
        const QJsonObject object = value.toObject();
        if (!value.isObject())
            return fail(where, QStringLiteral("expected an object"));
        const auto field = [&where](QLatin1String key) { return where + QLatin1Char('.') + key; };
        // Left out: MEL, no label, and on a selection button the toolbox's black label colour;
        // a command button's label colour has no default that would read the same.
        const bool command = object.value(key_type) == QJsonValue(type_command);
        QList<QLatin1String> required{key_pos, key_size, key_type, key_color, key_sel};
        QList<QLatin1String> optional{key_api, key_label};
        (command ? required : optional).append(key_tcolor);
        button.api = buttonAttributes::Mel;
        button.tcolor = default_label_color;
        button.label = QString();
        return checkKeys(object, where, required, optional) &&
               readPoint(object.value(key_pos), field(key_pos), button.pos) &&
               readInt(object.value(key_size), field(key_size), button.size) &&
               readEnum(object.value(key_type), field(key_type), type_selection, type_command,
                        button.type) &&
               (!object.contains(key_api) ||
                readEnum(object.value(key_api), field(key_api), api_mel, api_python, button.api)) &&
               readColor(object.value(key_color), field(key_color), button.color) &&
               (!object.contains(key_tcolor) ||
                readColor(object.value(key_tcolor), field(key_tcolor), button.tcolor)) &&
               readString(object.value(key_label), field(key_label), button.label) &&
               readNames(object.value(key_sel), field(key_sel), button.sel);
    }

    bool readBackground(const QJsonValue& value, picker_tab_record& tab) {
        if (value.isNull() || value.isUndefined()) {
            tab.backgroundPng.clear();
            return true;
        }
        const auto decoded = QByteArray::fromBase64Encoding(
            value.toString().toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
        if (!value.isString() || !decoded)
            return fail(key_background, QStringLiteral("expected base64 text or null"));
        const png_layout layout = inspectPng(decoded.decoded);
        if (!layout.ok())
            return fail(key_background, layout.error);
        // Only a keyed image is written to a file.
        if (tab.backgroundKey.isEmpty())
            return fail(key_background, QStringLiteral("an image needs a \"backgroundKey\""));
        tab.backgroundPng = decoded.decoded;
        return true;
    }

    bool readPicker(const QJsonObject& object, picker_tab_record& tab) {
        qint32 formatVersion = 0;
        if (!checkKeys(object, QStringLiteral("picker"), {key_title, key_buttons},
                       {key_format_version, key_background_key, key_background}) ||
            (object.contains(key_format_version) &&
             !readInt(object.value(key_format_version), key_format_version, formatVersion)) ||
            !readString(object.value(key_title), key_title, tab.title) ||
            !readString(object.value(key_background_key), key_background_key, tab.backgroundKey) ||
            !readBackground(object.value(key_background), tab))
            return false;
        const QJsonValue buttons = object.value(key_buttons);
        if (!buttons.isArray())
            return fail(key_buttons, QStringLiteral("expected an array of buttons"));
        const QJsonArray list = buttons.toArray();
        tab.buttons.clear();
        tab.buttons.reserve(list.size());
        for (int i = 0; i < list.size(); ++i) {
            buttonAttributes button;
            if (!readButton(list.at(i), QStringLiteral("buttons[%1]").arg(i), button))
                return false;
            tab.buttons.append(button);
        }
        return true;
    }
};

// QJsonParseError counts UTF-8 bytes; people count lines and characters.
QString placeOf(const QByteArray& text, int offset) {
    const QByteArray before = text.left(offset);
    const int line = before.count('\n') + 1;
    const int column = QString::fromUtf8(before.mid(before.lastIndexOf('\n') + 1)).size() + 1;
    return QStringLiteral("line %1, column %2").arg(line).arg(column);
}

} // namespace

QJsonObject pickerToJson(const picker_tab_record& tab, qint32 formatVersion) {
    QJsonArray buttons;
    for (const buttonAttributes& button : tab.buttons)
        buttons.append(buttonToJson(button));
    QJsonObject object;
    object.insert(key_format_version, formatVersion);
    object.insert(key_title, stringOrNull(tab.title));
    object.insert(key_background_key, stringOrNull(tab.backgroundKey));
    object.insert(key_background,
                  tab.backgroundPng.isEmpty()
                      ? QJsonValue(QJsonValue::Null)
                      : QJsonValue(QString::fromLatin1(tab.backgroundPng.toBase64())));
    object.insert(key_buttons, buttons);
    return object;
}

QByteArray pickerJsonText(const picker_tab_record& tab, qint32 formatVersion) {
    return QJsonDocument(pickerToJson(tab, formatVersion)).toJson(QJsonDocument::Indented);
}

QString pickerFromJson(const QJsonObject& object, picker_tab_record& tab) {
    picker_json_reader reader;
    reader.readPicker(object, tab);
    return reader.error;
}

QString pickerFromJsonText(const QByteArray& text, picker_tab_record& tab) {
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(text, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return placeOf(text, parseError.offset) + QLatin1String(": ") + parseError.errorString();
    if (!document.isObject())
        return QStringLiteral("line 1, column 1: expected a JSON object");
    return pickerFromJson(document.object(), tab);
}
