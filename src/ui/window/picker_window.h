#pragma once

#include "picker_config.h"
#include "picker_main.h"
#include "picker_mirror.h"
#include "picker_piece_stream.h"
#include "picker_selection.h"
#include "picker_toolbox.h"
#include "picker_types.h"
#include "picker_view_owner.h"

#include <QByteArray>
#include <QHash>
#include <QStringList>
#include <QWidget>

#include <memory>

class QAction;
class QDockWidget;
class QKeyEvent;
class QKeySequence;
class QMenu;
class QMenuBar;
class QTabWidget;
class QTimer;
class QVBoxLayout;
class picker_find_bar;
class picker_host;
class picker_tab;
class picker_view;
struct picker_tab_record;

// The clipboard format of button lists, shared with every other picker window.
inline constexpr char picker_mime_type[] = "application/x-qt-picker-mime;value=\"buttons\"";

// Puts the buttons on the clipboard as an attribute list, in this format only.
void copyButtonsToClipboard(const QList<buttonAttributes>& buttons);
// Pushes one paste step when the clipboard holds the picker's format, even if it reads empty.
void handle_paste(picker_view* view, bool inplace);

// Marks in every tab the selection buttons naming nodes the host's scene lacks, asking the host
// about each name once.
void mark_missing_nodes(picker_host& host, const QVector<picker_tab*>& tabs);

// The picker's top-level widget inside the host's dock: tabs of views, the menus, keyboard
// dispatch and the selection mirror shared by every tab.
class picker_window : public QWidget, public picker_window_link, public picker_view_owner {
    Q_OBJECT

public:
    // The dock receives "Exit Picker"; it may be null (no host window).
    explicit picker_window(QDockWidget* dock);
    ~picker_window() override;

    // For picker_main::initialize.
    static QWidget* create(QDockWidget* dock);

    picker_view* frontPicker() const;
    picker_tab* frontTab() const;

    // The toolbox state that new buttons take.
    QRgb currentColor() const { return tools_->current().color; }
    QRgb currentTextColor() const { return tools_->current().textcolor; }
    QString currentLabel() const { return tools_->current().label; }
    int currentSize() const { return tools_->current().size; }
    // Shows the front picker's selection in the toolbox.
    void updateControls() override { tools_->updateControls(); }
    picker_toolbox* toolbox() const { return tools_.get(); }
    void clear_tabs();
    // Removes the tab and deletes its view, without asking; while the window is not closing,
    // an image no remaining tab uses leaves the scene.
    void close_tab(int index);

    // The node names the picker holds as selected, mirroring the host's selection.
    const QStringList& selection() const { return mirror_.names(); }
    // picker_view_owner
    void clearAllSelected() override;
    // Asks the host, on idle, to select exactly the mirror's names.
    bool postSelection() override;
    toolboxState buttonStyle() const override { return tools_->current(); }
    void takeKeys() override { setFocus(Qt::OtherFocusReason); }
    int moveGrid() const override;

    void setWidgetShortcut(QAction* action, const QKeySequence& sequence) const;
    bool execute_shortcut(QKeyEvent* event);

    void parse_picker_config(const QString& path);
    void add_recent(const QString& name, const QString& path);
    const string_map& recent() const { return recent_; }
    void load_one_picker(const QString& path);

    // Files: one tab a .pkr file.
    bool do_save(picker_view* view, const QString& path);

    // Scene storage: all tabs in one scene entry, each background image in one of its own.
    void streamTo(QDataStream& stream);
    void setImageData(const picker_tab* tab);
    void removeImageData(const picker_tab* tab);
    void fetchImageData(const picker_tab* tab);
    void connect_picker(picker_tab* tab);
    // Writes the tabs into the scene now if a change is waiting; updateSceneData only asks for it.
    void flushSceneData();

    // picker_window_link
    void setSelection(const QStringList& names) override;
    void reset() override;
    void streamFrom(QDataStream& stream) override;
    void fetchFrontImageData() override;
    void setBackgroundImage(const QString& key, const QPixmap& image) override;
    bool save_current() override;
    bool saveas_current(const QString& path) override;
    bool load_pickers(const QStringList& paths) override;
    // Namespaces the scene has, as picker_ListNamespaces lists them.
    void rebindFront(const QStringList& namespaces, bool rebind) override;
    // The host calls on idle, once for many changes: the marks follow at once.
    void nodesChanged() override { refresh_marks(); }

    // A tab's title as saved, without what a find adds to it.
    QString tab_title(int index) const;
    picker_find_bar* findBar() const { return find_; }

public slots:
    void new_tab();
    void close_current();
    void close_one(int index);
    void open_tab();
    void request_save();
    void request_saveas();
    // Every change raised while one event is handled ends in a single scene write.
    void updateSceneData();
    void rename_tab();
    void updateFileMenu();
    void updateEditMenu();
    void updatePickerMenu();
    void do_undo();
    void do_redo();
    // The Picker menu's entries, for the current tab.
    void add_one_button();
    void add_many_buttons();
    void update_button();
    // Asks for an image for the front tab; cancelled, offers to remove the one it has.
    void change_background();
    void about_dialog();
    void open_recent_file();
    void cut_buttons();
    void copy_buttons();
    void paste_buttons();
    void paste_inplace_buttons();
    // Asks the host, on idle, for its namespaces and binds the front picker to them; with rebind
    // the namespace dialog always shows, otherwise only when a namespace is missing.
    void request_rebind(bool rebind);
    void change_namespace();
    // Mirror and the selection's small edits (picker_window_mirror.cpp).
    void mirror_buttons();
    void select_mirror();
    void add_mirror();
    void select_all();
    void invert_selection();
    void duplicate_buttons();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    void enterEvent(QEnterEvent* event) override;
#else
    void enterEvent(QEvent* event) override;
#endif
    void leaveEvent(QEvent* event) override;

private:
    // Lights just these buttons of the tab, every other tab dark, and tells the host.
    void select_only(picker_tab* tab, const index_list& indices);
    // Holds the scene quiet while it lives.
    struct scene_quiet {
        explicit scene_quiet(int& depth) : depth_(depth) { ++depth_; }
        ~scene_quiet() { --depth_; }
        scene_quiet(const scene_quiet&) = delete;
        scene_quiet& operator=(const scene_quiet&) = delete;
        int& depth_;
    };

    void make_file_menu(QDockWidget* dock);
    void make_edit_menu();
    void make_picker_menu();
    void make_help_menu();
    void make_selection_entries();
    void make_mirror_entries();
    // Enabled as the front tab's lit buttons and the host's selection allow.
    void refresh_mirror_actions();
    // The mirrored names of the host's selection, after it when add, asked of the host at once.
    void select_mirrored(bool add);
    // Of the names, those the scene holds.
    QStringList existing_nodes(const QStringList& names) const;
    // Asks the host, on idle, to select exactly these names (none: clears its selection).
    void ask_host_to_select(const QStringList& names);
    // Reads the settings lines of the configuration file; false for a line of pickers.
    bool read_setting(const QStringList& tokens, const QString& path);
    QAction* add_entry(QMenu* menu, const QString& text, bool onWindow);
    picker_view* view_at(int index) const;
    picker_tab* tab_at(int index) const;
    // A view for the tab, this window's.
    picker_view* make_view(picker_tab* tab);
    // The Edit menu's actions, enabled as the front tab's undo history, its lit buttons and the
    // clipboard allow; kept current as those change, so their keys work without the menu.
    void refresh_edit_actions();
    // Follows the front tab's undo history and lit buttons.
    void follow_front_tab();
    void clipboard_changed();
    // Whether a key pressed now is the picker's: the focus is on the window or a canvas.
    bool keys_are_ours() const;
    // The window's own enabled actions carrying the event's key sequence, in the order added.
    QList<QAction*> actions_for(const QKeyEvent* event) const;
    // The last picker files opened or saved, most recent first, as the File menu lists them.
    void remember_picker(const QString& path);
    void fill_recent_pickers();
    // The buttons or the scene changed: find and missing-node marks are worked out again once
    // the current event is handled.
    void marks_stale();
    void refresh_marks();
    // A view holding the tab as read from a file or the scene.
    picker_view* view_from_record(const picker_tab_record& record);
    // The tab at index as files and the scene keep it.
    picker_tab_record tab_record(int index);
    // The tab's background as a PNG file, encoded once per image.
    QByteArray background_png(const picker_tab* tab);
    // All tabs as the tab stream, in pieces that the scene write compresses apart.
    QVector<picker_stream_piece> stream_pieces();

    QMenuBar* mbar_ = nullptr;
    QTabWidget* tabs_ = nullptr;
    QMenu* filem_ = nullptr;
    QMenu* editm_ = nullptr;
    QMenu* pickm_ = nullptr;
    QMenu* helpm_ = nullptr;
    QAction* newx_ = nullptr;
    QAction* openx_ = nullptr;
    QAction* savex_ = nullptr;
    QAction* saveasx_ = nullptr;
    QAction* renamex_ = nullptr;
    QAction* closex_ = nullptr;
    QAction* exitx_ = nullptr;
    QAction* undox_ = nullptr;
    QAction* redox_ = nullptr;
    QAction* copyx_ = nullptr;
    QAction* cutx_ = nullptr;
    QAction* pastex_ = nullptr;
    QAction* inplacex_ = nullptr;
    QAction* addx_ = nullptr;
    QAction* manyx_ = nullptr;
    QAction* updatex_ = nullptr;
    QAction* bkgnx_ = nullptr;
    QAction* namex_ = nullptr;
    QAction* togglex_ = nullptr;
    QAction* findx_ = nullptr;
    QAction* findNextx_ = nullptr;
    QAction* findPreviousx_ = nullptr;
    QAction* selallx_ = nullptr;
    QAction* invertx_ = nullptr;
    QAction* duplicatex_ = nullptr;
    QAction* mirrorx_ = nullptr;
    QAction* selmirrorx_ = nullptr;
    QAction* addmirrorx_ = nullptr;
    picker_mirror_rules mirrorRules_ = defaultMirrorRules();
    // Picker units a duplicate is offset by, and a snapped drag moves in.
    int gridSize_ = 10;
    QMenu* recentFiles_ = nullptr;
    // Destroyed before the child widgets connected to it, so none reaches a half-destroyed window.
    std::unique_ptr<picker_toolbox> tools_;
    picker_find_bar* find_ = nullptr;
    QTimer* marksTimer_ = nullptr;
    string_map recent_;
    QVBoxLayout* wlist_ = nullptr;
    bool closing_ = false;
    // While the pickers are reset or restored for a scene, nothing is written into a scene:
    // reading one never marks it modified, and nothing meant for one lands in the next.
    int sceneQuiet_ = 0;
    picker_selection mirror_;
    QList<QMetaObject::Connection> frontConnections_;
    // Whether the clipboard holds buttons, read only when it changes.
    bool canPaste_ = false;
    // PNG files of the backgrounds by pixmap cache key; a new image has a new key.
    QHash<qint64, QByteArray> pngs_;
    // Runs the waiting scene write once the current event is handled.
    QTimer* sceneTimer_ = nullptr;
    bool scenePending_ = false;
    picker_record_cache sceneRecords_;
    picker_piece_compressor sceneCompressor_;
};
