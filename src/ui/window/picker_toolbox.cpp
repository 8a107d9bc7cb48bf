#include "picker_toolbox.h"

#include "picker_colorMenu.h"
#include "picker_field_cmd.h"
#include "picker_tab.h"
#include "picker_window.h"

#include <QAction>
#include <QCheckBox>
#include <QCursor>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPixmap>
#include <QPushButton>
#include <QSet>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <memory>

namespace {

const QRgb initial_color = 0xB22222;
const QRgb initial_textcolor = 0;
const int initial_size_entry = 5; // "10" among "5" to "20"
const int row_spacing = 8;
const int row_margin = 4;
// Items of wlist_ while the row is shown: the tabs, a spacing, the row, a spacing.
const int shown_items = 4;

// The sizes and labels the lit buttons have, as sets so that mixed values show.
struct toolbox_state {
    QSet<int> bsize;
    QSet<QString> blabel;
};

QIcon make_icon(QRgb color) {
    QPixmap swatch(12, 12);
    swatch.fill(QColor(color));
    return QIcon(swatch);
}

} // namespace

picker_toolbox::picker_toolbox(picker_window* window, QVBoxLayout* wlist, QAction* togglex)
    : window_(window), togglex_(togglex), wlist_(wlist) {
    make_toolbox();
    add_row();
    connect(togglex_, &QAction::triggered, this, &picker_toolbox::toggle_toolbox);
}

bool picker_toolbox::isShown() const {
    return wlist_->count() >= shown_items;
}

void picker_toolbox::make_toolbox() {
    colorm_ = new QPushButton(make_icon(initial_color), QString(), window_);
    labelc_ = new QPushButton(make_icon(initial_textcolor), QString(), window_);
    colorm_->setToolTip(QStringLiteral("Button Color"));
    labelc_->setToolTip(QStringLiteral("Label Color"));
    // The palette opens on press so that the same press-drag-release can choose.
    connect(colorm_, &QPushButton::pressed, this, &picker_toolbox::do_color_menu);
    connect(labelc_, &QPushButton::pressed, this, &picker_toolbox::do_labelcolor_menu);

    sizem_ = new QPushButton(QString(), window_);
    sizem_->setToolTip(QStringLiteral("Button Size"));
    auto* sizes = new QMenu(sizem_);
    for (int size = 5; size <= 20; ++size)
        sizes->addAction(QString::number(size));
    sizem_->setMenu(sizes);
    sizem_->setMinimumWidth(50);
    QAction* initial = sizes->actions().at(initial_size_entry);
    sizes->setActiveAction(initial);
    // Before the row is in the window, so the selection does not read back into half-built
    // controls; a selection still takes the size as an undo step.
    set_button_size(initial);
    sizem_->setStyleSheet(QStringLiteral("text-align: left; padding: 3px"));
    connect(sizes, &QMenu::triggered, this, &picker_toolbox::set_button_size);

    labelf_ = new QLineEdit(window_);
    labelf_->setToolTip(QStringLiteral("Button Label"));
    connect(labelf_, &QLineEdit::editingFinished, this, &picker_toolbox::set_button_label);
    // A label is for the tab it was typed in, whichever tab is in front when it is finished.
    connect(labelf_, &QLineEdit::textEdited, this, [this] { labelTab_ = window_->frontTab(); });

    toolbox_ = new QHBoxLayout;
    toolbox_->addSpacing(row_spacing);
    toolbox_->addWidget(new QLabel(QStringLiteral("Color:"), window_));
    toolbox_->addWidget(colorm_);
    toolbox_->addSpacing(row_spacing);
    toolbox_->addWidget(new QLabel(QStringLiteral("Size:"), window_));
    toolbox_->addWidget(sizem_);
    toolbox_->addSpacing(row_spacing);
    toolbox_->addWidget(new QLabel(QStringLiteral("Label:"), window_));
    toolbox_->addWidget(labelf_);
    toolbox_->addWidget(labelc_);
    toolbox_->addSpacing(row_spacing);
    snapc_ = new QCheckBox(QStringLiteral("Snap"), window_);
    snapc_->setToolTip(QStringLiteral("Snap to Grid while moving"));
    snapc_->setChecked(snap_);
    // Clicked, it keeps the keys with the picker.
    snapc_->setFocusPolicy(Qt::NoFocus);
    connect(snapc_, &QCheckBox::toggled, this, [this](bool on) { snap_ = on; });
    toolbox_->addWidget(snapc_);
    toolbox_->addSpacing(row_spacing);
    toolbox_->setStretch(toolbox_->indexOf(labelf_), 1);
}

void picker_toolbox::add_row() {
    wlist_->addSpacing(row_margin);
    wlist_->addLayout(toolbox_, 0);
    wlist_->addSpacing(row_margin);
    togglex_->setText(QStringLiteral("Hide Toolbox"));
}

void picker_toolbox::toggle_toolbox() {
    if (!isShown()) {
        make_toolbox();
        add_row();
        return;
    }
    for (int i = 0; i < 3; ++i) {
        std::unique_ptr<QLayoutItem> item(wlist_->takeAt(1));
        QLayout* row = item->layout();
        if (row == nullptr)
            continue;
        while (QLayoutItem* control = row->takeAt(0)) {
            QWidget* widget = control->widget();
            delete control;
            delete widget;
        }
        // The row is its own layout item: item deletes it.
    }
    colorm_ = nullptr;
    sizem_ = nullptr;
    labelf_ = nullptr;
    labelc_ = nullptr;
    snapc_ = nullptr;
    toolbox_ = nullptr;
    togglex_->setText(QStringLiteral("Show Toolbox"));
}

picker_tab* picker_toolbox::selecting_tab() const {
    picker_tab* tab = window_->frontTab();
    return tab != nullptr && tab->any_selected() ? tab : nullptr;
}

void picker_toolbox::set_button_color(QRgb color) {
    if (colorm_ != nullptr)
        colorm_->setIcon(make_icon(color));
    if (picker_tab* tab = selecting_tab())
        tab->undoer()->push(new change_color_cmd(tab, color));
}

void picker_toolbox::set_label_color(QRgb color) {
    if (labelc_ != nullptr)
        labelc_->setIcon(make_icon(color));
    if (picker_tab* tab = selecting_tab())
        tab->undoer()->push(new change_labelc_cmd(tab, color));
}

void picker_toolbox::show_size_entry(int size) {
    QAction* shown = nullptr;
    for (QAction* entry : sizem_->menu()->actions()) {
        if (entry->text() == QString::number(size))
            shown = entry;
    }
    sizem_->menu()->setActiveAction(shown);
}

void picker_toolbox::set_button_size(QAction* action) {
    sizem_->setText(action->text());
    bool parsed = false;
    const int size = action->text().toInt(&parsed);
    current_.size = parsed ? size : 10;
    if (picker_tab* tab = selecting_tab())
        tab->undoer()->push(new change_size_cmd(tab, current_.size));
}

void picker_toolbox::set_button_label() {
    // Finishing an edit twice (Enter, then leaving the field) labels once.
    if (!labelf_->isModified())
        return;
    labelf_->setModified(false);
    picker_tab* tab = labelTab_.data();
    labelTab_.clear();
    if (tab != nullptr && tab->any_selected())
        tab->undoer()->push(new change_label_cmd(tab, labelf_->text()));
}

void picker_toolbox::frontChanged() {
    if (labelf_ != nullptr)
        set_button_label();
    updateControls();
}

void picker_toolbox::do_color_menu() {
    picker_colorMenu* menu =
        picker_colorMenu::execute_color(QCursor::pos(), QColor(current_.color));
    connect(menu, &picker_colorMenu::colorChanged, this, &picker_toolbox::set_button_color);
}

void picker_toolbox::do_labelcolor_menu() {
    picker_colorMenu* menu =
        picker_colorMenu::execute_bw(QCursor::pos(), QColor(current_.textcolor));
    connect(menu, &picker_colorMenu::colorChanged, this, &picker_toolbox::set_label_color);
}

void picker_toolbox::updateControls() {
    const picker_tab* tab = window_->frontTab();
    if (!isShown() || tab == nullptr)
        return;
    toolbox_state seen;
    const buttonAttributes* first = nullptr;
    for (const buttonRecord& button : tab->buttons()) {
        if (button.selected == buttonRecord::None)
            continue;
        if (first == nullptr)
            first = &button.att;
        seen.bsize.insert(button.att.size);
        seen.blabel.insert(button.att.label);
    }
    if (first == nullptr) {
        // Nothing lit here: no label of another tab's buttons is offered for new ones.
        const QSignalBlocker blocker(labelf_);
        labelf_->clear();
        current_.label.clear();
        return;
    }
    // Mixed colours show the first lit button's; mixed sizes and labels show none. New
    // buttons take the first lit button's style.
    const QRgb color = first->color;
    const QRgb textcolor = first->tcolor;
    const int size = first->size;
    colorm_->setIcon(make_icon(color));
    {
        const QSignalBlocker blocker(sizem_);
        sizem_->setText(seen.bsize.size() == 1 ? QString::number(size) : QString());
        show_size_entry(seen.bsize.size() == 1 ? size : 0);
    }
    {
        const QSignalBlocker blocker(labelf_);
        if (seen.blabel.size() == 1)
            labelf_->setText(*seen.blabel.cbegin());
        else
            labelf_->clear();
    }
    labelc_->setIcon(make_icon(textcolor));
    current_.color = color;
    current_.textcolor = textcolor;
    current_.label = labelf_->text();
    current_.size = size;
}
