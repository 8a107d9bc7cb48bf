#pragma once

#include "picker_tab.h"
#include "picker_types.h"

#include <QDialog>
#include <QList>
#include <QStringList>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTextEdit;

// Runs a command button's script through the host when it is next idle.
void run_command_button(const buttonAttributes& att);

// Edits a command button's name, script and language. Test runs the script as typed and
// writes the fields into the attributes at once, so callers hand it a copy of a button they
// must be able to keep unchanged.
class picker_editCmdDialog : public QDialog {
    Q_OBJECT

public:
    picker_editCmdDialog(QWidget* parent, buttonAttributes* attributes);

    // Modal; true when the user pressed OK, and the attributes then hold the edits. The size and
    // position the user leaves it at are remembered for the next one.
    static bool do_dialog(QWidget* parent, buttonAttributes* attributes);

    // Copies the fields into the attributes; with no language checked, api keeps its value.
    void update_button();

public slots:
    void test();

private:
    buttonAttributes* brp_;
    QLineEdit* nameEdit_ = nullptr;
    QTextEdit* commandEdit_ = nullptr;
    QRadioButton* mel_ = nullptr;
    QRadioButton* python_ = nullptr;
    QPushButton* ok_ = nullptr;
    QPushButton* test_ = nullptr;
    QPushButton* cancel_ = nullptr;
};

// Maps each namespace the picker uses to one of the scene's; the rewrite of the tab's buttons
// happens once the user accepts, and is not an undo step.
class picker_editNamespaceDialog : public QDialog {
    Q_OBJECT

public:
    struct nsPairRecord {
        QLabel* label = nullptr;
        QComboBox* combo = nullptr;
    };
    using pairRecordList = QList<nsPairRecord>;

    picker_editNamespaceDialog(QWidget* parent, const QStringList& used,
                               const QStringList& available);

    // True when the user accepted; the tab's buttons then use the chosen namespaces.
    static bool do_dialog(QWidget* parent, picker_tab* tab, const QStringList& used,
                          const QStringList& available);

    // The text of each row's combo, in the order of the used list ("" for the root).
    QStringList chosen() const;

private:
    pairRecordList plist_;
    QPushButton* ok_ = nullptr;
    QPushButton* cancel_ = nullptr;
};

// Binds the tab's buttons to the scene's namespaces (available): shows the namespace dialog, over
// parent, when forced or when some namespace the buttons use is not in the scene.
void rebind_tab(QWidget* parent, picker_tab* tab, const QStringList& available, bool force);
