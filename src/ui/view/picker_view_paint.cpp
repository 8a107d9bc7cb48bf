#include "picker_face_cache.h"
#include "picker_view.h"

#include <QPaintEvent>
#include <QPainter>
#include <QTransform>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

// While a zoom glides, a view with more buttons than this in sight scales the faces it drew at
// its last exact paint instead of drawing them anew for every frame's zoom.
constexpr int crisp_while_moving = 256;
// New faces a gliding frame may still draw, for buttons it has no earlier face of.
constexpr int faces_while_moving = 64;
// A background level up to this many pixels holds the whole image, so panning never remakes it;
// a bigger one holds what the view shows and this margin around it.
constexpr qint64 whole_background = 4 * 1024 * 1024;
constexpr int background_margin = 256;
// While a zoom glides, a new background level is made only if it is this small.
constexpr qint64 background_while_moving = 1024 * 1024;

int lit_state(const buttonRecord& b) {
    if (b.selected == buttonRecord::None || b.selected == buttonRecord::All)
        return b.selected;
    return buttonRecord::Some;
}

// Whether the painter's pixels are its device's, up to a uniform scale and an offset.
bool axis_aligned(const QTransform& t) {
    return t.type() <= QTransform::TxScale && t.m11() == t.m22() && t.m11() > 0;
}

view_space space_of(const QPainter& p, qreal zoom, const QPoint& shift) {
    view_space space;
    space.zoom = zoom;
    space.shift = shift;
    const QTransform& t = p.deviceTransform();
    if (axis_aligned(t)) {
        space.deviceScale = t.m11();
        space.deviceOffset = QPointF(t.dx(), t.dy());
    }
    return space;
}

int device_x(const view_space& space, int x) {
    return qRound(space.deviceScale * x + space.deviceOffset.x());
}

int device_y(const view_space& space, int y) {
    return qRound(space.deviceScale * y + space.deviceOffset.y());
}

// A widget rectangle, taken as spanning its width and height from its top-left, on whole device
// pixels: the edges round, so neighbouring rectangles meet without a gap or an overlap.
QRect device_rect(const view_space& space, const QRect& r) {
    const int left = device_x(space, r.left());
    const int top = device_y(space, r.top());
    return QRect(left, top, device_x(space, r.left() + r.width()) - left,
                 device_y(space, r.top() + r.height()) - top);
}

// Every device pixel a widget rectangle touches.
QRect device_cover(const view_space& space, const QRect& r) {
    const QPointF from = QPointF(r.topLeft()) * space.deviceScale + space.deviceOffset;
    const QPointF to = QPointF(r.left() + r.width(), r.top() + r.height()) * space.deviceScale +
                       space.deviceOffset;
    const int left = int(std::floor(from.x()));
    const int top = int(std::floor(from.y()));
    return QRect(left, top, int(std::ceil(to.x())) - left, int(std::ceil(to.y())) - top);
}

// A button's box in device pixels.
QRect device_box(const view_space& space, const QRect& bounds) {
    return device_rect(space, screen_rect(bounds, space.zoom, space.shift));
}

qreal face_scale(const view_space& space) {
    return space.zoom * space.deviceScale;
}

// The fill a lit button shows.
QRgb lit_fill(const buttonRecord& b) {
    if (b.selected == buttonRecord::All) {
        return b.att.type == buttonAttributes::Selection
                   ? qRgb(224, 224, 224)
                   : QColor::fromRgb(b.att.color).lighter(150).rgb();
    }
    return qRgb(128, 128, 128);
}

// Relative luminance, from sRGB channels made linear once for all 256 values.
qreal luminance(QRgb c) {
    static const std::array<qreal, 256> linear = [] {
        std::array<qreal, 256> table{};
        for (int i = 0; i < 256; ++i) {
            const qreal v = i / 255.0;
            table[size_t(i)] = v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
        }
        return table;
    }();
    return 0.2126 * linear[size_t(qRed(c))] + 0.7152 * linear[size_t(qGreen(c))] +
           0.0722 * linear[size_t(qBlue(c))];
}

qreal contrast(QRgb a, QRgb b) {
    const qreal la = luminance(a);
    const qreal lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

// The colour a label is drawn in. A light label on a lit selection button shows black, as if cut
// out of its light fill; on any other lit fill a label too close to it turns black or white,
// whichever stands out more.
QRgb label_ink(const buttonRecord& b) {
    const QRgb own = b.att.tcolor | 0xFF000000u;
    if (b.selected == buttonRecord::None)
        return own;
    const QRgb black = qRgb(0, 0, 0);
    if (b.att.type == buttonAttributes::Selection && b.selected == buttonRecord::All)
        return (b.att.tcolor & 0x808080u) != 0 ? black : own;
    const QRgb fill = lit_fill(b);
    constexpr qreal legible = 4.5;
    if (contrast(own, fill) >= legible)
        return own;
    const QRgb white = qRgb(255, 255, 255);
    return contrast(black, fill) >= contrast(white, fill) ? black : white;
}

// A button's look short of the size of its box. outline: the lit state of the command button
// drawn last in this pass, whose pen outlines a selection shape of several names.
face_look look_of(const buttonRecord& b, const label_text* label, int outline, qreal deviceScale) {
    face_look look;
    look.pen = 0.5 * deviceScale;
    if (b.att.type != buttonAttributes::Selection) {
        look.shape = face_look::command;
        look.outline = lit_state(b);
        look.fill = b.att.color | 0xFF000000u;
        return look;
    }
    look.fill = b.selected == buttonRecord::None ? b.att.color | 0xFF000000u : lit_fill(b);
    if (b.att.sel.size() > 1) {
        look.shape = label != nullptr ? face_look::rounded : face_look::ellipse;
        look.outline = outline;
    } else {
        look.shape = face_look::plain;
        look.outline = no_outline;
    }
    return look;
}

// One pass over the buttons, in device pixels. settled: while a zoom glides, the space of the
// last exact paint, whose faces stand in for those not drawn at this zoom yet.
struct face_pass {
    QPainter& p;
    const view_space& space;
    const view_space* settled;
    face_cache& cache;
    int newFaces = 0;

    // Draws the face this button had at the settled space, scaled to its box now.
    bool draw_settled(const face_key& now, const QRect& bounds, const QRect& box) {
        const view_space& then = *settled;
        face_key key = now;
        key.look.box = device_box(then, bounds).size();
        key.look.pen = 0.5 * then.deviceScale;
        key.scale = face_scale(then);
        const cached_face* face = cache.find(key);
        if (face == nullptr)
            return false;
        p.drawImage(QRectF(box), face->image);
        return true;
    }

    // The button's face, copied whole: from where the last paint copied it when nothing it is
    // worked out from has changed since, else from the cache.
    void draw(const buttonRecord& b, const button_shape& s, int outline, face_copy& copy) {
        const label_text* label =
            s.label != nullptr && !s.label->size.isEmpty() ? s.label.get() : nullptr;
        face_key key{look_of(b, label, outline, space.deviceScale), label ? label->id : 0,
                     label_ink(b), face_scale(space)};
        if (key.look.shape == face_look::plain && label == nullptr) {
            copy = face_copy();
            p.fillRect(device_box(space, s.bounds), QColor::fromRgb(key.look.fill));
            return;
        }
        const quint64 lookKey = key.look.key();
        if (copy.face != nullptr && copy.generation == cache.generation() &&
            copy.bounds == s.bounds && copy.look == lookKey && copy.label == key.label &&
            copy.ink == key.ink) {
            cache.use(*copy.face);
            copy_face(p, copy.at, *copy.face);
            return;
        }
        copy = face_copy();
        const QRect box = device_box(space, s.bounds);
        key.look.box = box.size();
        cached_face* face = cache.find(key);
        if (face == nullptr && settled != nullptr) {
            if (draw_settled(key, s.bounds, box))
                return;
            if (newFaces == faces_while_moving) {
                p.fillRect(box, QColor::fromRgb(key.look.fill));
                return;
            }
            ++newFaces;
        }
        if (face == nullptr)
            face = cache.make(key, label);
        if (face != nullptr) {
            copy.at = box.topLeft();
            copy_face(p, copy.at, *face);
            copy.bounds = s.bounds;
            copy.look = lookKey;
            copy.label = key.label;
            copy.ink = key.ink;
            copy.generation = cache.generation();
            copy.face = face;
            return;
        }
        draw_face(p, QRectF(box), key.look, label, key.ink, key.scale);
    }
};

// The background scaled by scale and cut to area, device pixels from its top-left: smoothly, by
// averaging when it shrinks and interpolating when it grows, and copied as it is at scale 1.
QImage scaled_background(const QPixmap& background, const QSize& whole, const QRect& area) {
    QImage source = background.toImage();
    QImage level(area.size(), QImage::Format_ARGB32_Premultiplied);
    level.fill(Qt::transparent);
    QPainter painter(&level);
    painter.translate(-area.topLeft());
    if (whole == source.size()) {
        painter.drawImage(0, 0, source);
    } else if (whole.width() < source.width() && whole == area.size()) {
        painter.drawImage(0, 0,
                          source.scaled(whole, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    } else {
        painter.setRenderHint(QPainter::SmoothPixmapTransform, true);
        painter.scale(qreal(whole.width()) / source.width(),
                      qreal(whole.height()) / source.height());
        painter.drawImage(0, 0, source);
    }
    return level;
}

} // namespace

void picker_view::paintEvent(QPaintEvent* e) {
    if (!isVisible())
        return;
    QPainter painter(this);
    paint(painter, e->rect());
}

void picker_view::paint(QPainter& p, const QRect& area, bool overlays) {
    faces().beginPaint();
    p.setRenderHint(QPainter::Antialiasing, true);
    const view_space space = space_of(p, zoom_, shift_);
    p.save();
    // Faces, labels and the background are drawn in device pixels and copied whole-pixel to
    // whole-pixel, at any device pixel ratio.
    if (axis_aligned(p.deviceTransform()))
        p.setWorldTransform(p.deviceTransform().inverted() * p.worldTransform());
    const QRect device = device_cover(space, area);
    p.fillRect(device, QColor(51, 51, 51));
    draw_background(p, space, device);
    draw_buttons(p, space, area);
    p.restore();
    if (overlays)
        overlay_.draw(p);
}

void picker_view::draw_background(QPainter& p, const view_space& space, const QRect& area) {
    const QPixmap& background = tab_->background();
    if (background.isNull())
        return;
    const qreal scale = face_scale(space);
    // Picker (0, 0) on a whole device pixel, so that a level copies pixel for pixel.
    const QPoint origin(device_x(space, shift_.x()), device_y(space, shift_.y()));
    const QSize whole(std::max(1, qRound(background.width() * scale)),
                      std::max(1, qRound(background.height() * scale)));
    const QRect shown = area.translated(-origin) & QRect(QPoint(0, 0), whole);
    if (shown.isEmpty())
        return;
    const qint64 source = background.cacheKey();
    background_level* level = nullptr;
    const background_level* nearest = nullptr;
    for (background_level& candidate : backgrounds_) {
        if (candidate.source != source)
            continue;
        if (candidate.scale == scale && candidate.area.contains(shown))
            level = &candidate;
        else if (nearest == nullptr || std::abs(std::log(candidate.scale / scale)) <
                                           std::abs(std::log(nearest->scale / scale)))
            nearest = &candidate;
    }
    if (level == nullptr) {
        const QRect wanted = qint64(whole.width()) * whole.height() <= whole_background
                                 ? QRect(QPoint(0, 0), whole)
                                 : shown.adjusted(-background_margin, -background_margin,
                                                  background_margin, background_margin) &
                                       QRect(QPoint(0, 0), whole);
        if (animating() && nearest != nullptr &&
            qint64(wanted.width()) * wanted.height() > background_while_moving) {
            const qreal ratio = scale / nearest->scale;
            p.drawImage(QRectF(origin.x() + nearest->area.x() * ratio,
                               origin.y() + nearest->area.y() * ratio,
                               nearest->area.width() * ratio, nearest->area.height() * ratio),
                        nearest->image);
            return;
        }
        // The new level takes the place of the one furthest from it; the nearest stays.
        level = &backgrounds_[0] == nearest ? &backgrounds_[1] : &backgrounds_[0];
        *level =
            background_level{source, scale, wanted, scaled_background(background, whole, wanted)};
    }
    p.drawImage(origin + level->area.topLeft(), level->image);
}

void picker_view::draw_buttons(QPainter& p, const view_space& space, const QRect& area) {
    const button_list& buttons = tab_->buttons();
    if (buttons.isEmpty() && preview_.isEmpty())
        return;
    settle_shapes();
    if (copiesSpace_ != space) {
        copies_.clear();
        copiesSpace_ = space;
    }
    // Buttons added or taken away shift the others: their copies no longer match and are
    // worked out again.
    copies_.resize(static_cast<size_t>(buttons.size()));
    const QRect r = mapToPicker(area);
    bool approximate = false;
    if (animating() && settledSpace_.zoom != 0 && settledSpace_ != space) {
        int inSight = 0;
        for (const button_shape& shape : shapes_)
            inSight += shape.bounds.intersects(r) ? 1 : 0;
        approximate = inSight > crisp_while_moving;
    }
    face_pass pass{p, space, approximate ? &settledSpace_ : nullptr, faces()};
    int outline = no_outline;
    const auto draw = [&](const buttonRecord& button, const button_shape& shape, face_copy& copy) {
        if (!shape.bounds.intersects(r))
            return;
        if (button.att.type != buttonAttributes::Selection)
            outline = lit_state(button);
        pass.draw(button, shape, outline, copy);
    };
    for (qsizetype i = 0; i < buttons.size(); ++i)
        draw(buttons.at(i), shapes_[size_t(i)], copies_[size_t(i)]);
    face_copy none;
    for (qsizetype i = 0; i < preview_.size(); ++i)
        draw(preview_.at(i), previewShapes_[size_t(i)], none);
    if (!approximate)
        settledSpace_ = space;
}

void picker_view::make_shape(const buttonAttributes& att, const QPoint& pos, button_shape& shape) {
    if (att.label.isEmpty()) {
        shape.label.reset();
        // Half the size to each side of the centre: a 10-unit button at (50, 50) spans 45 to 54.
        shape.bounds = QRect(pos.x() - att.size / 2, pos.y() - att.size / 2, att.size, att.size);
        return;
    }
    if (shape.label == nullptr || shape.label->text != att.label)
        shape.label = shared_label(att.label);
    const QSize box(std::max(shape.label->size.width() + 2, att.size),
                    std::max(shape.label->size.height(), att.size));
    shape.bounds = QRect(QPoint(0, 0), box);
    shape.bounds.moveCenter(pos);
}
