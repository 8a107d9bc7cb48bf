#include "host_main_window.h"

#include "batch_mode.h"
#include "picker_embedded_host.h"
#include "picker_mel_quote.h"
#include "picker_prompt.h"

#include <QAction>
#include <QChildEvent>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileInfo>
#include <QGuiApplication>
#include <QInputDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPointer>
#include <QScreen>
#include <QSettings>
#include <QSplitter>
#include <QTimer>
#include <QVBoxLayout>

namespace {

// The host has no change signals; a light poll keeps the views current.
constexpr int follow_poll_ms = 200;
constexpr int recent_scene_count = 8;

const QString scene_filter = QStringLiteral("Maya ASCII (*.ma)");
const QString recent_key = QStringLiteral("recentScenes");
const QString geometry_key = QStringLiteral("windowGeometry");
const QString state_key = QStringLiteral("windowState");
// The outliner never narrower than its names need, nor wider than the picker beside it can
// spare: what the window gains goes to the picker.
constexpr int outliner_width = 220;
constexpr int outliner_least = 160;
constexpr int outliner_most = 360;

QSettings program_settings() {
    return QSettings(QStringLiteral("Talvora"), QStringLiteral("talvora-picker"));
}

QStringList recent_scenes() {
    return program_settings().value(recent_key).toStringList();
}

void store_recent_scenes(const QStringList& paths) {
    program_settings().setValue(recent_key, paths);
}

QAction* add_entry(QMenu* menu, const QString& text, const QKeySequence& shortcut = {}) {
    QAction* action = menu->addAction(text);
    action->setShortcut(shortcut);
    return action;
}

QString chosen_file(QWidget* parent, picker_file_question::kind type, const QString& title) {
    const QStringList paths =
        picker_ask_files({type, parent, title, QString(), scene_filter, QStringLiteral("ma")});
    return paths.value(0);
}

} // namespace

host_main_window::host_main_window(picker_embedded_host& host) : host_(host) {
    auto* splitter = new QSplitter(Qt::Vertical, this);
    outliner_ = new QListWidget(splitter);
    outliner_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    auto* scriptPanel = new QWidget(splitter);
    auto* scriptLayout = new QVBoxLayout(scriptPanel);
    scriptLayout->setContentsMargins(0, 0, 0, 0);
    log_ = new QPlainTextEdit(scriptPanel);
    log_->setReadOnly(true);
    log_->setPlaceholderText(QStringLiteral("Script log"));
    scriptLine_ = new QLineEdit(scriptPanel);
    scriptLine_->setPlaceholderText(QStringLiteral("MEL"));
    scriptLayout->addWidget(log_);
    scriptLayout->addWidget(scriptLine_);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 1);

    sceneDock_ = new QDockWidget(QStringLiteral("Scene"), this);
    sceneDock_->setObjectName(QStringLiteral("Scene"));
    sceneDock_->setWidget(splitter);
    sceneDock_->setFeatures(QDockWidget::NoDockWidgetFeatures);
    sceneDock_->setMinimumWidth(outliner_least);
    sceneDock_->setMaximumWidth(outliner_most);
    addDockWidget(Qt::LeftDockWidgetArea, sceneDock_);
    // No central widget: the outliner and the picker share the width between them.
    resize(1100, 700);
    restoreGeometry(program_settings().value(geometry_key).toByteArray());
    make_file_menu();

    connect(outliner_, &QListWidget::itemSelectionChanged, this, &host_main_window::select_in_host);
    connect(scriptLine_, &QLineEdit::returnPressed, this, &host_main_window::run_script_line);
    host_status status;
    selectionCallback_ = host_.addEventCallback(
        QStringLiteral("SelectionChanged"), &host_main_window::selection_changed, this, &status);
    auto* poll = new QTimer(this);
    connect(poll, &QTimer::timeout, this, &host_main_window::follow_host);
    poll->start(follow_poll_ms);
    follow_host();
}

host_main_window::~host_main_window() {
    if (selectionCallback_ != 0)
        host_.removeCallback(selectionCallback_);
}

void host_main_window::make_file_menu() {
    QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
    connect(add_entry(file, QStringLiteral("&New Scene"), QKeySequence::New), &QAction::triggered,
            this, &host_main_window::new_scene);
    connect(add_entry(file, QStringLiteral("&Open Scene..."), QKeySequence::Open),
            &QAction::triggered, this, &host_main_window::open_scene);
    recentMenu_ = file->addMenu(QStringLiteral("Recent Scenes"));
    connect(recentMenu_, &QMenu::aboutToShow, this, &host_main_window::fill_recent_menu);
    file->addSeparator();
    connect(add_entry(file, QStringLiteral("&Save Scene"), QKeySequence::Save), &QAction::triggered,
            this, &host_main_window::save_scene);
    connect(add_entry(file, QStringLiteral("Save Scene &As..."), QKeySequence::SaveAs),
            &QAction::triggered, this, &host_main_window::save_scene_as);
    file->addSeparator();
    connect(add_entry(file, QStringLiteral("&Reference Rig...")), &QAction::triggered, this,
            &host_main_window::reference_rig);
    file->addSeparator();
    connect(add_entry(file, QStringLiteral("E&xit"), QKeySequence::Quit), &QAction::triggered, this,
            &QWidget::close);
}

void host_main_window::closeEvent(QCloseEvent* event) {
    if (!may_discard_scene()) {
        event->ignore();
        return;
    }
    QSettings settings = program_settings();
    settings.setValue(geometry_key, saveGeometry());
    settings.setValue(state_key, saveState());
    event->accept();
}

bool host_main_window::event(QEvent* event) {
    // The picker makes its dock floating, as in Maya; here it docks beside the outliner, once it
    // is fully made.
    if (event->type() == QEvent::ChildAdded) {
        auto* dock = qobject_cast<QDockWidget*>(static_cast<QChildEvent*>(event)->child());
        if (dock != nullptr && dock != sceneDock_)
            QTimer::singleShot(0, this, [this, dock = QPointer<QDockWidget>(dock)] {
                if (dock != nullptr)
                    dock_picker(dock);
            });
    }
    return QMainWindow::event(event);
}

void host_main_window::dock_picker(QDockWidget* dock) {
    dock->setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
    dock->setFloating(false);
    addDockWidget(Qt::RightDockWidgetArea, dock);
    if (!restoreState(program_settings().value(state_key).toByteArray()))
        resizeDocks({sceneDock_, dock}, {outliner_width, width() - outliner_width}, Qt::Horizontal);
    // A picker left floating on a screen that is gone comes back over the window.
    if (dock->isFloating() && QGuiApplication::screenAt(dock->geometry().center()) == nullptr)
        dock->move(geometry().center() - dock->rect().center());
    dock->show();
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

void host_main_window::follow_host() {
    show_scene_nodes();
    show_new_log_lines();
    show_title();
}

void host_main_window::show_new_log_lines() {
    const QStringList lines = host_.scriptLog();
    if (lines.size() < shownLogLines_) {
        log_->clear();
        shownLogLines_ = 0;
    }
    for (int i = shownLogLines_; i < lines.size(); ++i) {
        const QString& line = lines.at(i);
        if (line.startsWith(QLatin1String("// Error:")))
            log_->appendHtml(QStringLiteral("<span style=\"color:#ff6b6b\">%1</span>")
                                 .arg(line.toHtmlEscaped()));
        else
            log_->appendPlainText(line);
    }
    shownLogLines_ = static_cast<int>(lines.size());
}

void host_main_window::show_scene_nodes() {
    const QStringList nodes = host_.nodes();
    if (nodes == shownNodes_)
        return;
    shownNodes_ = nodes;
    mirroring_ = true;
    outliner_->clear();
    outliner_->addItems(nodes);
    mirroring_ = false;
    show_host_selection();
}

void host_main_window::show_title() {
    const QString path = host_.scenePath();
    const QString name = path.isEmpty() ? QStringLiteral("untitled") : QFileInfo(path).fileName();
    setWindowTitle(QStringLiteral("%1%2 - Talvora host")
                       .arg(name, host_.isModified() ? QStringLiteral("*") : QString()));
}

bool host_main_window::may_discard_scene() {
    if (!host_.isModified())
        return true;
    const QString path = host_.scenePath();
    const QMessageBox::StandardButton answer =
        picker_ask({QMessageBox::Warning, this, QStringLiteral("Save Changes"),
                    QStringLiteral("Save changes to %1?")
                        .arg(path.isEmpty() ? QStringLiteral("untitled scene") : path),
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel});
    if (answer == QMessageBox::Save)
        return save_scene();
    return answer == QMessageBox::Discard;
}

void host_main_window::new_scene() {
    if (may_discard_scene())
        run(QStringLiteral("file -new -f"));
}

void host_main_window::open_scene() {
    if (!may_discard_scene())
        return;
    const QString path =
        chosen_file(this, picker_file_question::kind::open_files, QStringLiteral("Open Scene"));
    if (!path.isEmpty())
        open_scene_file(path);
}

void host_main_window::open_scene_file(const QString& path) {
    if (run(QStringLiteral("file -open -f ") + picker_mel_quote(path)))
        remember_scene(path);
}

bool host_main_window::save_scene() {
    if (host_.scenePath().isEmpty())
        return save_scene_as();
    // The picker's pending scene write comes before a save, as before the user's next action.
    settle_host(host_);
    if (!run(QStringLiteral("file -save")))
        return false;
    remember_scene(host_.scenePath());
    return true;
}

bool host_main_window::save_scene_as() {
    QString path =
        chosen_file(this, picker_file_question::kind::save_file, QStringLiteral("Save Scene As"));
    if (path.isEmpty())
        return false;
    if (QFileInfo(path).suffix().isEmpty())
        path += QLatin1String(".ma");
    settle_host(host_);
    if (!run(QStringLiteral("file -rename ") + picker_mel_quote(path)) ||
        !run(QStringLiteral("file -save")))
        return false;
    remember_scene(path);
    return true;
}

void host_main_window::reference_rig() {
    const QString path =
        chosen_file(this, picker_file_question::kind::open_files, QStringLiteral("Reference Rig"));
    if (path.isEmpty())
        return;
    QInputDialog ask(this);
    ask.setWindowTitle(QStringLiteral("Reference Rig"));
    ask.setLabelText(QStringLiteral("Namespace"));
    ask.setTextValue(QFileInfo(path).completeBaseName());
    if (picker_exec(ask) == QDialog::Accepted && !ask.textValue().isEmpty())
        run(QStringLiteral("file -r -ns %1 %2")
                .arg(picker_mel_quote(ask.textValue()), picker_mel_quote(path)));
}

void host_main_window::run_script_line() {
    const QString mel = scriptLine_->text().trimmed();
    if (mel.isEmpty())
        return;
    if (run(mel))
        scriptLine_->clear();
}

bool host_main_window::run(const QString& mel) {
    log_->appendPlainText(mel);
    picker_mel_value result;
    const host_status status = host_.executeCommand(mel, &result);
    // Echoed lines are not in the host's log: keep the count of what came from there.
    follow_host();
    if (status && !result.items.join(QString()).isEmpty())
        log_->appendPlainText(
            QStringLiteral("// Result: %1 //").arg(result.items.join(QLatin1Char(' '))));
    return status.ok();
}

void host_main_window::remember_scene(const QString& path) {
    const QString absolute = QFileInfo(path).absoluteFilePath();
    QStringList recent = recent_scenes();
    recent.removeAll(absolute);
    recent.prepend(absolute);
    store_recent_scenes(recent.mid(0, recent_scene_count));
}

void host_main_window::fill_recent_menu() {
    recentMenu_->clear();
    const QStringList recent = recent_scenes();
    for (const QString& path : recent) {
        connect(recentMenu_->addAction(path), &QAction::triggered, this, [this, path] {
            if (may_discard_scene())
                open_scene_file(path);
        });
    }
    if (recent.isEmpty())
        recentMenu_->addAction(QStringLiteral("(none)"))->setEnabled(false);
}
