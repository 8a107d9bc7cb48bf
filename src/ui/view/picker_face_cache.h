#pragma once

// Button faces as the canvas draws them, in device pixels: labels laid out for the scale they are
// shown at, each face drawn once into an image that every view copies.

#include "picker_view.h"

#include <QFont>
#include <QHash>
#include <QImage>
#include <QPointF>
#include <QRgb>
#include <QSize>
#include <QString>

#include <memory>
#include <vector>

class QPainter;
class QRectF;

// The text laid out for one scale and box: its font and where its baseline starts, from the top
// left of the box. Not drawn when no legible size fits.
struct label_layout {
    qreal scale = 0;
    QSize box;
    QFont font;
    QPointF origin;
    bool drawn = false;
};

// A label as buttons share it. Its size measured at zoom 1 sets the box of the button, and it is
// laid out again, at device resolution, for every scale it is drawn at.
struct label_text {
    QString text;
    QSize size;     // at zoom 1, in even sizes so the text centres on whole pixels
    quint64 id = 0; // never reused, so a face can name its label without holding it

    // The text's layout that fits inside a box of device pixels, drawn scale times its zoom-1 size.
    const label_layout& layout(qreal scale, const QSize& box) const;

private:
    mutable std::vector<label_layout> layouts_; // the latest first
};

// The one label of that text, measured once however many buttons carry it.
std::shared_ptr<const label_text> shared_label(const QString& text);

// What a button's shape looks like: its kind, colours and the device size of its box.
struct face_look {
    enum shape_kind { plain, ellipse, rounded, command };
    shape_kind shape = plain;
    int outline = 0; // the lit state whose pen outlines the shape; see outline_pen
    QRgb fill = 0;   // of a selection shape; a command button's own colour
    qreal pen = 0.5; // the outline's width in device pixels
    QSize box;

    quint64 key() const;
    bool operator==(const face_look& other) const;
};

// The stand-in outline state for the pen a pass starts with: none.
constexpr int no_outline = 3;

// Draws the look filling r, its outline inside r; the label, if any, in ink laid out for scale.
void draw_face(QPainter& p, const QRectF& r, const face_look& look, const label_text* label,
               QRgb ink, qreal scale);

// Everything a face is drawn from.
struct face_key {
    face_look look;
    quint64 label = 0; // the label's id, 0 without one
    QRgb ink = 0;
    qreal scale = 0;

    bool operator==(const face_key& other) const {
        return look == other.look && label == other.label && ink == other.ink &&
               scale == other.scale;
    }
    quint64 hash() const;
};

// Drawing the same faces again and again is most of a repaint, so each is drawn once into an
// image of its box and copied from then on. The images are shared
// by every view. Past the budget, faces no paint has used since the last one go to make room;
// when a single paint needs more than the budget, the rest of its faces are drawn directly
// rather than churning the cache.
class face_cache {
public:
    // Larger faces are rare and would crowd the others out: they are drawn each time.
    static constexpr int largest_side = 512;

    void beginPaint();
    // Changes whenever an image may have moved or gone.
    quint64 generation() const { return generation_; }
    // A face found through a view's copy of it, rather than looked up, is used all the same.
    void use(cached_face& face) const;
    // The face if it is there; null otherwise.
    cached_face* find(const face_key& key);
    // The face, drawn now if it is not there yet; null when it is to be drawn directly.
    cached_face* make(const face_key& key, const label_text* label);

private:
    struct entry {
        face_key key;
        cached_face cached;
    };
    bool make_room(qint64 bytes);

    static constexpr qint64 budget = 32 * 1024 * 1024;
    QHash<quint64, entry> entries_;
    qint64 bytes_ = 0;
    quint64 paint_ = 0;
    quint64 generation_ = 1;
    bool swept_ = false;
};

face_cache& faces();

// Copies a cached face with its top-left at a device pixel.
void copy_face(QPainter& p, const QPoint& at, const cached_face& face);
