#!/usr/bin/env python3
"""Writes the demo content: the biped rig, the scene that references it twice, the picker's
background image and the picker itself.

One layout table drives everything, so the picker's buttons, the body drawn under them and the
rig's control positions cannot drift apart. Run from anywhere; needs python3 and ImageMagick.

    samples/demo/make_demo.py          write every file
    samples/demo/make_demo.py --check  verify the files against the layout, write nothing
"""

import base64
import json
import math
import re
import subprocess
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent
RIG = "biped_rig.ma"
SCENE = "demo_scene.ma"
BACKGROUND = "demo_background.png"
PICKER = "demo_picker.json"
NAMESPACE = "hero"

WIDTH, HEIGHT = 600, 800
MID = WIDTH // 2

# Button colours (ARGB): the character's left is blue, its right red, the centre yellow, the
# root and COG green; fingers and face use lighter tones of their side so they read as detail.
LEFT, LEFT_LIGHT = "#FF5B8FD6", "#FF8DB3E8"
RIGHT, RIGHT_LIGHT = "#FFD8665E", "#FFE8968F"
CENTRE, CENTRE_LIGHT = "#FFE3C24A", "#FFEBD58A"
GROUND = "#FF7CC46A"
COMMAND = "#FF4A505A"
BLACK, WHITE = "#FF000000", "#FFFFFFFF"

# Background palette: calm, dark and low in contrast so the buttons carry the colour.
BACKDROP_TOP, BACKDROP_BOTTOM = "#303238", "#25272b"
PANEL_FILL, PANEL_EDGE = "#2b2e33", "#3d4149"
BODY = "#474d58"
BODY_DETAIL = "#3c414b"
SHADOW = "#2a2c31"
TEXT = "#8b919c"
TEXT_DIM = "#6d737e"

# Panels: (title, x0, y0, x1, y1).
FACE_PANEL = ("FACE", 15, 20, 150, 215)
SETTINGS_PANEL = ("SETTINGS", 450, 20, 585, 140)
R_HAND_PANEL = ("R HAND", 15, 470, 150, 700)
L_HAND_PANEL = ("L HAND", 450, 470, 585, 700)


def mirror_body(x):
    return WIDTH - x


def mirror_panel(x, panel):
    return panel[1] + panel[3] - x


# World positions in centimetres: the character faces +z and its left is +x. The body maps
# from picker space at a quarter centimetre a pixel, feet on the ground at y 720; the face and
# hand panels are enlarged views, mapped back onto the head and the wrists.
def body_world(x, y, z=0.0):
    return ((x - MID) * 0.25, (720 - y) * 0.25, z)


def face_world(x, y, z=12.0):
    fx, fy = x - 82.5, y - 125
    hy = body_world(MID, 90)[1]
    return (fx * 0.2, hy - fy * 0.2, z)


def hand_world(side, x, y):
    wrist = body_world(197 if side == "R" else mirror_body(197), 385)
    px = x - 82.5 if side == "R" else x - 517.5
    return (wrist[0] + px * 0.12, wrist[1] - (y - 500) * 0.12, 4.0)


# Centre controls: name, parent control (None is controls_grp), picker position (the button's
# centre), button size, label, colour, world position.
CENTRE_CONTROLS = [
    ("root_ctrl", None, (MID, 722), 16, "root", GROUND, (0.0, 0.0, 0.0)),
    ("COG_ctrl", "root_ctrl", (MID, 362), 20, "COG", GROUND, body_world(MID, 362)),
    ("hips_ctrl", "COG_ctrl", (MID, 405), 16, "hips", CENTRE, body_world(MID, 405)),
    ("spine_01_ctrl", "COG_ctrl", (MID, 320), 14, "", CENTRE, body_world(MID, 320)),
    ("spine_02_ctrl", "spine_01_ctrl", (MID, 288), 14, "", CENTRE, body_world(MID, 288)),
    ("spine_03_ctrl", "spine_02_ctrl", (MID, 256), 14, "", CENTRE, body_world(MID, 256)),
    ("chest_ctrl", "spine_03_ctrl", (MID, 212), 16, "chest", CENTRE, body_world(MID, 212)),
    ("neck_ctrl", "chest_ctrl", (MID, 152), 14, "neck", CENTRE, body_world(MID, 152)),
    ("head_ctrl", "neck_ctrl", (MID, 88), 18, "head", CENTRE, body_world(MID, 88)),
]

FACE_CENTRE = [
    ("eyes_ctrl", "head_ctrl", (82, 68), 12, "eyes", CENTRE_LIGHT, face_world(82, 68, 40.0)),
    ("upper_lip_ctrl", "head_ctrl", (82, 149), 12, "", CENTRE_LIGHT, face_world(82, 149)),
    ("jaw_ctrl", "head_ctrl", (82, 192), 14, "jaw", CENTRE, face_world(82, 192, 6.0)),
    ("lower_lip_ctrl", "jaw_ctrl", (82, 166), 12, "", CENTRE_LIGHT, face_world(82, 166)),
]

# Right-side face controls (part, parent, position, size, label); the left side mirrors them
# inside the face panel.
FACE_SIDE = [
    ("brow", "head_ctrl", (58, 92), 12, ""),
    ("eye", "head_ctrl", (58, 112), 12, ""),
    ("mouth_corner", "head_ctrl", (55, 157), 12, ""),
]

# Right-side body controls (part, parent, position, size, label; a parent without "_ctrl" is a
# part of the same side, None is root_ctrl); the left side mirrors them across the centre line.
BODY_SIDE = [
    ("clavicle", "chest_ctrl", (270, 180), 12, ""),
    ("shoulder_FK", "clavicle", (240, 197), 14, "FK"),
    ("elbow_FK", "shoulder_FK", (213, 290), 14, "FK"),
    ("wrist_FK", "elbow_FK", (197, 385), 14, "FK"),
    ("arm_IK", None, (189, 428), 18, "IK"),
    ("elbow_pole", None, (180, 290), 12, ""),
    ("hip_FK", "hips_ctrl", (270, 452), 14, "FK"),
    ("knee_FK", "hip_FK", (266, 555), 14, "FK"),
    ("ankle_FK", "knee_FK", (262, 650), 14, "FK"),
    ("toe", "ankle_FK", (250, 708), 12, ""),
    ("leg_IK", None, (258, 684), 18, "IK"),
    ("knee_pole", None, (232, 555), 12, ""),
]
POLE_DEPTH = {"elbow_pole": -30.0, "knee_pole": 40.0, "toe": 12.0}

# Settings: (control, right-side picker position, label); the left column mirrors the right.
SETTINGS = [
    ("arm_settings", (492, 78), "arm"),
    ("leg_settings", (492, 112), "leg"),
]

# Right hand, fingers pointing up, thumb towards the body's centre line: finger name, column x,
# fingertip y. Segment 01 sits at the base, 02 near the tip.
FINGERS = [("pinky", 40, 540), ("ring", 62, 520), ("middle", 84, 510), ("index", 106, 520)]
FINGER_BASE_Y = 588
THUMB = [(120, 632), (132, 602)]
PALM = (30, 598, 116, 672)


def side_name(side, part):
    return f"{side}_{part}_ctrl"


def build_controls():
    """Every control in rig order: dicts with name, parent, pos, size, label, colour, world."""
    controls = []

    def add(name, parent, pos, size, label, colour, world):
        controls.append(
            dict(name=name, parent=parent, pos=pos, size=size, label=label, colour=colour,
                 world=world))

    for name, parent, pos, size, label, colour, world in CENTRE_CONTROLS:
        add(name, parent, pos, size, label, colour, world)
    for name, parent, pos, size, label, colour, world in FACE_CENTRE:
        add(name, parent, pos, size, label, colour, world)

    for side, colour, light in (("L", LEFT, LEFT_LIGHT), ("R", RIGHT, RIGHT_LIGHT)):
        for part, parent, (x, y), size, label in FACE_SIDE:
            px = x if side == "R" else mirror_panel(x, FACE_PANEL)
            world = face_world(px, y)
            add(side_name(side, part), parent, (px, y), size, label, light, world)

        for part, parent, (x, y), size, label in BODY_SIDE:
            px = x if side == "R" else mirror_body(x)
            parent_name = parent if parent is None or parent.endswith("_ctrl") else side_name(
                side, parent)
            world = body_world(px, y, POLE_DEPTH.get(part, 0.0))
            add(side_name(side, part), parent_name or "root_ctrl", (px, y), size, label, colour,
                world)

        for part, (x, y), label in SETTINGS:
            px = x if side == "R" else mirror_panel(x, SETTINGS_PANEL)
            anchor = body_world(197 if side == "R" else mirror_body(197), 385 if part.startswith(
                "arm") else 650)
            world = (anchor[0] * 1.6, anchor[1], -8.0)
            add(side_name(side, part), "root_ctrl", (px, y), 16, label, colour, world)

        def hand_x(x):
            return x if side == "R" else mirror_body(x)

        thumb_parent = side_name(side, "wrist_FK")
        for index, (x, y) in enumerate(THUMB, start=1):
            name = side_name(side, f"thumb_{index:02d}")
            add(name, thumb_parent, (hand_x(x), y), 12, "", light, hand_world(side, hand_x(x), y))
            thumb_parent = name
        for finger, x, tip in FINGERS:
            parent = side_name(side, "wrist_FK")
            for index, y in enumerate((FINGER_BASE_Y, tip + 16), start=1):
                name = side_name(side, f"{finger}_{index:02d}")
                add(name, parent, (hand_x(x), y), 12, "", light, hand_world(side, hand_x(x), y))
                parent = name
    return controls


def hand_x_for(panel, x):
    return x if panel is R_HAND_PANEL else mirror_body(x)


# --- Maya ASCII ------------------------------------------------------------------------------

def circle_cvs(radius, normal):
    """The eight cage points of Maya's default degree-3 circle, scaled; 3 repeated to close."""
    # Maya's circle: diagonal cage points at 0.7836 r per axis, axial ones at 1.1082 r.
    cage = []
    for i in range(8):
        angle = math.radians(-45 - i * 45)
        scale = 1.1081941875543879 * radius
        cage.append((scale * math.cos(angle), scale * math.sin(angle)))
    cage += cage[:3]
    result = []
    for a, b in cage:
        if normal == "y":
            result.append((a, 0.0, b))
        elif normal == "z":
            result.append((a, b, 0.0))
        else:
            result.append((0.0, a, b))
    return result


def fmt(value):
    text = f"{value:.4f}".rstrip("0").rstrip(".")
    return "0" if text in ("-0", "") else text


# Maya's colour index per side, matching the picker: blue, red, yellow, green.
VIEWPORT_COLOUR = {LEFT: 6, LEFT_LIGHT: 18, RIGHT: 13, RIGHT_LIGHT: 20, CENTRE: 17,
                   CENTRE_LIGHT: 22, GROUND: 14}


def control_shape(name, radius, normal, colour):
    lines = [f'createNode nurbsCurve -n "{name}Shape" -p "{name}";',
             '\tsetAttr -k off ".v";',
             '\tsetAttr ".ove" yes;',
             f'\tsetAttr ".ovc" {VIEWPORT_COLOUR[colour]};',
             '\tsetAttr ".cc" -type "nurbsCurve" ',
             "\t\t3 8 2 no 3",
             "\t\t13 -2 -1 0 1 2 3 4 5 6 7 8 9 10",
             "\t\t11"]
    for x, y, z in circle_cvs(radius, normal):
        lines.append(f"\t\t{fmt(x)} {fmt(y)} {fmt(z)}")
    lines.append("\t\t;")
    return lines


def shape_for(name):
    """Radius and facing of a control's circle, by what it drives."""
    if name == "root_ctrl":
        return 30.0, "y"
    if name == "COG_ctrl":
        return 22.0, "y"
    if name in ("hips_ctrl", "chest_ctrl") or name.startswith("spine_"):
        return 16.0, "y"
    if any(part in name for part in ("thumb", "index", "middle", "ring", "pinky")):
        return 0.8, "x"
    if name in ("neck_ctrl", "head_ctrl"):
        return 10.0, "y"
    if "IK" in name or "settings" in name:
        return 6.0, "y"
    if "FK" in name or "clavicle" in name:
        return 6.0, "x"
    if "pole" in name or "toe" in name:
        return 3.0, "z"
    return 1.5, "z"


def write_rig(controls):
    world = {c["name"]: c["world"] for c in controls}
    lines = ["//Maya ASCII 2025 scene",
             f"//Name: {RIG}",
             "//Codeset: UTF-8",
             'requires maya "2025";',
             "currentUnit -l centimeter -a degree -t film;",
             'fileInfo "application" "maya";',
             'fileInfo "product" "Maya 2025";',
             'fileInfo "version" "2025";',
             'fileInfo "UUID" "7A1C4E2B-4D55-8E3F-6B21-9C0D5E7F1A23";',
             'createNode transform -n "rig_grp";',
             'createNode transform -n "controls_grp" -p "rig_grp";',
             'createNode transform -n "skeleton_grp" -p "rig_grp";',
             '\tsetAttr ".v" no;',
             'createNode transform -n "geometry_grp" -p "rig_grp";']
    paths = {None: "controls_grp"}
    for control in controls:
        name, parent = control["name"], control["parent"]
        offset = name[: -len("_ctrl")] + "_offset"
        base = (0.0, 0.0, 0.0) if parent is None else world[parent]
        local = [a - b for a, b in zip(control["world"], base)]
        parent_node = paths[parent]
        lines.append(f'createNode transform -n "{offset}" -p "{parent_node}";')
        if any(abs(v) > 1e-9 for v in local):
            lines.append('\tsetAttr ".t" -type "double3" ' + " ".join(fmt(v) for v in local) + " ;")
        lines.append(f'createNode transform -n "{name}" -p "{offset}";')
        radius, normal = shape_for(name)
        lines += control_shape(name, radius, normal, control["colour"])
        paths[name] = name
    lines.append(f"// End of {RIG}")
    return "\n".join(lines) + "\n"


def write_scene():
    lines = ["//Maya ASCII 2025 scene", f"//Name: {SCENE}", "//Codeset: UTF-8"]
    for ns in ("hero", "villain"):
        lines.append(f'file -rdi 1 -ns "{ns}" -rfn "{ns}RN" -op "v=0;" -typ "mayaAscii" "{RIG}";')
    for ns in ("hero", "villain"):
        lines.append(
            f'file -r -ns "{ns}" -dr 1 -rfn "{ns}RN" -op "v=0;" -typ "mayaAscii" "{RIG}";')
    lines += ['requires maya "2025";',
              "currentUnit -l centimeter -a degree -t film;",
              'fileInfo "application" "maya";',
              'fileInfo "product" "Maya 2025";',
              'fileInfo "version" "2025";',
              'fileInfo "UUID" "3F9B2D71-45A8-1C6E-90D4-B8E27A5C0F16";']
    # The villain stands one metre to the hero's left: a reference edit on its root control.
    edits = {
        "hero": ['\t\t"heroRN"', '\t\t"heroRN" 0;'],
        "villain": ['\t\t"villainRN"',
                    '\t\t"villainRN" 0',
                    '\t\t"villainRN" 1',
                    '\t\t2 "|villain:rig_grp|villain:controls_grp|villain:root_offset'
                    '|villain:root_ctrl" "translate" " -type \\"double3\\" 100 0 0";'],
    }
    for ns in ("hero", "villain"):
        lines.append(f'createNode reference -n "{ns}RN";')
        lines.append('\tsetAttr ".ed" -type "dataReferenceEdits" ')
        lines += edits[ns]
        lines.append('\tsetAttr ".ptag" -type "string" "";')
        lines.append("lockNode -l 1 ;")
    lines.append(f"// End of {SCENE}")
    return "\n".join(lines) + "\n"


# --- Background ------------------------------------------------------------------------------

def limb(points, width):
    path = " ".join(f"{x},{y}" for x, y in points)
    return ["-stroke", BODY, "-strokewidth", str(width), "-fill", "none",
            "-draw", f"stroke-linecap round stroke-linejoin round polyline {path}"]


def text(x, y, words, colour=TEXT, size=11, bold=True):
    font = "DejaVu-Sans-Bold" if bold else "DejaVu-Sans"
    return ["-stroke", "none", "-fill", colour, "-font", font, "-pointsize", str(size),
            "-draw", f"text {x},{y} '{words}'"]


def panel(box):
    title, x0, y0, x1, y1 = box
    return (["-stroke", PANEL_EDGE, "-strokewidth", "1", "-fill", PANEL_FILL,
             "-draw", f"roundrectangle {x0},{y0} {x1},{y1} 8,8"]
            + text(x0 + 10, y0 + 18, title))


def hand(side):
    hx = lambda x: hand_x_for(side, x)  # noqa: E731
    x0, y0, x1, y1 = PALM
    ax, bx = sorted((hx(x0), hx(x1)))
    args = ["-stroke", "none", "-fill", BODY,
            "-draw", f"roundrectangle {ax},{y0} {bx},{y1} 12,12"]
    for _, x, tip in FINGERS:
        args += ["-draw", f"roundrectangle {hx(x) - 8},{tip} {hx(x) + 8},{y0 + 12} 8,8"]
    thumb = [(112, 660), THUMB[0], THUMB[1], (134, 592)]
    args += limb([(hx(x), y) for x, y in thumb], 16)
    return args


def background_args():
    args = ["-size", f"{WIDTH}x{HEIGHT}", f"gradient:{BACKDROP_TOP}-{BACKDROP_BOTTOM}"]
    for box in (FACE_PANEL, SETTINGS_PANEL, R_HAND_PANEL, L_HAND_PANEL):
        args += panel(box)

    # Ground shadow under the feet, then the body as one flat silhouette.
    args += ["-stroke", "none", "-fill", SHADOW, "-draw", f"ellipse {MID},712 95,14 0,360"]
    args += ["-fill", BODY, "-draw", f"ellipse {MID},92 38,50 0,360",
             "-draw", f"rectangle {MID - 14},130 {MID + 14},170",
             "-draw", "polygon 236,168 364,168 352,300 344,392 256,392 248,300",
             "-draw", "roundrectangle 250,372 350,440 14,14"]
    for sign in (-1, 1):
        def x(v):
            return MID + sign * (MID - v)
        args += limb([(x(246), 180), (x(213), 290), (x(197), 385)], 26)
        args += ["-stroke", "none", "-fill", BODY, "-draw", f"ellipse {x(190)},426 14,22 0,360"]
        args += limb([(x(272), 430), (x(266), 555), (x(262), 662)], 34)
        args += limb([(x(262), 668), (x(248), 704)], 22)

    # Face: a calm outline of features for orientation, drawn a shade darker than the face.
    fx = 82
    args += ["-stroke", "none", "-fill", BODY, "-draw", f"ellipse {fx},125 48,66 0,360",
             "-fill", BODY_DETAIL,
             "-draw", f"ellipse {fx - 24},112 11,6 0,360",
             "-draw", f"ellipse {fx + 24},112 11,6 0,360",
             "-draw", f"ellipse {fx},157 28,7 0,360"]
    for cx in (fx - 25, fx + 25):
        args += ["-stroke", BODY_DETAIL, "-strokewidth", "4", "-fill", "none",
                 "-draw", f"stroke-linecap round line {cx - 12},93 {cx + 12},{93}"]
    args += hand(R_HAND_PANEL) + hand(L_HAND_PANEL)

    # Captions: the settings columns, the spine group, and a rule above the command row.
    args += text(486, 58, "R", TEXT_DIM, 10) + text(542, 58, "L", TEXT_DIM, 10)
    args += text(340, 292, "spine", TEXT_DIM, 9, bold=False)
    args += ["-stroke", PANEL_EDGE, "-strokewidth", "1", "-draw", "line 150,742 450,742"]
    return args


def write_background(path):
    subprocess.run(["convert"] + background_args() + ["-strip", f"PNG24:{path}"], check=True)


# --- Picker ----------------------------------------------------------------------------------

def selection(names, pos, size, label, colour, tcolour=BLACK):
    return {"pos": list(pos), "size": size, "type": "selection", "api": "mel",
            "color": colour, "tcolor": tcolour, "label": label,
            "sel": [f"{NAMESPACE}:{n}" for n in names]}


def command(api, script, pos, label):
    return {"pos": list(pos), "size": 22, "type": "command", "api": api,
            "color": COMMAND, "tcolor": WHITE, "label": label, "sel": [script]}


def picker_buttons(controls):
    buttons = [selection([c["name"]], c["pos"], c["size"], c["label"], c["colour"])
               for c in controls]
    by_name = {c["name"]: c for c in controls}

    def names(predicate):
        return [c["name"] for c in controls if predicate(c["name"])]

    fingers = ("thumb", "index", "middle", "ring", "pinky")
    face = {"eyes_ctrl", "jaw_ctrl", "upper_lip_ctrl", "lower_lip_ctrl"}
    for side, colour in (("R", RIGHT_LIGHT), ("L", LEFT_LIGHT)):
        hand_panel = R_HAND_PANEL if side == "R" else L_HAND_PANEL
        group = names(lambda n: n.startswith(side + "_") and any(f in n for f in fingers))
        buttons.append(selection(group, (hand_panel[3] - 17, hand_panel[2] + 14), 14, "", colour))
    buttons.append(selection(
        names(lambda n: n in face or re.match(r"[LR]_(eye|brow|mouth_corner)_ctrl$", n)),
        (FACE_PANEL[3] - 17, FACE_PANEL[2] + 14), 14, "", CENTRE_LIGHT))
    spine_x = by_name["spine_02_ctrl"]["pos"][0] + 30
    buttons.append(selection(names(lambda n: n.startswith("spine_")),
                             (spine_x, by_name["spine_02_ctrl"]["pos"][1]), 14, "", CENTRE))

    everything = [f"{NAMESPACE}:{c['name']}" for c in controls]
    select_all = "select -r " + " ".join(everything) + ";"
    key_all = ("import maya.cmds as cmds\n"
               "controls = [" + ", ".join(f'"{n}"' for n in everything) + "]\n"
               "cmds.setKeyframe(controls)\n")
    reset = "".join(f"xform -os -t 0 0 0 -ro 0 0 0 {n};\n" for n in everything)
    buttons += [command("mel", select_all, (205, 766), "select all"),
                command("python", key_all, (300, 766), "key all"),
                command("mel", reset, (395, 766), "reset pose")]
    return buttons


def write_picker(controls, png):
    picker = {"title": "Biped", "backgroundKey": "1001",
              "background": base64.b64encode(png).decode("ascii"),
              "buttons": picker_buttons(controls)}
    # One button a line keeps the file readable and its diffs small.
    head = "".join(f"    {json.dumps(k)}: {json.dumps(picker[k])},\n"
                   for k in ("title", "backgroundKey", "background"))
    rows = ",\n".join("        " + json.dumps(b) for b in picker["buttons"])
    return "{\n" + head + '    "buttons": [\n' + rows + "\n    ]\n}\n"


# --- Check -----------------------------------------------------------------------------------

def rig_nodes(text_):
    return re.findall(r'^createNode \w+ -n "([^"]+)"', text_, re.M)


def button_box(button):
    """A button's rectangle (x0, y0, x1, y1), its label's width estimated generously."""
    width = max(len(button["label"]) * 6 + 4, button["size"])
    height = max(14 if button["label"] else 0, button["size"])
    x, y = button["pos"]
    return (x - width / 2, y - height / 2, x + width / 2, y + height / 2)


def overlaps(buttons):
    boxes = [(button_box(b), b["label"] or b["sel"][0]) for b in buttons]
    for i, (a, first) in enumerate(boxes):
        for b, second in boxes[i + 1:]:
            if a[0] < b[2] + 2 and b[0] < a[2] + 2 and a[1] < b[3] + 2 and b[1] < a[3] + 2:
                yield f"{first[:30]} and {second[:30]} touch"


def check(controls):
    problems = []
    rig = (HERE / RIG).read_text()
    nodes = rig_nodes(rig)
    if len(nodes) != len(set(nodes)):
        problems.append("the rig names a node twice")
    rig_controls = {n for n in nodes if n.endswith("_ctrl")}
    picker = json.loads((HERE / PICKER).read_text())
    covered = set()
    for button in picker["buttons"]:
        if button["type"] != "selection":
            continue
        for name in button["sel"]:
            ns, _, node = name.partition(":")
            if ns != NAMESPACE or node not in rig_controls:
                problems.append(f"button names {name}, which the rig does not have")
            if len(button["sel"]) == 1:
                covered.add(node)
    for name in sorted(rig_controls - covered):
        problems.append(f"{name} has no button of its own")
    if sorted(rig_controls) != sorted(c["name"] for c in controls):
        problems.append("the rig's controls differ from the layout: run make_demo.py")
    scripts = [b["sel"][0] for b in picker["buttons"] if b["type"] == "command"]
    for script in scripts:
        for ns, node in re.findall(r"\b(\w+):(\w+)", script):
            if ns != NAMESPACE or node not in rig_controls:
                problems.append(f"a command names {ns}:{node}, which the rig does not have")
    problems += overlaps(picker["buttons"])
    for problem in problems:
        print(problem, file=sys.stderr)
    print(f"{len(rig_controls)} controls, {len(picker['buttons'])} buttons")
    return not problems


def main():
    controls = build_controls()
    if sys.argv[1:] == ["--check"]:
        return 0 if check(controls) else 1
    (HERE / RIG).write_text(write_rig(controls))
    (HERE / SCENE).write_text(write_scene())
    write_background(HERE / BACKGROUND)
    (HERE / PICKER).write_text(write_picker(controls, (HERE / BACKGROUND).read_bytes()))
    return 0 if check(controls) else 1


if __name__ == "__main__":
    sys.exit(main())
