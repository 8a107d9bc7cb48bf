#include "picker_dialog.h"

#include "picker_main.h"
#include "picker_namespace.h"
#include "picker_prompt.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QCompleter>
#include <QFont>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QSettings>
#include <QTextEdit>
#include <QVariant>

#include <utility>

namespace {

const char* const size_key = "editCommandWindowSize";
const char* const pos_key = "editCommandWindowPos";
const int name_limit = 128;

// A stored value of the wrong type (a hand-edited settings file) reads as the fallback.
QSize stored_size(const QVariant& value) {
    return value.userType() == QMetaType::QSize ? value.toSize() : QSize(400, 450);
}

QPoint stored_pos(const QVariant& value) {
    return value.userType() == QMetaType::QPoint ? value.toPoint() : QPoint(50, 50);
}

} // namespace

void run_command_button(const buttonAttributes& att) {
    picker_host* host = picker_main::host();
    if (att.type != buttonAttributes::Command || att.sel.isEmpty() || host == nullptr)
        return;
    const QString& script = att.sel.at(0);
    if (script.isEmpty())
        return;
    if (att.api == buttonAttributes::Mel)
        host->executeCommandOnIdle(script, false);
    else if (att.api == buttonAttributes::Python)
        host->executePythonCommandOnIdle(script, false);
}

picker_editCmdDialog::picker_editCmdDialog(QWidget* parent, buttonAttributes* attributes)
    : QDialog(parent), brp_(attributes) {
    setModal(true);
    setSizeGripEnabled(false);
    setWindowTitle(tr("Edit Command"));

    auto* nameLabel = new QLabel(tr("Name:"), this);
    auto* languageLabel = new QLabel(tr("Language:"), this);
    auto* commandLabel = new QLabel(tr("Command:"), this);

    mel_ = new QRadioButton(tr("MEL"), this);
    python_ = new QRadioButton(tr("Python"), this);
    auto* languages = new QButtonGroup(this);
    languages->setExclusive(true);
    languages->addButton(mel_);
    languages->addButton(python_);
    mel_->setChecked(brp_->api == buttonAttributes::Mel);
    python_->setChecked(brp_->api == buttonAttributes::Python);
    auto* languageRow = new QHBoxLayout;
    languageRow->addWidget(mel_);
    languageRow->addWidget(python_);
    languageRow->addStretch(1);

    nameEdit_ = new QLineEdit(this);
    commandEdit_ = new QTextEdit(this);
    QFont fixed(QStringLiteral("Monospace"), 9);
    fixed.setStyleHint(QFont::TypeWriter);
    commandEdit_->setFont(fixed);

    ok_ = new QPushButton(tr("OK"), this);
    test_ = new QPushButton(tr("Test"), this);
    cancel_ = new QPushButton(tr("Cancel"), this);
    auto* buttonRow = new QHBoxLayout;
    buttonRow->addSpacing(80);
    buttonRow->addWidget(ok_);
    buttonRow->addWidget(test_);
    buttonRow->addWidget(cancel_);

    auto* grid = new QGridLayout(this);
    grid->setColumnMinimumWidth(0, 80);
    grid->setColumnMinimumWidth(1, 200);
    grid->addWidget(nameLabel, 0, 0, Qt::AlignRight);
    grid->addWidget(nameEdit_, 0, 1);
    grid->setRowMinimumHeight(1, 5);
    grid->addWidget(languageLabel, 2, 0, Qt::AlignRight);
    grid->addLayout(languageRow, 2, 1);
    grid->setRowMinimumHeight(3, 1);
    grid->addWidget(commandLabel, 4, 0, Qt::AlignRight | Qt::AlignTop);
    grid->addWidget(commandEdit_, 4, 1);
    grid->setRowMinimumHeight(5, 1);
    grid->addLayout(buttonRow, 6, 0, 1, 2);

    connect(ok_, &QPushButton::clicked, this, &QDialog::accept);
    connect(test_, &QPushButton::clicked, this, &picker_editCmdDialog::test);
    connect(cancel_, &QPushButton::clicked, this, &QDialog::reject);

    nameEdit_->setMaxLength(name_limit);
    nameEdit_->setText(brp_->label);
    if (!brp_->sel.isEmpty())
        commandEdit_->setPlainText(brp_->sel.first());
    // A button with no script would do nothing: OK waits for one.
    const auto scripted = [this] { ok_->setEnabled(!commandEdit_->toPlainText().isEmpty()); };
    connect(commandEdit_, &QTextEdit::textChanged, this, scripted);
    scripted();
    ok_->setDefault(true);
    nameEdit_->setFocus(Qt::OtherFocusReason);
}

void picker_editCmdDialog::update_button() {
    brp_->label = nameEdit_->text();
    const QString script = commandEdit_->toPlainText();
    if (brp_->sel.isEmpty())
        brp_->sel.append(script);
    else
        brp_->sel.first() = script;
    if (mel_->isChecked())
        brp_->api = buttonAttributes::Mel;
    else if (python_->isChecked())
        brp_->api = buttonAttributes::Python;
}

void picker_editCmdDialog::test() {
    update_button();
    run_command_button(*brp_);
}

bool picker_editCmdDialog::do_dialog(QWidget* parent, buttonAttributes* attributes) {
    picker_editCmdDialog dialog(parent, attributes);
    QSettings settings(QStringLiteral("Talvora"), QStringLiteral("picker"));
    const QString sizeKey = QLatin1String(size_key);
    const QString posKey = QLatin1String(pos_key);
    // One key without the other is a half-written record: keep Qt's own placement.
    if (settings.contains(sizeKey) && settings.contains(posKey)) {
        dialog.resize(stored_size(settings.value(sizeKey)));
        dialog.move(stored_pos(settings.value(posKey)));
    }
    const int result = picker_exec(dialog);
    settings.setValue(sizeKey, dialog.size());
    settings.setValue(posKey, dialog.pos());
    if (result != QDialog::Accepted)
        return false;
    dialog.update_button();
    return true;
}

picker_editNamespaceDialog::picker_editNamespaceDialog(QWidget* parent, const QStringList& used,
                                                       const QStringList& available)
    : QDialog(parent) {
    setModal(true);
    setWindowTitle(tr("Choose Namespace"));

    auto* rows = new QWidget;
    auto* inner = new QGridLayout(rows);
    inner->setContentsMargins(5, 3, 5, 3);
    inner->setVerticalSpacing(2);
    for (int i = 0; i < used.size(); ++i) {
        nsPairRecord pair;
        // Escaped: a namespace taken from a script may hold characters that are markup.
        pair.label = new QLabel(QStringLiteral("<b>%1</b>").arg(used.at(i).toHtmlEscaped()), rows);
        pair.combo = new QComboBox(rows);
        pair.combo->setEditable(true);
        pair.combo->setMinimumWidth(260);
        pair.combo->completer()->setCompletionMode(QCompleter::InlineCompletion);
        const namespace_choice choice = namespaceChoice(used.at(i), available);
        pair.combo->addItems(choice.items);
        pair.combo->setCurrentIndex(choice.current);
        inner->addWidget(pair.label, i, 0, Qt::AlignRight);
        inner->addWidget(pair.combo, i, 1);
        plist_.append(pair);
    }
    auto* scroll = new QScrollArea(this);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidgetResizable(true);
    scroll->setWidget(rows);

    ok_ = new QPushButton(tr("OK"), this);
    cancel_ = new QPushButton(tr("Cancel"), this);
    auto* buttonRow = new QHBoxLayout;
    buttonRow->addSpacing(80);
    buttonRow->addWidget(ok_);
    buttonRow->addWidget(cancel_);

    auto* outer = new QGridLayout(this);
    outer->addWidget(new QLabel(tr("Change Current Namespace to:"), this), 0, 0, 1, 2);
    outer->addWidget(scroll, 1, 0, 1, 2);
    outer->setRowMinimumHeight(2, 14);
    outer->addLayout(buttonRow, 3, 0, 1, 2);

    connect(ok_, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel_, &QPushButton::clicked, this, &QDialog::reject);
}

QStringList picker_editNamespaceDialog::chosen() const {
    QStringList texts;
    for (const nsPairRecord& pair : plist_)
        texts.append(pair.combo->currentText());
    return texts;
}

bool picker_editNamespaceDialog::do_dialog(QWidget* parent, picker_tab* tab,
                                           const QStringList& used, const QStringList& available) {
    picker_editNamespaceDialog dialog(parent, used, available);
    if (picker_exec(dialog) != QDialog::Accepted)
        return false;
    const rebind_map map = buildRebindMap(used, dialog.chosen());
    if (map.from.isEmpty() || tab->count() == 0)
        return true;
    index_list changed;
    button_att_list rebound;
    for (int i = 0; i < tab->count(); ++i) {
        buttonAttributes att = tab->buttons().at(i).att;
        const rebind_counts counts = rebindButton(att, map);
        if (counts.names > 0 || counts.scripts > 0) {
            changed.append(i);
            rebound.append(att);
        }
    }
    // Not an undo step: the rewrite follows the scene the picker is used with.
    tab->editButtons(changed, [&rebound](buttonAttributes& att, int i) { att = rebound.at(i); });
    // The new names may already be selected in the host.
    tab->conform_to_selection();
    return true;
}

void rebind_tab(QWidget* parent, picker_tab* tab, const QStringList& available, bool force) {
    if (tab == nullptr)
        return;
    button_att_list attributes;
    for (const buttonRecord& button : tab->buttons())
        attributes.append(button.att);
    const QStringList used = collectCurrentNamespace(attributes);
    if (rebindNeedsDialog(used, available, force))
        picker_editNamespaceDialog::do_dialog(parent, tab, used, available);
}
