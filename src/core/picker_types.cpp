#include "picker_types.h"

#include "picker_file.h"
#include "picker_node_ids.h"
#include "picker_selection.h"
#include "picker_stream.h"

#include <QDataStream>
#include <QSet>

namespace {

constexpr qint32 attribute_list_format = 1;

} // namespace

bool buttonAttributes::operator==(const buttonAttributes& other) const {
    return pos == other.pos && size == other.size && type == other.type && api == other.api &&
           color == other.color && tcolor == other.tcolor && label == other.label &&
           sel == other.sel;
}

void buttonRecord::take_node_ids() {
    ids_.clear();
    for (const QString& name : att.sel)
        ids_.append(intern_node_name(name));
    idsOf_ = att.sel;
}

bool buttonRecord::select(picker_selection* mirror) {
    if (mirror == nullptr) {
        which.fill(1, att.sel.size());
        selected = All;
        return false;
    }
    // A name without a flag yet counts as not selected.
    if (which.size() < att.sel.size())
        which.resize(att.sel.size());
    bool told = false;
    for (int i = 0; i < static_cast<int>(att.sel.size()); ++i) {
        if (which[i] == 0) {
            mirror->selectButton(att.sel[i]);
            which[i] = 1;
            told = true;
        }
    }
    selected = All;
    return told;
}

bool buttonRecord::unselect(picker_selection* mirror) {
    if (mirror == nullptr) {
        which.fill(0, att.sel.size());
        selected = None;
        return false;
    }
    bool told = false;
    const int flagged = static_cast<int>(qMin(which.size(), att.sel.size()));
    for (int i = 0; i < flagged; ++i) {
        if (which[i] != 0) {
            mirror->unselectButton(att.sel[i]);
            which[i] = 0;
            told = true;
        }
    }
    selected = None;
    return told;
}

void writeButtonAttributes(QDataStream& stream, const button_att_list& buttons) {
    stream << attribute_list_format << qint32(buttons.size());
    writeButtonRecords(stream, buttons);
}

button_att_list readButtonAttributes(QDataStream& stream) {
    qint32 format = 0;
    qint32 count = 0;
    stream >> format;
    if (format != attribute_list_format) {
        return {};
    }
    stream >> count;
    return readButtonRecords(stream, picker_format_version, count);
}

void writeButtonList(QDataStream& stream, const button_att_list& buttons) {
    stream << qint32(buttons.size());
    writeButtonRecords(stream, buttons);
}

button_att_list readButtonList(QDataStream& stream, int version) {
    qint32 count = 0;
    stream >> count;
    return readButtonRecords(stream, version, count);
}

void button_set::append(const QString& name) {
    if (!contains(name)) {
        QVector<QString>::append(name);
    }
}

bool button_set::contains(const QString& name) const {
    return QVector<QString>::contains(name);
}

void button_set::removeOne(const QString& name) {
    QVector<QString>::removeOne(name);
}

void button_set::add_button(const buttonRecord& button) {
    for (const QString& name : button.att.sel) {
        append(name);
    }
}

void button_set::remove_button(const buttonRecord& button) {
    for (const QString& name : button.att.sel) {
        removeOne(name);
    }
}

button_set button_set::fromStringList(const QStringList& names) {
    // Host selections run to thousands of names; a hash keeps the de-duplication linear.
    button_set set;
    set.reserve(names.size());
    QSet<QString> seen;
    seen.reserve(static_cast<int>(names.size()));
    for (const QString& name : names) {
        if (!seen.contains(name)) {
            seen.insert(name);
            set.QVector<QString>::append(name);
        }
    }
    return set;
}

void button_set::appendAllToString(QString* text) const {
    for (const QString& name : *this) {
        text->append(QLatin1Char(' '));
        text->append(name);
    }
}
