#pragma once

#include "picker_host.h"

#include <QMainWindow>

class QDockWidget;
class QLineEdit;
class QListWidget;
class QMenu;
class QPlainTextEdit;
class picker_embedded_host;

// Stands in for Maya's main window: a File menu for scenes and references, a scene outliner
// that mirrors the host selection both ways, the host's script log and a line to type MEL into.
// The picker's dock docks here.
class host_main_window : public QMainWindow {
    Q_OBJECT

public:
    explicit host_main_window(picker_embedded_host& host);
    ~host_main_window() override;

    QLineEdit* scriptLine() const { return scriptLine_; }

protected:
    void closeEvent(QCloseEvent* event) override;
    bool event(QEvent* event) override;

private:
    static void selection_changed(void* clientData);
    // Docks the picker on the right, where the window was left last time.
    void dock_picker(QDockWidget* dock);
    void make_file_menu();
    void show_host_selection();
    void select_in_host();
    // The log, the outliner and the title follow the host: it has no change signals of its own.
    void follow_host();
    void show_new_log_lines();
    void show_scene_nodes();
    void show_title();

    // False when the user cancelled; unsaved changes are offered for saving first.
    bool may_discard_scene();
    void new_scene();
    void open_scene();
    void open_scene_file(const QString& path);
    bool save_scene();
    bool save_scene_as();
    void reference_rig();
    void run_script_line();
    // Runs MEL as if typed, the statement echoed in the log first.
    bool run(const QString& mel);
    void remember_scene(const QString& path);
    void fill_recent_menu();

    picker_embedded_host& host_;
    QDockWidget* sceneDock_ = nullptr;
    QListWidget* outliner_ = nullptr;
    QPlainTextEdit* log_ = nullptr;
    QLineEdit* scriptLine_ = nullptr;
    QMenu* recentMenu_ = nullptr;
    QStringList shownNodes_;
    picker_callback_id selectionCallback_ = 0;
    int shownLogLines_ = 0;
    bool mirroring_ = false;
};
