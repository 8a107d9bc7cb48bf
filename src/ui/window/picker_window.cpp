#include "picker_window.h"

#include "picker_background_key.h"
#include "picker_dialog.h"
#include "picker_file.h"
#include "picker_find_bar.h"
#include "picker_mel_quote.h"
#include "picker_prompt.h"
#include "picker_tab.h"
#include "picker_version.h"
#include "picker_view.h"

#include <QAbstractSpinBox>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDataStream>
#include <QDockWidget>
#include <QFile>
#include <QInputDialog>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QTabBar>
#include <QTabWidget>
#include <QTextEdit>
#include <QTextStream>
#include <QVBoxLayout>

namespace {

// Widgets that take typed text for their own.
bool takes_text(const QWidget* widget) {
    if (const auto* combo = qobject_cast<const QComboBox*>(widget))
        return combo->isEditable();
    return qobject_cast<const QLineEdit*>(widget) != nullptr ||
           qobject_cast<const QTextEdit*>(widget) != nullptr ||
           qobject_cast<const QPlainTextEdit*>(widget) != nullptr ||
           qobject_cast<const QAbstractSpinBox*>(widget) != nullptr;
}

QKeySequence sequence_of(const QKeyEvent* event) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return QKeySequence(event->keyCombination());
#else
    return QKeySequence(static_cast<int>(event->modifiers()) | event->key());
#endif
}

} // namespace

picker_window::picker_window(QDockWidget* dock) : QWidget(dock) {
    setWindowTitle(QStringLiteral("TalvoraPicker"));
    setObjectName(QStringLiteral("TalvoraPicker"));
    setWindowIcon(QIcon(QStringLiteral(":/resources/TalvoraLogo.png")));
    setAttribute(Qt::WA_DeleteOnClose);

    mbar_ = new QMenuBar(this);
    tabs_ = new QTabWidget(this);
    tabs_->setMovable(true);
    tabs_->setTabsClosable(true);
    // The picker's keys (arrows nudge) go to the window, never to the tab bar.
    tabs_->setFocusPolicy(Qt::NoFocus);
    tabs_->tabBar()->setFocusPolicy(Qt::NoFocus);

    filem_ = mbar_->addMenu(tr("&File"));
    editm_ = mbar_->addMenu(tr("&Edit"));
    pickm_ = mbar_->addMenu(tr("&Picker"));
    helpm_ = mbar_->addMenu(tr("&Help"));
    make_file_menu(dock);
    make_edit_menu();
    make_picker_menu();
    make_help_menu();

    new_tab();

    wlist_ = new QVBoxLayout;
    wlist_->setSpacing(0);
    wlist_->setContentsMargins(0, 0, 0, 0);
    wlist_->setMenuBar(mbar_);
    wlist_->addWidget(tabs_, 0);
    tools_ = std::make_unique<picker_toolbox>(this, wlist_, togglex_);
    find_ = new picker_find_bar(this, tabs_, wlist_);
    setLayout(wlist_);

    connect(filem_, &QMenu::aboutToShow, this, &picker_window::updateFileMenu);
    connect(editm_, &QMenu::aboutToShow, this, &picker_window::updateEditMenu);
    connect(pickm_, &QMenu::aboutToShow, this, &picker_window::updatePickerMenu);
    connect(tabs_, &QTabWidget::tabCloseRequested, this, &picker_window::close_one);
    connect(tabs_, &QTabWidget::currentChanged, this, &picker_window::follow_front_tab);
    connect(QApplication::clipboard(), &QClipboard::dataChanged, this,
            &picker_window::clipboard_changed);
    clipboard_changed();
    follow_front_tab();

    parse_picker_config(picker_config_path());
}

picker_window::~picker_window() {
    flushSceneData();
    closing_ = true;
    clear_tabs();
}

QWidget* picker_window::create(QDockWidget* dock) {
    return new picker_window(dock);
}

QAction* picker_window::add_entry(QMenu* menu, const QString& text, bool onWindow) {
    QAction* action = menu->addAction(text);
    if (onWindow)
        addAction(action);
    return action;
}

void picker_window::make_file_menu(QDockWidget* dock) {
    newx_ = add_entry(filem_, tr("New..."), true);
    setWidgetShortcut(newx_, QKeySequence(QStringLiteral("Ctrl+N")));
    connect(newx_, &QAction::triggered, this, &picker_window::new_tab);
    openx_ = add_entry(filem_, tr("Open..."), true);
    setWidgetShortcut(openx_, QKeySequence(QStringLiteral("Ctrl+O")));
    connect(openx_, &QAction::triggered, this, &picker_window::open_tab);
    recentFiles_ = filem_->addMenu(tr("Recent Pickers"));
    filem_->addSeparator();
    savex_ = add_entry(filem_, tr("Save"), true);
    setWidgetShortcut(savex_, QKeySequence(QStringLiteral("Ctrl+S")));
    connect(savex_, &QAction::triggered, this, &picker_window::request_save);
    saveasx_ = add_entry(filem_, tr("Save As..."), true);
    connect(saveasx_, &QAction::triggered, this, &picker_window::request_saveas);
    filem_->addSeparator();
    renamex_ = add_entry(filem_, tr("Rename Tab..."), true);
    connect(renamex_, &QAction::triggered, this, &picker_window::rename_tab);
    closex_ = add_entry(filem_, tr("Close Tab..."), true);
    setWidgetShortcut(closex_, QKeySequence(QStringLiteral("Ctrl+W")));
    connect(closex_, &QAction::triggered, this, &picker_window::close_current);
    filem_->addSeparator();
    exitx_ = add_entry(filem_, tr("Exit Picker"), true);
    setWidgetShortcut(exitx_, QKeySequence(QStringLiteral("Ctrl+Shift+W")));
    if (dock != nullptr)
        connect(exitx_, &QAction::triggered, dock, &QDockWidget::close);
}

void picker_window::make_edit_menu() {
    undox_ = add_entry(editm_, tr("Undo"), true);
    setWidgetShortcut(undox_, QKeySequence(QStringLiteral("Ctrl+Z")));
    connect(undox_, &QAction::triggered, this, &picker_window::do_undo);
    redox_ = add_entry(editm_, tr("Redo"), true);
    setWidgetShortcut(redox_, QKeySequence(QStringLiteral("Shift+Ctrl+Z")));
    connect(redox_, &QAction::triggered, this, &picker_window::do_redo);
    editm_->addSeparator();
    cutx_ = add_entry(editm_, tr("Cut"), true);
    setWidgetShortcut(cutx_, QKeySequence(QStringLiteral("Ctrl+X")));
    connect(cutx_, &QAction::triggered, this, &picker_window::cut_buttons);
    copyx_ = add_entry(editm_, tr("Copy"), true);
    setWidgetShortcut(copyx_, QKeySequence(QStringLiteral("Ctrl+C")));
    connect(copyx_, &QAction::triggered, this, &picker_window::copy_buttons);
    pastex_ = add_entry(editm_, tr("Paste"), true);
    setWidgetShortcut(pastex_, QKeySequence(QStringLiteral("Ctrl+V")));
    connect(pastex_, &QAction::triggered, this, &picker_window::paste_buttons);
    // Shown with its keys in the menu but kept off the window, so the keys alone never paste
    // in place.
    inplacex_ = add_entry(editm_, tr("Paste in Place"), false);
    setWidgetShortcut(inplacex_, QKeySequence(QStringLiteral("Shift+Ctrl+V")));
    connect(inplacex_, &QAction::triggered, this, &picker_window::paste_inplace_buttons);
    make_selection_entries();
    editm_->addSeparator();
    findx_ = add_entry(editm_, tr("Find..."), true);
    setWidgetShortcut(findx_, QKeySequence(QStringLiteral("Ctrl+F")));
    connect(findx_, &QAction::triggered, this, [this] { find_->open(); });
    findNextx_ = add_entry(editm_, tr("Find Next"), true);
    setWidgetShortcut(findNextx_, QKeySequence(QStringLiteral("F3")));
    connect(findNextx_, &QAction::triggered, this, [this] { find_->find_next(); });
    findPreviousx_ = add_entry(editm_, tr("Find Previous"), true);
    setWidgetShortcut(findPreviousx_, QKeySequence(QStringLiteral("Shift+F3")));
    connect(findPreviousx_, &QAction::triggered, this, [this] { find_->find_previous(); });
    editm_->addSeparator();
    togglex_ = add_entry(editm_, QStringLiteral("Hide Toolbox"), true);
}

void picker_window::make_picker_menu() {
    addx_ = add_entry(pickm_, QStringLiteral("Add One Button"), true);
    connect(addx_, &QAction::triggered, this, &picker_window::add_one_button);
    manyx_ = add_entry(pickm_, QStringLiteral("Add Many Buttons"), true);
    connect(manyx_, &QAction::triggered, this, &picker_window::add_many_buttons);
    updatex_ = add_entry(pickm_, QStringLiteral("Update Button"), true);
    connect(updatex_, &QAction::triggered, this, &picker_window::update_button);
    pickm_->addSeparator();
    bkgnx_ = add_entry(pickm_, QStringLiteral("Change Background..."), true);
    connect(bkgnx_, &QAction::triggered, this, &picker_window::change_background);
    namex_ = add_entry(pickm_, QStringLiteral("Change Namespace..."), false);
    connect(namex_, &QAction::triggered, this, &picker_window::change_namespace);
    make_mirror_entries();
}

void picker_window::add_one_button() {
    picker_view* view = frontPicker();
    if (view == nullptr || selection().isEmpty())
        return;
    view->add_one_button();
    view->frame_view();
}

void picker_window::add_many_buttons() {
    picker_view* view = frontPicker();
    if (view == nullptr || selection().isEmpty())
        return;
    view->add_many_buttons();
}

void picker_window::update_button() {
    picker_view* view = frontPicker();
    if (view != nullptr && !selection().isEmpty())
        view->update_button();
}

void picker_window::change_background() {
    picker_tab* tab = frontTab();
    if (tab == nullptr)
        return;
    const QStringList chosen = picker_ask_files(
        {picker_file_question::kind::open_file, this, QStringLiteral("Choose Background"),
         QString(), QStringLiteral("Images (*.png *.xpm *.jpg)"), QString()});
    if (chosen.isEmpty()) {
        if (tab->background().isNull())
            return;
        picker_message question{QMessageBox::Question, this, QStringLiteral("Background"),
                                QStringLiteral("Remove current background image?"),
                                QMessageBox::Yes | QMessageBox::Cancel};
        question.defaultButton = QMessageBox::Cancel;
        if (picker_ask(question) != QMessageBox::Yes)
            return;
    }
    if (!tab->background().isNull())
        removeImageData(tab);
    const QPixmap image = chosen.isEmpty() ? QPixmap() : QPixmap(chosen.first());
    // A file that does not load leaves the tab without a background, and the scene without an
    // entry for it.
    tab->setBackground(image.isNull() ? QString() : backgroundKeyOf(image.toImage()), image);
    setImageData(tab);
    updateSceneData();
}

void picker_window::make_help_menu() {
    QAction* about = add_entry(helpm_, QStringLiteral("About TalvoraPicker..."), true);
    connect(about, &QAction::triggered, this, &picker_window::about_dialog);
}

void picker_window::setWidgetShortcut(QAction* action, const QKeySequence& sequence) const {
    action->setShortcut(sequence);
    action->setShortcutContext(Qt::WidgetShortcut);
}

picker_view* picker_window::view_at(int index) const {
    return qobject_cast<picker_view*>(tabs_->widget(index));
}

picker_tab* picker_window::tab_at(int index) const {
    const picker_view* view = view_at(index);
    return view != nullptr ? view->tab() : nullptr;
}

picker_view* picker_window::frontPicker() const {
    return view_at(tabs_->currentIndex());
}

picker_tab* picker_window::frontTab() const {
    return tab_at(tabs_->currentIndex());
}

picker_view* picker_window::make_view(picker_tab* tab) {
    auto* view = new picker_view(tab, this, tabs_);
    view->contextMenu()->addSeparator();
    view->contextMenu()->addActions({mirrorx_, selmirrorx_, addmirrorx_});
    return view;
}

void picker_window::new_tab() {
    picker_view* view = make_view(new picker_tab(&mirror_));
    tabs_->setCurrentIndex(tabs_->addTab(view, tr("Untitled")));
    connect_picker(view->tab());
}

void picker_window::close_current() {
    if (tabs_->count() > 0 && tabs_->currentIndex() >= 0)
        close_one(tabs_->currentIndex());
}

void picker_window::clear_tabs() {
    for (int i = tabs_->count() - 1; i >= 0; --i)
        close_tab(i);
}

void picker_window::reset() {
    const scene_quiet quiet(sceneQuiet_);
    // A write still waiting was meant for the scene that went.
    scenePending_ = false;
    clear_tabs();
    new_tab();
}

void picker_window::rename_tab() {
    const int index = tabs_->currentIndex();
    if (index < 0)
        return;
    bool accepted = false;
    const QString name = QInputDialog::getText(this, tr("Tab Name"), tr("Name"), QLineEdit::Normal,
                                               tab_title(index), &accepted);
    if (accepted && !name.isEmpty())
        find_->setTitle(index, name);
}

void picker_window::updateFileMenu() {
    fill_recent_pickers();
    const bool anyTab = tabs_->count() > 0;
    savex_->setEnabled(anyTab);
    saveasx_->setEnabled(anyTab);
    renamex_->setEnabled(anyTab);
    closex_->setEnabled(anyTab);
}

void picker_window::updateEditMenu() {
    refresh_edit_actions();
}

void picker_window::follow_front_tab() {
    // Qt 5 hands the keys on to the next control in the chain when the page that had them
    // goes; they stay the picker's unless a text field has them.
    const QWidget* focus = QApplication::focusWidget();
    if (focus != nullptr && focus != this && isAncestorOf(focus) && !takes_text(focus))
        setFocus(Qt::OtherFocusReason);
    for (const QMetaObject::Connection& connection : std::as_const(frontConnections_))
        disconnect(connection);
    frontConnections_.clear();
    if (picker_tab* tab = frontTab()) {
        const QUndoStack* stack = tab->undoer();
        const auto refresh = [this] { refresh_edit_actions(); };
        frontConnections_ << connect(stack, &QUndoStack::indexChanged, this, refresh)
                          << connect(stack, &QUndoStack::cleanChanged, this, refresh)
                          << connect(tab, &picker_tab::litChanged, this, refresh);
    }
    refresh_edit_actions();
    if (tools_ != nullptr)
        tools_->frontChanged();
}

void picker_window::refresh_edit_actions() {
    picker_tab* tab = frontTab();
    if (tab == nullptr) {
        // Paste in Place keeps whatever state it had.
        undox_->setText(QStringLiteral("Can't Undo"));
        undox_->setEnabled(false);
        redox_->setText(QStringLiteral("Can't Redo"));
        redox_->setEnabled(false);
        copyx_->setEnabled(false);
        cutx_->setEnabled(false);
        pastex_->setEnabled(false);
        refresh_mirror_actions();
        return;
    }
    const QUndoStack* stack = tab->undoer();
    undox_->setEnabled(stack->canUndo());
    undox_->setText(stack->canUndo() ? QStringLiteral("Undo %1").arg(stack->undoText())
                                     : tr("Can't Undo"));
    redox_->setEnabled(stack->canRedo());
    redox_->setText(stack->canRedo() ? QStringLiteral("Redo %1").arg(stack->redoText())
                                     : tr("Can't Redo"));
    const bool anySelected = tab->any_selected();
    cutx_->setEnabled(anySelected);
    copyx_->setEnabled(anySelected);
    pastex_->setEnabled(canPaste_);
    inplacex_->setEnabled(canPaste_);
    refresh_mirror_actions();
}

void picker_window::clipboard_changed() {
    const QMimeData* mime = QApplication::clipboard()->mimeData();
    canPaste_ = mime != nullptr && mime->hasFormat(QLatin1String(picker_mime_type));
    refresh_edit_actions();
}

void picker_window::updatePickerMenu() {
    const bool anyTab = tabs_->count() > 0;
    addx_->setEnabled(anyTab);
    manyx_->setEnabled(anyTab);
    updatex_->setEnabled(anyTab);
    bkgnx_->setEnabled(anyTab);
}

void picker_window::do_undo() {
    if (picker_tab* tab = frontTab())
        tab->undoer()->undo();
}

void picker_window::do_redo() {
    if (picker_tab* tab = frontTab())
        tab->undoer()->redo();
}

void picker_window::change_namespace() {
    request_rebind(true);
}

void picker_window::request_rebind(bool rebind) {
    picker_host* host = picker_main::host();
    if (host == nullptr)
        return;
    host->executeCommandOnIdle(QStringLiteral("TalvoraPicker \"%1\" `picker_ListNamespaces`;")
                                   .arg(rebind ? QStringLiteral("rebind") : QStringLiteral("bind")),
                               false);
}

void picker_window::rebindFront(const QStringList& namespaces, bool rebind) {
    rebind_tab(frontPicker(), frontTab(), namespaces, rebind);
}

void picker_window::about_dialog() {
    const QString build = QString::fromLatin1(__TIME__).left(2);
    QMessageBox::about(
        this, tr("About"),
        QStringLiteral("TalvoraPicker\nVersion %1 (build %2)\n"
                       "An animation picker for Maya. \u00a9 2024\u20132026 Talvora.")
            .arg(QLatin1String(PICKER_VERSION), build));
}

void picker_window::setSelection(const QStringList& names) {
    mirror_.setNames(names);
    if (tabs_->count() == 0) {
        addx_->setEnabled(false);
        manyx_->setEnabled(false);
        updatex_->setEnabled(false);
        return;
    }
    // Interned once for every tab: each button name then costs an array look-up.
    const name_lookup lookup(names.cbegin(), names.cend());
    for (int i = 0; i < tabs_->count(); ++i) {
        if (picker_tab* tab = tab_at(i))
            tab->conform_to_set(lookup);
    }
    const bool any = !lookup.isEmpty();
    addx_->setEnabled(any);
    manyx_->setEnabled(any);
    updatex_->setEnabled(any);
    refresh_mirror_actions();
}

void picker_window::clearAllSelected() {
    for (int i = 0; i < tabs_->count(); ++i) {
        if (picker_tab* tab = tab_at(i))
            tab->clear_selected();
    }
    mirror_.clear();
}

bool picker_window::postSelection() {
    ask_host_to_select(mirror_.names());
    return true;
}

void picker_window::ask_host_to_select(const QStringList& names) {
    picker_host* host = picker_main::host();
    if (host == nullptr)
        return;
    if (names.isEmpty()) {
        host->executeCommandOnIdle(QStringLiteral("TalvoraPicker clear"), false);
        return;
    }
    QString command = QStringLiteral("TalvoraPicker select");
    for (const QString& name : names)
        command += QLatin1Char(' ') + picker_mel_quote(name);
    host->executeCommandOnIdle(command, false);
}

QList<QAction*> picker_window::actions_for(const QKeyEvent* event) const {
    QList<QAction*> matching;
    const QKeySequence sequence = sequence_of(event);
    const QList<QAction*> own = actions();
    for (QAction* action : own) {
        if (action->isEnabled() && action->shortcuts().contains(sequence))
            matching.append(action);
    }
    return matching;
}

bool picker_window::keys_are_ours() const {
    // Text fields keep their keys: a label typed in the toolbox is not a shortcut.
    const QWidget* focus = QApplication::focusWidget();
    return focus == this || (focus != nullptr && isAncestorOf(focus) && !takes_text(focus));
}

bool picker_window::execute_shortcut(QKeyEvent* event) {
    if (!keys_are_ours())
        return false;
    const QList<QAction*> matching = actions_for(event);
    for (QAction* action : matching)
        action->trigger();
    return !matching.isEmpty();
}

bool picker_window::event(QEvent* event) {
    // Qt would settle our own keys itself, and drop those several actions share; claimed here
    // they arrive as key presses, where every action carrying them fires.
    if (event->type() == QEvent::ShortcutOverride && keys_are_ours() &&
        !actions_for(static_cast<QKeyEvent*>(event)).isEmpty()) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void picker_window::keyPressEvent(QKeyEvent* event) {
    // The keys reach the window, not the view: the edit cursor follows Control from here.
    if (picker_view* view = frontPicker())
        view->adjustCursor(false);
    if (event->key() != 0 && event->key() != Qt::Key_unknown) {
        if (execute_shortcut(event)) {
            event->accept();
            return;
        }
        // Keys no picker action takes go on to the host.
        if (tabs_->count() > 0) {
            picker_view* view = frontPicker();
            if (view == nullptr)
                return;
            if (view->execute_shortcut(event)) {
                event->accept();
                return;
            }
        }
    }
    QWidget::keyPressEvent(event);
}

void picker_window::keyReleaseEvent(QKeyEvent* event) {
    if (picker_view* view = frontPicker())
        view->adjustCursor(false);
    QWidget::keyReleaseEvent(event);
}

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
void picker_window::enterEvent(QEnterEvent* event) {
#else
void picker_window::enterEvent(QEvent* event) {
#endif
    QWidget::enterEvent(event);
    // Typing meant for a text field elsewhere (the host's script line) stays there.
    const QWidget* focus = QApplication::focusWidget();
    if (focus != nullptr && focus != this && !isAncestorOf(focus) && takes_text(focus))
        return;
    setFocus(Qt::MouseFocusReason);
}

void picker_window::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    clearFocus();
}

void picker_window::streamFrom(QDataStream& stream) {
    const scene_quiet quiet(sceneQuiet_);
    picker_tab_set set;
    const picker_read_result result = readTabStream(stream, set);
    if (result.version > picker_format_version) {
        picker_ask(
            {QMessageBox::Warning, nullptr, tr("Warning"),
             QStringLiteral("The scene file contains data\nin a format (%1) more recent than the "
                            "version of the picker\ninstalled in this machine can understand.  "
                            "Please update\nthe picker, and try again.\n")
                 .arg(result.version),
             QMessageBox::Ok});
        return;
    }
    if (!result.ok() && result.tabCount < 0) {
        picker_main::report_error(host_status::failure(result.error),
                                  "could not read the pickers stored in the scene");
        return;
    }
    if (!result.ok()) {
        const QByteArray lost = QStringLiteral("the pickers stored in the scene are damaged; "
                                               "%1 of %2 tabs were restored")
                                    .arg(result.wholeTabs)
                                    .arg(result.tabCount)
                                    .toUtf8();
        picker_main::report_error(host_status::failure(result.error), lost.constData());
        // Nothing whole to show: the tabs the window has stay.
        if (result.wholeTabs == 0)
            return;
    }
    clear_tabs();
    for (const picker_tab_record& tab : set.tabs.mid(0, result.wholeTabs)) {
        picker_view* view = view_from_record(tab);
        tabs_->addTab(view, tab.title);
        view->fitWhenShown();
        connect_picker(view->tab());
    }
    if (set.current >= 0 && set.current < tabs_->count())
        tabs_->setCurrentIndex(set.current);
}

void picker_window::parse_picker_config(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return;
    QTextStream in(&file);
    for (QString line = in.readLine(); !line.isNull(); line = in.readLine()) {
        QStringList tokens;
        tokenize(static_cast<int>(line.size()), line, tokens);
        if (read_setting(tokens, path))
            continue;
        if (tokens.size() == 3 && tokens.at(1) == QLatin1String("="))
            add_recent(tokens.at(0), tokens.at(2));
    }
}

void picker_window::add_recent(const QString& name, const QString& path) {
    if (recent_.isEmpty())
        filem_->addSeparator();
    // Configuration files are shared with Windows machines; their paths arrive with backslashes,
    // which fromNativeSeparators leaves alone here.
    recent_.insert(name, QString(path).replace(QLatin1Char('\\'), QLatin1Char('/')));
    QAction* action = add_entry(filem_, name, true);
    connect(action, &QAction::triggered, this, &picker_window::open_recent_file);
}

void picker_window::open_recent_file() {
    const auto* action = qobject_cast<const QAction*>(sender());
    if (action == nullptr)
        return;
    const auto found = recent_.constFind(action->text());
    if (found != recent_.constEnd())
        load_one_picker(found.value());
}
