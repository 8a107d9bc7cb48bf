#pragma once

#include "picker_capture.h"
#include "picker_edit_cmd.h"

#include <QString>
#include <QUndoCommand>
#include <QVector>

#include <utility>

// Sets one attribute of the lit buttons. Field says which, what the new value makes of the old
// one, and whether a newer command on the same buttons folds into this one:
//   value_type, id, text, get(att), set(att, value), apply(old, value), merge(value, newer)
//   returning false where the two must stay separate steps, and reshapes: whether the field
//   bears on a button's size or label picture.
template <typename Field>
class change_field_cmd : public QUndoCommand {
public:
    using value_type = typename Field::value_type;

    change_field_cmd(picker_tab* tab, value_type value)
        : QUndoCommand(QString::fromLatin1(Field::text)), tab_(tab), value_(std::move(value)) {
        capture_selected(*tab_, sel_, saved_, &Field::get);
    }

    int id() const override { return Field::id; }

    void redo() override {
        tab_->editButtons(
            sel_,
            [this](buttonAttributes& att, int i) {
                Field::set(att, Field::apply(saved_.at(i), value_));
            },
            Field::reshapes);
    }

    void undo() override {
        tab_->editButtons(
            sel_, [this](buttonAttributes& att, int i) { Field::set(att, saved_.at(i)); },
            Field::reshapes);
    }

    // The older command keeps what it saved, so one undo returns to before the whole run.
    bool mergeWith(const QUndoCommand* other) override {
        const auto* newer = dynamic_cast<const change_field_cmd*>(other);
        return newer != nullptr && newer->sel_ == sel_ && Field::merge(value_, newer->value_);
    }

private:
    picker_tab* tab_;
    value_type value_;
    index_list sel_;
    QVector<value_type> saved_;
};

// A value that replaces the old one; a newer one replaces it again when merged.
template <typename Value>
struct replacing_field {
    using value_type = Value;
    static Value apply(const Value&, const Value& value) { return value; }
    static bool merge(Value& value, const Value& newer) {
        value = newer;
        return true;
    }
};

struct color_field : replacing_field<QRgb> {
    static constexpr int id = cmd_color;
    static constexpr bool reshapes = false;
    static constexpr const char* text = "Change Color";
    static QRgb get(const buttonAttributes& att) { return att.color; }
    static void set(buttonAttributes& att, QRgb color) { att.color = color; }
};

struct label_color_field : replacing_field<QRgb> {
    static constexpr int id = cmd_label_color;
    static constexpr bool reshapes = true; // the label's picture is drawn in its colour
    static constexpr const char* text = "Change Label Color";
    static QRgb get(const buttonAttributes& att) { return att.tcolor; }
    static void set(buttonAttributes& att, QRgb color) { att.tcolor = color; }
};

struct size_field : replacing_field<int> {
    static constexpr int id = cmd_size;
    static constexpr bool reshapes = true;
    static constexpr const char* text = "Change Size";
    static int get(const buttonAttributes& att) { return att.size; }
    static void set(buttonAttributes& att, int size) { att.size = size; }
};

// Each label typed is a step of its own.
struct label_field {
    using value_type = QString;
    static constexpr int id = cmd_label;
    static constexpr bool reshapes = true;
    static constexpr const char* text = "Label Change";
    static QString get(const buttonAttributes& att) { return att.label; }
    static void set(buttonAttributes& att, const QString& label) { att.label = label; }
    static QString apply(const QString&, const QString& label) { return label; }
    static bool merge(QString&, const QString&) { return false; }
};

// Grows or shrinks each button from its own size; growing and shrinking stay separate steps.
struct adjust_size_field {
    using value_type = int;
    static constexpr int id = cmd_adjust_size;
    static constexpr bool reshapes = true;
    static constexpr const char* text = "Adjust Size";
    static int get(const buttonAttributes& att) { return att.size; }
    static void set(buttonAttributes& att, int size) { att.size = size; }
    static int apply(int size, int increment) { return size + increment; }
    static bool merge(int& increment, int newer) {
        if ((newer < 0) != (increment < 0))
            return false;
        increment += newer;
        return true;
    }
};

using change_color_cmd = change_field_cmd<color_field>;
using change_labelc_cmd = change_field_cmd<label_color_field>;
using change_size_cmd = change_field_cmd<size_field>;
using adjust_size_cmd = change_field_cmd<adjust_size_field>;
using change_label_cmd = change_field_cmd<label_field>;
