#pragma once

#include "picker_find.h"
#include "picker_node_ids.h"
#include "picker_selection.h"
#include "picker_types.h"

#include <QList>
#include <QObject>
#include <QPixmap>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QUndoStack>
#include <QVector>

#include <vector>

// Indices into a tab's button list, ascending unless said otherwise.
using index_list = QVector<int>;
// Picker-space positions, parallel to an index_list.
using point_list = QVector<QPoint>;
// QRgb values, parallel to an index_list.
using color_list = QVector<unsigned int>;
using button_list = QList<buttonRecord>;
// Buttons as their tab tells them apart, whatever their places in the list.
using id_list = QVector<quint32>;

// One picker tab as a document: its buttons with their lit states, its background, the file it
// came from and its undo history. Every change goes through here and is announced by a signal
// that names what changed, so the views showing it work out their geometry and pictures from it
// and never disagree with it. Undo commands change the document and nothing else.
class picker_tab : public QObject {
    Q_OBJECT

public:
    // mirror holds the names the picker has selected, shared by the tabs of one window; without
    // one the tab keeps its own.
    explicit picker_tab(picker_selection* mirror = nullptr, QObject* parent = nullptr);

    const button_list& buttons() const { return buttons_; }
    int count() const { return static_cast<int>(buttons_.size()); }
    // -1 when the tab holds no button of that id.
    int indexOf(quint32 id) const;
    id_list idsOf(const index_list& indices) const;
    // Ascending; ids the tab no longer holds are left out.
    index_list indicesOf(const id_list& ids) const;

    const QPixmap& background() const { return background_; }
    const QString& backgroundKey() const { return backgroundKey_; }
    void setBackground(const QString& key, const QPixmap& image);
    const QString& path() const { return path_; }
    void setPath(const QString& path) { path_ = path; }

    QUndoStack* undoer() { return &undoer_; }
    const QUndoStack* undoer() const { return &undoer_; }
    picker_selection* mirror() const { return mirror_; }

    // Edits, for the undo commands. Each announces what it changed, then changed().
    // At index, or at the end when index is negative or past it; returns where the button went.
    int insertButton(const buttonAttributes& att, int index);
    // Ascending indices: each is right at the moment its button goes in.
    void insertButtons(const index_list& indices, const button_att_list& buttons);
    void removeButtons(const index_list& indices);
    // edit(attributes, place in indices) for each index the list has. An edit that changes only
    // colours leaves every button's size and label as they were: it says so with reshapes false.
    template <typename Edit>
    void editButtons(const index_list& indices, Edit edit, bool reshapes = true);
    // Every button anew and the undo history forgotten, since what it refers to is gone.
    void replaceButtons(const button_att_list& buttons);

    // Lit states: what is selected, never saved and never undone. With report, each name that
    // changes state goes to the mirror; without, only the flags change (the host told us).
    bool any_selected() const;
    index_list selectedIndices() const;
    // The attributes of the lit buttons, in list order (what the clipboard takes).
    button_att_list getButtons() const;
    void select(int index, bool report);
    void unselect(int index, bool report);
    void select_list(const index_list& indices, bool report);
    // Unlights every lit button, reporting its names.
    bool clear_selected();
    // Lights each button from the names: all of its names, some, or none (a button without
    // names counts as all). True when any button's lit state changed.
    bool conform_to_set(const name_lookup& names);
    bool conform_to_set(const button_set& names);
    bool conform_to_selection();
    void append_selected(button_set& out) const;
    // Every button sharing a name with a lit one lights accordingly.
    bool conform_to_selected();

    // Marks, like lit states never saved nor undone. Marks the buttons whose label or a node's
    // short name the matcher takes (none for an empty pattern); returns how many.
    int mark_found(picker_name_matcher& matcher);
    index_list foundIndices() const;
    // Marks each selection button by how many of its names are among missing, which it keeps
    // for isMissing.
    void mark_missing(const name_lookup& missing);
    // Appends the selection buttons' names whose interned ids asked does not flag yet, with those
    // ids, flagging them.
    void collect_names(std::vector<char>& asked, QStringList& names, QVector<int>& ids);
    bool isMissing(const QString& name) const { return missing_.contains(intern_node_name(name)); }

    // Asks the views to bring a picker area into sight.
    void requestFrame(const QRect& area) { emit frameRequested(area); }

signals:
    void buttonsInserted(const index_list& indices);
    // The indices as they were before the removal.
    void buttonsRemoved(const index_list& indices);
    void buttonsChanged(const index_list& indices, bool reshaped);
    void buttonsReset();
    void litChanged();
    void backgroundChanged();
    // What is saved of the tab changed.
    void changed();
    void frameRequested(const QRect& area);
    void marksChanged();

private:
    buttonRecord record_of(const buttonAttributes& att);

    button_list buttons_;
    quint32 nextId_ = 1;
    picker_selection ownMirror_;
    picker_selection* mirror_;
    name_lookup missing_;
    QPixmap background_;
    QString backgroundKey_;
    QString path_;
    QUndoStack undoer_;
};

template <typename Edit>
void picker_tab::editButtons(const index_list& indices, Edit edit, bool reshapes) {
    // A button's flags follow its names wherever they are read, so an edit of the names needs
    // nothing more here.
    int outside = 0;
    for (int i = 0; i < indices.size(); ++i) {
        const int index = indices.at(i);
        if (index < 0 || index >= buttons_.size())
            ++outside;
        else
            edit(buttons_[index].att, i);
    }
    if (outside == indices.size())
        return;
    if (outside == 0) {
        emit buttonsChanged(indices, reshapes);
    } else {
        index_list edited;
        for (const int index : indices) {
            if (index >= 0 && index < buttons_.size())
                edited.append(index);
        }
        emit buttonsChanged(edited, reshapes);
    }
    emit changed();
}
