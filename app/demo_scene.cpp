#include "demo_scene.h"

#include "picker_file.h"

#include <QDataStream>
#include <QIODevice>

namespace {

struct demo_control {
    const char* name;
    int x;
    int y;
    const char* label;
};

// Laid out as the character stands, seen from the front (its left on our right).
const demo_control demo_controls[] = {
    {"hero:head_ctrl", 100, 20, "head"},     {"hero:neck_ctrl", 100, 45, ""},
    {"hero:chest_ctrl", 100, 75, "chest"},   {"hero:spine_02_ctrl", 100, 100, ""},
    {"hero:spine_01_ctrl", 100, 120, ""},    {"hero:COG_ctrl", 100, 145, "COG"},
    {"hero:R_arm_ik_ctrl", 55, 100, ""},     {"hero:L_arm_ik_ctrl", 145, 100, ""},
    {"hero:R_hand_ctrl", 40, 140, "R hand"}, {"hero:L_hand_ctrl", 160, 140, "L hand"},
    {"hero:R_foot_ctrl", 75, 230, "R foot"}, {"hero:L_foot_ctrl", 125, 230, "L foot"},
    {"hero:root_ctrl", 100, 265, "root"},
};

constexpr QRgb demo_left = 0xFF1E64C8;
constexpr QRgb demo_right = 0xFFC81E1E;
constexpr QRgb demo_centre = 0xFFE6B400;

QRgb side_colour(const QString& name) {
    if (name.startsWith(QLatin1String("hero:L_")))
        return demo_left;
    if (name.startsWith(QLatin1String("hero:R_")))
        return demo_right;
    return demo_centre;
}

picker_tab_record body_tab() {
    picker_tab_record tab;
    tab.title = QStringLiteral("hero");
    for (const demo_control& control : demo_controls) {
        buttonAttributes button;
        button.pos = QPoint(control.x, control.y);
        button.size = 16;
        button.type = buttonAttributes::Selection;
        button.api = buttonAttributes::Mel;
        button.color = side_colour(QString::fromLatin1(control.name));
        button.tcolor = 0xFF000000;
        button.label = QString::fromLatin1(control.label);
        button.sel = QStringList{QString::fromLatin1(control.name)};
        tab.buttons.append(button);
    }
    buttonAttributes hands;
    hands.pos = QPoint(100, 175);
    hands.size = 12;
    hands.type = buttonAttributes::Selection;
    hands.api = buttonAttributes::Mel;
    hands.color = 0xFF50A050;
    hands.tcolor = 0xFF000000;
    hands.label = QStringLiteral("hands");
    hands.sel = QStringList{QStringLiteral("hero:L_hand_ctrl"), QStringLiteral("hero:R_hand_ctrl")};
    tab.buttons.append(hands);
    return tab;
}

} // namespace

QStringList demo_scene_nodes() {
    QStringList nodes{QStringLiteral("persp"), QStringLiteral("top"), QStringLiteral("front"),
                      QStringLiteral("side")};
    for (const demo_control& control : demo_controls)
        nodes.append(QString::fromLatin1(control.name));
    return nodes;
}

QMap<QString, QString> demo_scene_file_info() {
    picker_tab_set set;
    set.tabs.append(body_tab());
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    writeTabStream(out, set);
    const QString stored = QString::fromLatin1(qCompress(bytes, 9).toBase64());
    return {{QStringLiteral("TalvoraPickerData"), stored}};
}
