#pragma once

#include "picker_host.h"

#include <QMainWindow>

class QListWidget;
class QPlainTextEdit;
class picker_embedded_host;

// Stands in for Maya's main window: a scene outliner that mirrors the host selection both ways
// and the host's script log. The picker's dock docks here.
class host_main_window : public QMainWindow {
    Q_OBJECT

public:
    explicit host_main_window(picker_embedded_host& host);
    ~host_main_window() override;

private:
    static void selection_changed(void* clientData);
    void show_host_selection();
    void select_in_host();
    void show_new_log_lines();

    picker_embedded_host& host_;
    QListWidget* outliner_ = nullptr;
    QPlainTextEdit* log_ = nullptr;
    picker_callback_id selectionCallback_ = 0;
    int shownLogLines_ = 0;
    bool mirroring_ = false;
};
