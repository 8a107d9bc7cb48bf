#include "host_main_window.h"

#include "picker_embedded_host.h"

#include <QDockWidget>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QTimer>

namespace {

// The log has no change signal; a light poll keeps the view current.
constexpr int log_poll_ms = 200;

} // namespace

host_main_window::host_main_window(picker_embedded_host& host) : host_(host) {
    setWindowTitle(QStringLiteral("Talvora host"));
    auto* splitter = new QSplitter(Qt::Vertical, this);
    outliner_ = new QListWidget(splitter);
    outliner_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    outliner_->addItems(host_.nodes());
    log_ = new QPlainTextEdit(splitter);
    log_->setReadOnly(true);
    log_->setPlaceholderText(QStringLiteral("Script log"));
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 1);

    auto* dock = new QDockWidget(QStringLiteral("Scene"), this);
    dock->setObjectName(QStringLiteral("Scene"));
    dock->setWidget(splitter);
    dock->setFeatures(QDockWidget::NoDockWidgetFeatures);
    addDockWidget(Qt::LeftDockWidgetArea, dock);
    setCentralWidget(new QWidget(this));
    resize(720, 520);

    connect(outliner_, &QListWidget::itemSelectionChanged, this, &host_main_window::select_in_host);
    host_status status;
    selectionCallback_ = host_.addEventCallback(
        QStringLiteral("SelectionChanged"), &host_main_window::selection_changed, this, &status);
    auto* poll = new QTimer(this);
    connect(poll, &QTimer::timeout, this, &host_main_window::show_new_log_lines);
    poll->start(log_poll_ms);
}

host_main_window::~host_main_window() {
    if (selectionCallback_ != 0)
        host_.removeCallback(selectionCallback_);
}

void host_main_window::selection_changed(void* clientData) {
    static_cast<host_main_window*>(clientData)->show_host_selection();
}

void host_main_window::show_host_selection() {
    if (mirroring_)
        return;
    mirroring_ = true;
    const QStringList selected = host_.selection();
    for (int i = 0; i < outliner_->count(); ++i) {
        QListWidgetItem* item = outliner_->item(i);
        item->setSelected(selected.contains(item->text()));
    }
    mirroring_ = false;
}

void host_main_window::select_in_host() {
    if (mirroring_)
        return;
    mirroring_ = true;
    QStringList names;
    const QList<QListWidgetItem*> items = outliner_->selectedItems();
    for (const QListWidgetItem* item : items)
        names.append(item->text());
    host_.setSelection(names);
    mirroring_ = false;
}

void host_main_window::show_new_log_lines() {
    const QStringList lines = host_.scriptLog();
    if (lines.size() < shownLogLines_) {
        log_->clear();
        shownLogLines_ = 0;
    }
    for (int i = shownLogLines_; i < lines.size(); ++i)
        log_->appendPlainText(lines.at(i));
    shownLogLines_ = static_cast<int>(lines.size());
}
