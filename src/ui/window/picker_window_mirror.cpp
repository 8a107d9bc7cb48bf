#include "picker_edit_cmd.h"
#include "picker_main.h"
#include "picker_mirror.h"
#include "picker_mirror_dialog.h"
#include "picker_prompt.h"
#include "picker_tab.h"
#include "picker_view.h"
#include "picker_window.h"

#include <QAction>
#include <QHash>
#include <QMenu>

#include <memory>

namespace {

// The colour most buttons on one side of the axis have (the first seen of equals); false when
// no button is on that side.
bool commonColor(const button_list& buttons, int axisTwice, int side, QRgb& color) {
    QHash<QRgb, int> counts;
    int best = 0;
    for (const buttonRecord& button : buttons) {
        const int offset = 2 * button.att.pos.x() - axisTwice;
        if (button.att.type != buttonAttributes::Selection || offset * side <= 0)
            continue;
        const QRgb rgb = button.att.color & RGB_MASK;
        const int count = ++counts[rgb];
        if (count > best) {
            best = count;
            color = rgb;
        }
    }
    return best > 0;
}

} // namespace

void picker_window::make_selection_entries() {
    selallx_ = add_entry(editm_, QStringLiteral("Select All"), true);
    setWidgetShortcut(selallx_, QKeySequence(QStringLiteral("Ctrl+A")));
    connect(selallx_, &QAction::triggered, this, &picker_window::select_all);
    invertx_ = add_entry(editm_, QStringLiteral("Invert Selection"), true);
    setWidgetShortcut(invertx_, QKeySequence(QStringLiteral("Ctrl+Shift+I")));
    connect(invertx_, &QAction::triggered, this, &picker_window::invert_selection);
    duplicatex_ = add_entry(editm_, QStringLiteral("Duplicate"), true);
    setWidgetShortcut(duplicatex_, QKeySequence(QStringLiteral("Ctrl+D")));
    connect(duplicatex_, &QAction::triggered, this, &picker_window::duplicate_buttons);
}

void picker_window::make_mirror_entries() {
    pickm_->addSeparator();
    mirrorx_ = add_entry(pickm_, QStringLiteral("Mirror Buttons\u2026"), true);
    connect(mirrorx_, &QAction::triggered, this, &picker_window::mirror_buttons);
    selmirrorx_ = add_entry(pickm_, QStringLiteral("Select Mirror"), true);
    connect(selmirrorx_, &QAction::triggered, this, &picker_window::select_mirror);
    addmirrorx_ = add_entry(pickm_, QStringLiteral("Add Mirror"), true);
    connect(addmirrorx_, &QAction::triggered, this, &picker_window::add_mirror);
}

void picker_window::refresh_mirror_actions() {
    const picker_tab* tab = frontTab();
    const bool lit = tab != nullptr && tab->any_selected();
    mirrorx_->setEnabled(lit);
    duplicatex_->setEnabled(lit);
    selallx_->setEnabled(tab != nullptr);
    invertx_->setEnabled(tab != nullptr);
    const bool held = !mirror_.names().isEmpty();
    selmirrorx_->setEnabled(held);
    addmirrorx_->setEnabled(held);
}

int picker_window::moveGrid() const {
    return tools_ != nullptr && tools_->snaps() ? gridSize_ : 0;
}

bool picker_window::read_setting(const QStringList& tokens, const QString& path) {
    QStringList values;
    const auto report = [&path](const QString& problem) {
        const QString text = QStringLiteral("TalvoraPicker - %1 (in %2)").arg(problem, path);
        if (picker_host* host = picker_main::host())
            host->displayError(text);
        else
            qWarning("%s", qPrintable(text));
    };
    if (configValues(tokens, QLatin1String(picker_mirror_rules_key), values)) {
        const QString error = parseMirrorRules(values, mirrorRules_);
        if (!error.isEmpty() || values.isEmpty()) {
            mirrorRules_ = defaultMirrorRules();
            report(QStringLiteral("%1: %2; the default mirror rules are used")
                       .arg(QLatin1String(picker_mirror_rules_key),
                            values.isEmpty() ? QStringLiteral("no rule given") : error));
        }
        return true;
    }
    if (configValues(tokens, QLatin1String(picker_grid_size_key), values)) {
        bool parsed = false;
        const int size = values.size() == 1 ? values.first().toInt(&parsed) : 0;
        gridSize_ = parsed && size >= 1 && size <= 1000 ? size : 10;
        if (gridSize_ != size)
            report(QStringLiteral("%1: \"%2\" is not a whole number from 1 to 1000; 10 is used")
                       .arg(QLatin1String(picker_grid_size_key), values.join(QLatin1Char(' '))));
        return true;
    }
    return false;
}

void picker_window::mirror_buttons() {
    picker_tab* tab = frontTab();
    if (tab == nullptr || !tab->any_selected())
        return;
    button_att_list all;
    all.reserve(tab->count());
    for (const buttonRecord& button : tab->buttons())
        all.append(button.att);
    picker_mirror_choice choice;
    choice.axisTwice = defaultMirrorAxisTwice(all, tab->background().width());
    QRgb left = 0;
    QRgb right = 0;
    if (commonColor(tab->buttons(), choice.axisTwice, -1, left) &&
        commonColor(tab->buttons(), choice.axisTwice, 1, right) && left != right)
        choice.swaps.append(qMakePair(left, right));
    if (!ask_mirror_choice(this, choice))
        return;
    const picker_mirror_outcome outcome =
        mirrorButtons(all, tab->selectedIndices(), mirrorRules_, choice.axisTwice, choice.swaps);
    if (outcome.added.isEmpty()) {
        picker_ask({QMessageBox::Information, this, QStringLiteral("Mirror Buttons"),
                    QStringLiteral("Nothing to mirror: %1 already there, %2 centre (not sided).")
                        .arg(outcome.already)
                        .arg(outcome.centre),
                    QMessageBox::Ok});
        return;
    }
    tab->undoer()->push(
        std::make_unique<add_button_cmd>(tab, outcome.added, QStringLiteral("Mirror Buttons"))
            .release());
}

QStringList picker_window::existing_nodes(const QStringList& names) const {
    // A host that cannot tell gets every name: its select passes over those it does not hold.
    picker_host* host = picker_main::host();
    QVector<bool> exist;
    if (host == nullptr || !host->nodesExist(names, exist) || exist.size() != names.size())
        return names;
    QStringList held;
    for (int i = 0; i < names.size(); ++i) {
        if (exist.at(i))
            held << names.at(i);
    }
    return held;
}

void picker_window::select_mirrored(bool add) {
    const QStringList held = mirror_.names();
    if (held.isEmpty())
        return;
    QStringList wanted = add ? held : QStringList();
    for (const QString& name : mirrorNames(held, mirrorRules_)) {
        if (!wanted.contains(name))
            wanted.append(name);
    }
    // Nothing of the other side in the scene leaves the selection as it is.
    const QStringList existing = existing_nodes(wanted);
    if (!existing.isEmpty())
        ask_host_to_select(existing);
}

void picker_window::select_mirror() {
    select_mirrored(false);
}

void picker_window::add_mirror() {
    select_mirrored(true);
}

void picker_window::select_all() {
    picker_tab* tab = frontTab();
    if (tab == nullptr)
        return;
    index_list all;
    for (int i = 0; i < tab->count(); ++i) {
        if (tab->buttons().at(i).att.type == buttonAttributes::Selection)
            all.append(i);
    }
    select_only(tab, all);
}

void picker_window::invert_selection() {
    picker_tab* tab = frontTab();
    if (tab == nullptr)
        return;
    // A partly lit button counts as selected, as it does for a click.
    index_list unlit;
    for (int i = 0; i < tab->count(); ++i) {
        const buttonRecord& button = tab->buttons().at(i);
        if (button.att.type == buttonAttributes::Selection && button.selected == buttonRecord::None)
            unlit.append(i);
    }
    select_only(tab, unlit);
}

void picker_window::select_only(picker_tab* tab, const index_list& indices) {
    clearAllSelected();
    tab->select_list(indices, true);
    tab->conform_to_selection();
    postSelection();
    updateControls();
}

void picker_window::duplicate_buttons() {
    picker_view* view = frontPicker();
    if (view == nullptr || !view->tab()->any_selected())
        return;
    button_att_list copies = view->tab()->getButtons();
    for (buttonAttributes& copy : copies)
        copy.pos += QPoint(gridSize_, gridSize_);
    const paste_placement placement{view->mapToPicker(view->rect().center()), view->rect()};
    view->tab()->undoer()->push(
        std::make_unique<paste_buttons_cmd>(view->tab(), copies, true, placement,
                                            QStringLiteral("Duplicate Buttons"))
            .release());
}
