#pragma once

#include "picker_types.h"

#include <QChar>
#include <QString>
#include <QStringList>

// Rules for finding the namespaces a picker's buttons use and rewriting them to others, so that
// one picker can drive a rig referenced under another namespace. Namespaces are written without
// a trailing colon; the namespace dialog and pkrtool both go through these functions.

// a to z, A to Z, 0 to 9, ':', '.', '_'; anything else separates node names inside scripts.
bool is_var_char(QChar c);

// Appends every namespace that holds nodeName, innermost first ("a:b:ctrl" gives "a:b", then
// "a"), each once. A DAG path is read segment by segment ("|hero:grp|hero:ctrl" gives "hero").
// Colons and bars inside brackets (component indices) separate nothing.
void extract_namespace(QStringList& used, const QString& nodeName);

// Appends the namespaces of node names quoted in a script. MEL and Python are scanned alike:
// language is not consulted, and both "//" and "#" start a comment. In a literal holding several
// names, every name after the first is taken with the separator in front of it ("a:x b:y" gives
// "a" and " b"); such a namespace matches nothing in the scene and is shown as it is. A '|' is no
// such separator: it starts the next segment of a DAG path, a name of its own.
void extract_cmd_namespace(QStringList& used, const QString& script, int language);

// Case-insensitive ascending order.
bool compare_name(const QString& a, const QString& b);

// The first entry of available that ends with ":" + ns (so "char1" finds "shot3:char1"), or -1.
int findNestedNamespace(const QString& ns, const QStringList& available);

// The namespaces the buttons use, in the order the namespace dialog lists them: selection
// buttons' names and one-script command buttons' quoted names, sorted with compare_name (stable,
// so names differing only in case stay in the order first met).
QStringList collectCurrentNamespace(const button_att_list& buttons);

// Whether binding to the scene's namespaces has to ask the user: always when forced, otherwise
// when some used namespace is not in available.
bool rebindNeedsDialog(const QStringList& used, const QStringList& available, bool force);

// The namespace dialog's combo for one used namespace: the root namespace (an empty entry) and the
// scene's, and the one chosen at first: the namespace itself, else the scene namespace that nests
// it, else the scene's first, else the root.
struct namespace_choice {
    QStringList items;
    int current = 0;
};
namespace_choice namespaceChoice(const QString& used, const QStringList& available);

// Prefix pairs in the order of the used list: "old:" to "new:", or to "" for the root namespace.
// Where two entries are prefixes of one name, the later one wins.
struct rebind_map {
    QStringList from;
    QStringList to;
};

// chosen[i] is the namespace picked for used[i] ("" for the root; a trailing colon is allowed).
// Namespaces mapped to themselves are left out.
rebind_map buildRebindMap(const QStringList& used, const QStringList& chosen);

// Replaces the prefix of each node name, in each segment of a DAG path, with the to entry of the
// last from entry it starts with. Returns how many names changed.
int rebind_picker_button(buttonAttributes& button, const QStringList& from, const QStringList& to);

// The same for every run of name characters in the button's script, quoted or not, comments
// included. Returns whether the script changed; a button without a script is left alone.
bool rebind_cmd_button(buttonAttributes& button, const QStringList& from, const QStringList& to);

struct rebind_counts {
    int names = 0;   // node names of selection buttons
    int scripts = 0; // scripts of command buttons
};

// One button rewritten by its type (buttons of other types are left alone).
rebind_counts rebindButton(buttonAttributes& button, const rebind_map& map);
// Every button: the namespace dialog's rewrite once the user accepts it.
rebind_counts rebindButtons(button_att_list& buttons, const rebind_map& map);
