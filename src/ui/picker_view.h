#pragma once

#include "picker_node_ids.h"
#include "picker_overlay.h"
#include "picker_types.h"

#include <QCursor>
#include <QImage>
#include <QList>
#include <QPixmap>
#include <QPoint>
#include <QRect>
#include <QRectF>
#include <QSet>
#include <QString>
#include <QTimer>
#include <QUndoStack>
#include <QVector>
#include <QWidget>

#include <memory>
#include <vector>

class QAction;
class QDataStream;
class QKeyEvent;
class QKeySequence;
class QMenu;
class QMouseEvent;
class QPainter;
class QPaintEvent;
class QResizeEvent;
class QWheelEvent;
class picker_mouse_cmd;
class picker_window;

using button_list = QList<buttonRecord>;

// The view's zoom stays inside [0.25, 16].
float limitZoom(float z);
// (b - a) * t + a.
float mix_fn(float t, float a, float b);
// Adds one half and truncates toward zero: halves round up for positive values only.
inline double round_fn(double x) {
    return static_cast<double>(static_cast<int>(x + 0.5));
}

// A button face drawn once into an image that every view copies, and the last paint that did.
struct cached_face {
    QImage image;
    quint64 paint = 0;
};

// A button drawn whole as one copy of a cached face: what the face was worked out from besides
// the zoom and offset, and where it was copied, so the next paint copies an unchanged button
// again without working its face out.
struct face_copy {
    QRect bounds;
    quint64 look = 0;
    qint64 label = 0;
    quint64 generation = 0; // of the face cache: face stays good while this holds
    QPoint at;
    cached_face* face = nullptr;
};

// One tab's canvas: its buttons, background, undo history and overlays, shown through a zoom and
// an offset, with the pointer gesture in progress.
class picker_view : public QWidget {
    Q_OBJECT

public:
    // One end of a zoom animation.
    struct animationRecord {
        float zoom = 0.0f;
        QPoint shift;
    };
    struct interpolateRecord {
        float time = 0.0f; // 0 at the start, 0.125 more a tick
        animationRecord start;
        animationRecord target;
    };

    // The window may be null (a view on its own, as pkrtool and the tests use it).
    explicit picker_view(picker_window* window = nullptr, QWidget* parent = nullptr);
    ~picker_view() override;

    QUndoStack* undoer() { return &undoer_; }
    picker_window* window() const { return window_; }
    overlay_list* overlay() { return &overlay_; }
    button_list* buttons() { return &blist_; }
    const button_list& buttons() const { return blist_; }
    const QPixmap& background() const { return back_; }
    const QString& backgroundKey() const { return bkey_; }
    void setBackground(const QString& key, const QPixmap& pixmap);
    const QString& path() const { return path_; }
    void setPath(const QString& path) { path_ = path; }
    void refresh() { update(); }
    void signal_changed() { emit changed(); }
    void update_label(buttonRecord* rec) { make_button_label(rec->att, rec); }
    // Asks the window to show the toolbox state again.
    void update_toolbox();

    // Picker space <-> widget pixels. The rectangle forms map the four edges one by one and keep
    // the plain differences as width and height (no +1).
    QPoint mapToPicker(const QPoint& p) const;
    QRect mapToPicker(const QRect& r) const;
    QPoint mapToScreen(const QPoint& p) const;
    QRect mapToScreen(const QRect& r) const;
    QRectF mapToScreenF(const QRect& r) const;

    qreal zoom() const { return zoom_; }
    QPoint shift() const { return shift_; }
    void setShift(const QPoint& s);
    // Immediately, keeping the picker point under the anchor where it is.
    void setZoom(float z, const QPoint& anchor);
    // Glides to the zoom and offset over eight ticks of 20 ms; z is taken as given.
    void zoomWindow(float z, const QPoint& shift);
    // Glides so that the picker rectangle fills three quarters of the view.
    void frameBounds(const QRect& bounds, bool noZoomIn);
    bool animating() const { return timer_.isActive(); }
    // The union of the buttons' bounds (only the lit ones with selectedOnly), or an empty rect.
    QRect button_bounds(bool selectedOnly) const;
    bool any_selected() const;
    // The attributes of the lit buttons, in list order (what the clipboard takes).
    button_att_list getButtons() const;

    // Draws canvas, background, buttons meeting area (widget pixels) and, unless told not to,
    // the overlays.
    void paint(QPainter& p, const QRect& area, bool overlays = true);
    // Builds rec's label image and bounds from att; the label is rendered once at zoom 1.
    void make_button_label(const buttonAttributes& att, buttonRecord* rec);

    // The earliest button whose screen rectangle holds p, although later ones are drawn on top.
    buttonRecord* find_button(const QPoint& p);
    void adjustCursor(bool force);
    // Keys the window forwards for the front tab; every enabled action bound to them fires.
    bool execute_shortcut(QKeyEvent* e);
    void setWidgetShortcut(QAction* a, const QKeySequence& k) const;
    // Runs a command button's script through the host when it is next idle.
    void do_button_action(const buttonAttributes& att);
    // Installs the gesture that the next pointer events go to.
    void addMouseCommand(std::unique_ptr<picker_mouse_cmd> cmd);
    picker_mouse_cmd* mouseCommand() const { return cmd_.get(); }
    QMenu* contextMenu() const { return menu_.get(); }
    QPoint lastClick() const { return lastClick_; }

    // Appends when index < 0; returns where the button now is. No repaint, no signal.
    int push_button(const buttonAttributes& att, int index);
    void pop_button(int index);
    // Also forgets the undo history, whose indices would no longer hold.
    void reset_buttons();
    void set_button_size(buttonRecord* rec, int size);
    void set_button_label(buttonRecord* rec, const QString& label);

    // Lights each button from the names: 1 all of its names, 2 some, 0 none (a button without
    // names counts as all). Only flags change, nothing goes back to the host. True when any
    // button's lit state changed.
    bool conform_to_set(const button_set& names);
    bool conform_to_set(const name_lookup& names);
    bool conform_to_selection();
    void append_selected(button_set& out) const;
    bool conform_to_selected();
    bool unselect(buttonRecord* rec);
    // Unlights every lit button, handing its names to the selection mirror.
    bool clear_selected();
    // area in widget pixels; add false toggles fully lit buttons off.
    bool select_bounds(const QRect& area, bool add);
    void select_list(const QVector<int>& indices, bool flag);

    void streamTo(QDataStream& stream) const;
    void streamFrom(QDataStream& stream, int version);

public slots:
    void reset_view();
    void frame_view();
    void animate_zoom();
    void change_background();

    void add_one_button();
    void add_many_buttons();
    void update_button();
    void delete_button();
    void add_command_button();
    void align_horizontal();
    void align_vertical();
    void distribute_horizontal();
    void distribute_vertical();
    void adjust_size_up();
    void adjust_size_down();
    void nudge_left();
    void nudge_right();
    void nudge_up();
    void nudge_down();

signals:
    void changed();

protected:
    void paintEvent(QPaintEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    void wheelEvent(QWheelEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;
    void keyReleaseEvent(QKeyEvent* e) override;

private:
    void draw_buttons(QPainter& p, const QRect& area);
    // outline: the lit state of the command button drawn last in this pass, whose pen outlines
    // the shape; no pen before any. copy: how the button was drawn last, and is drawn now.
    void draw_one_button(QPainter& p, const buttonRecord& b, int outline, face_copy& copy) const;
    void draw_command_button(QPainter& p, const buttonRecord& b, face_copy& copy) const;
    static bool label_cut_out(const buttonRecord& b);
    void nudge_buttons(int dx, int dy);
    // Context menu, actions, shortcuts, cursors and pointer tracking.
    void build_input();
    // The right-button menu, entries set for what is under the pointer; runs modally.
    void show_context_menu(QMouseEvent* e);

    picker_window* window_ = nullptr;
    std::unique_ptr<picker_mouse_cmd> cmd_;
    QPoint lastClick_;
    QPoint lastPos_;
    QString lastTT_;
    std::unique_ptr<QMenu> menu_;
    QAction* addx_ = nullptr;
    QAction* manyx_ = nullptr;
    QAction* updatex_ = nullptr;
    QAction* deletex_ = nullptr;
    QAction* addcmdx_ = nullptr;
    QAction* resetx_ = nullptr;
    QAction* framex_ = nullptr;
    QAction* alignHx_ = nullptr;
    QAction* alignVx_ = nullptr;
    QAction* spreadHx_ = nullptr;
    QAction* spreadVx_ = nullptr;
    QAction* incSizex_ = nullptr;
    QAction* decSizex_ = nullptr;
    QAction* nudgeLeftx_ = nullptr;
    QAction* nudgeRightx_ = nullptr;
    QAction* nudgeUpx_ = nullptr;
    QAction* nudgeDownx_ = nullptr;
    QCursor editCursor_;
    QCursor addmanyCursor_;
    int toolbits_ = 0;
    QPoint shift_;
    qreal zoom_ = 1.0;
    button_list blist_;
    std::vector<face_copy> copies_; // by button, made at the zoom and offset below
    qreal copiesZoom_ = 0;
    QPoint copiesShift_;
    buttonRecord* lastButton_ = nullptr;
    overlay_list overlay_;
    QUndoStack undoer_;
    QTimer timer_;
    interpolateRecord animate_;
    QPixmap back_;
    QString bkey_;
    QString path_;
};
