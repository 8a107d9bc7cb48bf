#pragma once

#include <QList>
#include <QPoint>
#include <QRgb>
#include <QString>
#include <QStringList>
#include <QVarLengthArray>
#include <QVector>

class QDataStream;

// What a button is, and what is saved of it.
struct buttonAttributes {
    enum Kind : qint32 { Selection = 0, Command = 1 };
    enum Api : qint32 { Mel = 0, Python = 1 };

    QPoint pos;      // centre, in picker space
    qint32 size = 0; // edge length, in picker units
    qint32 type = Selection;
    qint32 api = Mel;
    QRgb color = 0;
    QRgb tcolor = 0;
    QString label;
    QStringList sel; // node names, or the one script of a command button

    bool operator==(const buttonAttributes& other) const;
    bool operator!=(const buttonAttributes& other) const { return !(*this == other); }
};

using button_att_list = QList<buttonAttributes>;

// One flag per entry of buttonAttributes::sel: non-zero while that node is selected in the host.
using sel_list = QVector<char>;

class picker_selection;

// A button as a picker tab holds it while the picker runs: what it is, and how lit it is.
struct buttonRecord {
    enum LitState : qint16 { None = 0, All = 1, Some = 2 };

    buttonAttributes att;
    qint16 selected = None;
    sel_list which;
    // Tells the button apart for as long as its tab holds it, whatever its place in the list.
    quint32 id = 0;
    // Marks the picker shows over the button, never saved: the find field matches it, and how
    // many of its nodes the scene lacks (None, All or Some, as for the lit state).
    bool found = false;
    qint16 missing = None;

    // The interned ids of att.sel, taken again once att.sel is no longer the list they were taken
    // from: any change to the names detaches it from the copy kept here.
    const QVarLengthArray<int, 3>& node_ids() {
        if (!att.sel.isSharedWith(idsOf_))
            take_node_ids();
        return ids_;
    }

    // Without a mirror only the flags change (the host told us); otherwise each name that changes
    // state is handed to the mirror. True when the mirror was told anything.
    bool select(picker_selection* mirror);
    bool unselect(picker_selection* mirror);

private:
    void take_node_ids();

    QStringList idsOf_;
    QVarLengthArray<int, 3> ids_; // most buttons name one to three nodes: kept in the record
};

// Attribute list (clipboard): format 1, count, records. Invalid records are dropped.
void writeButtonAttributes(QDataStream& stream, const button_att_list& buttons);
button_att_list readButtonAttributes(QDataStream& stream);

// A view's button list: count, records; the enclosing tab stream's format version decides which
// fields the records carry (writing always uses the newest).
void writeButtonList(QDataStream& stream, const button_att_list& buttons);
button_att_list readButtonList(QDataStream& stream, int version);

// Ordered node names without duplicates (when filled through its own operations).
class button_set : public QVector<QString> {
public:
    void append(const QString& name);
    bool contains(const QString& name) const;
    void removeOne(const QString& name);
    void add_button(const buttonRecord& button);
    void remove_button(const buttonRecord& button);
    static button_set fromStringList(const QStringList& names);
    // Appends " name" for every element, as host command lines want them.
    void appendAllToString(QString* text) const;
};
