#pragma once

#include "picker_overlay.h"
#include "picker_tab.h"
#include "picker_view_owner.h"

#include <QCursor>
#include <QImage>
#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QSet>
#include <QString>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <vector>

class QAction;
class QKeyEvent;
class QKeySequence;
class QMenu;
class QMouseEvent;
class QPainter;
class QPaintEvent;
class QResizeEvent;
class QShowEvent;
class QWheelEvent;
class picker_mouse_cmd;

// The view's zoom stays inside [0.25, 16].
float limitZoom(float z);
// (b - a) * t + a.
float mix_fn(float t, float a, float b);
// Adds one half and truncates toward zero: halves round up for positive values only.
inline double round_fn(double x) {
    return static_cast<double>(static_cast<int>(x + 0.5));
}

struct label_text;

// Where a button lands on the canvas, worked out from its attributes: its rectangle in picker
// space, centred on its position, and its label.
struct button_shape {
    QRect bounds;
    std::shared_ptr<const label_text> label; // shared by buttons with the same text; null without
};

// A button face drawn once into an image that every view copies, and the last paint that did.
// core: the run of rows every pixel of which is opaque, seen as an image without alpha, so that
// it is copied rather than blended; null when there is none.
struct cached_face {
    QImage image;
    QImage core;
    int coreTop = 0;
    quint64 paint = 0;
};

// A button drawn whole as one copy of a cached face: what the face was worked out from besides
// the zoom and offset, and where it was copied, so the next paint copies an unchanged button
// again without working its face out.
struct face_copy {
    QRect bounds;
    quint64 look = 0;
    quint64 label = 0;
    QRgb ink = 0;
    quint64 generation = 0; // of the face cache: face stays good while this holds
    QPoint at;
    cached_face* face = nullptr;
};

// How picker space lands in device pixels: the view's zoom and offset, then the painter's device
// pixel ratio and offset. A zero zoom stands for none.
struct view_space {
    qreal zoom = 0;
    QPoint shift;
    qreal deviceScale = 1;
    QPointF deviceOffset;

    bool operator==(const view_space& other) const {
        return zoom == other.zoom && shift == other.shift && deviceScale == other.deviceScale &&
               deviceOffset == other.deviceOffset;
    }
    bool operator!=(const view_space& other) const { return !(*this == other); }
};

// The background scaled smoothly to one zoom and device pixel ratio, or the part of it a view
// shows when the whole would be too big: area is in device pixels from the image's top-left.
struct background_level {
    qint64 source = 0; // the background's cache key
    qreal scale = 0;   // device pixels per background pixel
    QRect area;
    QImage image;
};

// The rectangle of r's four edges mapped by zoom and shift one by one, sized by their plain
// differences (no +1).
QRect screen_rect(const QRect& r, qreal zoom, const QPoint& shift);

// One tab's canvas: shows a picker tab through a zoom and an offset, with the pointer gesture in
// progress. It follows the tab's change signals and works out every button's shape from the
// tab's attributes; its actions change the tab through undo commands only.
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

    // The view owns the tab it shows, and makes one when given none. Without an owner the view
    // stands alone (pkrtool, the tests).
    explicit picker_view(picker_tab* tab = nullptr, picker_view_owner* owner = nullptr,
                         QWidget* parent = nullptr);
    ~picker_view() override;

    picker_tab* tab() const { return tab_; }
    overlay_list* overlay() { return &overlay_; }

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
    // Glides so that the picker rectangle fills three quarters of the view, or a quarter for a
    // lone button, which would otherwise fill the view.
    void frameBounds(const QRect& bounds, bool noZoomIn, float fill = 0.75f);
    // Frames the whole picker, never above zoom 1: how a picker first shows.
    void frame_to_fit(bool animate);
    // Frames the whole picker once the view first shows with its size.
    void fitWhenShown();
    bool animating() const { return timer_.isActive(); }

    const button_shape& shape(int index) const {
        settle_shapes();
        return shapes_[static_cast<size_t>(index)];
    }
    // The union of the buttons' rectangles (only the lit ones with selectedOnly), or an empty
    // rect.
    QRect button_bounds(bool selectedOnly) const;
    // The earliest button whose screen rectangle holds p, although later ones are drawn on top;
    // -1 when there is none.
    int find_button(const QPoint& p) const;
    // area in widget pixels; add false toggles fully lit buttons off.
    bool select_bounds(const QRect& area, bool add);

    // A drag in progress: the buttons it holds are shown moved by offset; the tab is unchanged.
    void showDragged(const id_list& ids, const QPoint& offset);
    // Buttons a gesture would add, shown over the tab's own.
    void showPreview(const button_att_list& buttons);
    void endPreview();

    // Draws canvas, background, buttons meeting area (widget pixels) and, unless told not to,
    // the overlays.
    void paint(QPainter& p, const QRect& area, bool overlays = true);

    void adjustCursor(bool force);
    // Keys the window forwards for the front tab; every enabled action bound to them fires.
    bool execute_shortcut(QKeyEvent* e);
    void setWidgetShortcut(QAction* a, const QKeySequence& k) const;
    // Installs the gesture that the next pointer events go to.
    void addMouseCommand(std::unique_ptr<picker_mouse_cmd> cmd);
    picker_mouse_cmd* mouseCommand() const { return cmd_.get(); }
    QMenu* contextMenu() const { return menu_.get(); }
    QPoint lastClick() const { return lastClick_; }

    // What the view asks of its window, or does on its own without one.
    void clearAllSelected();
    bool postSelection();
    toolboxState buttonStyle() const;
    void update_toolbox();
    int moveGrid() const;

public slots:
    void reset_view();
    void frame_view();
    void animate_zoom();

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

protected:
    void paintEvent(QPaintEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    void showEvent(QShowEvent* e) override;
    void wheelEvent(QWheelEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;
    void keyReleaseEvent(QKeyEvent* e) override;

private:
    // The tab's change signals.
    void buttons_inserted(const index_list& indices);
    void buttons_removed(const index_list& indices);
    void buttons_changed(const index_list& indices, bool reshaped);
    void buttons_reset();
    // Works the shapes of changed buttons out again from the tab's attributes. Changes only mark
    // them, so a run of edits (a held key) costs one working out, when the shapes are next used.
    void settle_shapes() const;
    void shape_button(int index) const;
    // The shape of a button at pos; an unchanged label keeps its picture.
    static void make_shape(const buttonAttributes& att, const QPoint& pos, button_shape& shape);

    // Both in device pixels, area in widget pixels.
    void draw_background(QPainter& p, const view_space& space, const QRect& area);
    void draw_buttons(QPainter& p, const view_space& space, const QRect& area);
    // What the find field and the scene's missing nodes lay over a button drawn, in widget
    // pixels.
    void draw_marks(QPainter& p, const buttonRecord& b, const button_shape& s) const;
    void push(QUndoCommand* command);
    void nudge_buttons(int dx, int dy);
    // Context menu, actions, shortcuts, cursors and pointer tracking.
    void build_input();
    // The right-button menu, entries set for what is under the pointer; runs modally.
    void show_context_menu(QMouseEvent* e);
    // Where framing the picker rectangle so it fills that share of the view puts zoom and
    // offset, the zoom no higher than most.
    animationRecord framing(const QRect& bounds, float fill, float most) const;
    // Ends the gesture in progress without its effect.
    void cancel_gesture();

    picker_tab* tab_;
    picker_view_owner* owner_;
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
    mutable std::vector<button_shape> shapes_; // by button, as the tab lists them
    mutable std::vector<char> stale_;          // by button: its shape is to be worked out again
    mutable bool anyStale_ = false;
    std::vector<face_copy> copies_; // by button, made in the space below
    view_space copiesSpace_;
    view_space settledSpace_; // of the last paint that drew every face exactly
    background_level backgrounds_[2];
    quint32 lastButton_ = 0; // id of the button under the last press; 0 none
    QSet<quint32> dragged_;
    QPoint dragOffset_;
    button_list preview_;
    std::vector<button_shape> previewShapes_;
    bool fitPending_ = false;
    overlay_list overlay_;
    QTimer timer_;
    interpolateRecord animate_;
};
