#include "picker_face_cache.h"

#include <QFontMetrics>
#include <QFontMetricsF>
#include <QLinearGradient>
#include <QPainter>
#include <QPen>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

namespace {

constexpr qreal label_point_size = 8;

// The font a label's box is measured with, at zoom 1: the box must not change, so no saved
// layout moves.
QFont measuring_font() {
    QFont font(QStringLiteral("Tahoma"), int(label_point_size), QFont::Normal, false);
    font.setStyleStrategy(QFont::NoAntialias);
    return font;
}

// The same face drawn at device resolution, greyscale-smoothed so that a face looks the same on
// any surface it is copied to.
QFont drawing_font(qreal pointSize) {
    QFont font(QStringLiteral("Tahoma"));
    font.setPointSizeF(pointSize);
    font.setStyleStrategy(
        QFont::StyleStrategy(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    return font;
}

// Font sizes are tried in sixteenths of the size the scale asks for, so a zoom uses a few sizes
// whatever its labels.
constexpr int size_steps = 16;

// The largest size, in sixteenths, whose ink fits inside the box, centred; not drawn when none
// does. The box is the label's zoom-1 size and a pixel, scaled: the text fills it as it did.
label_layout fit(const QString& text, qreal scale, const QSize& box) {
    label_layout out;
    out.scale = scale;
    out.box = box;
    const QRectF room(0, 0, box.width(), box.height());
    if (room.isEmpty())
        return out;
    int step = size_steps;
    for (;;) {
        QFont font = drawing_font(label_point_size * scale * step / size_steps);
        const QFontMetricsF metrics(font);
        const QRectF ink = metrics.tightBoundingRect(text);
        if (ink.width() <= room.width() && ink.height() <= room.height()) {
            // Centred on the ink across, on the line's height down, in whole pixels; then kept
            // inside the room where rounding would push it out.
            qreal x = std::round(box.width() / 2.0 - ink.center().x());
            qreal y = std::round((box.height() - metrics.ascent() - metrics.descent()) / 2.0 +
                                 metrics.ascent());
            x = std::clamp(x, room.left() - ink.left(), room.right() - ink.right());
            y = std::clamp(y, room.top() - ink.top(), room.bottom() - ink.bottom());
            out.font = font;
            out.origin = QPointF(x, y);
            out.drawn = true;
            return out;
        }
        // Straight to the size the overflow suggests, then down a step at a time.
        const qreal shrink = std::min(room.width() / ink.width(), room.height() / ink.height());
        step = std::min(step - 1, int(std::floor(step * shrink)));
        if (step < 1 || ink.isEmpty())
            return out;
    }
}

// Buttons with the same label text share one label, measured once: a big picker holds each text
// once. A label no button holds any more is let go once the set has doubled since the last sweep.
class label_set {
public:
    std::shared_ptr<const label_text> label(const QString& text) {
        const auto found = labels_.constFind(text);
        if (found != labels_.constEnd())
            return *found;
        auto made = std::make_shared<label_text>();
        made->text = text;
        QRect t = QFontMetrics(measuring_font()).boundingRect(text);
        if (t.width() % 2 != 0)
            t.setWidth(t.width() + 1);
        if (t.height() % 2 != 0)
            t.setHeight(t.height() + 1);
        made->size = t.size();
        made->id = ++lastId_;
        if (labels_.size() >= sweep_at_)
            sweep();
        labels_.insert(text, made);
        return made;
    }

private:
    void sweep() {
        for (auto it = labels_.begin(); it != labels_.end();)
            it = it->use_count() == 1 ? labels_.erase(it) : std::next(it);
        sweep_at_ = std::max<qsizetype>(first_sweep, 2 * labels_.size());
    }

    static constexpr qsizetype first_sweep = 256;
    QHash<QString, std::shared_ptr<const label_text>> labels_;
    qsizetype sweep_at_ = first_sweep;
    quint64 lastId_ = 0;
};

QPen outline_pen(int outline, qreal width) {
    if (outline == no_outline)
        return QPen(Qt::NoPen);
    const QColor colour = outline == buttonRecord::None  ? QColor(Qt::black)
                          : outline == buttonRecord::All ? QColor(Qt::white)
                                                         : QColor(128, 128, 128);
    return QPen(QBrush(colour), width, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin);
}

// The shape fills the box, and its outline runs inside it: a face touches no pixel outside its
// box, and its rows between the corners are opaque.
void draw_look(QPainter& p, const QRectF& r, const face_look& look) {
    const QColor c = QColor::fromRgb(look.fill);
    if (look.shape == face_look::plain) {
        p.fillRect(r, c);
        return;
    }
    const qreal corner =
        (look.shape == face_look::command ? 0.05 : 0.2) * std::min(r.width(), r.height());
    const auto draw_shape = [&](const QRectF& shape, qreal k) {
        if (look.shape == face_look::ellipse)
            p.drawEllipse(shape);
        else
            p.drawRoundedRect(shape, k, k, Qt::AbsoluteSize);
    };
    p.setPen(Qt::NoPen);
    if (look.shape != face_look::command) {
        p.setBrush(c);
    } else if (look.outline == buttonRecord::None) {
        QLinearGradient gradient(r.topLeft(), r.bottomLeft());
        gradient.setColorAt(0.0, c.lighter(150));
        gradient.setColorAt(0.1, c);
        gradient.setColorAt(0.9, c);
        gradient.setColorAt(1.0, c.darker(150));
        p.setBrush(gradient);
    } else if (look.outline == buttonRecord::All) {
        p.setBrush(c.lighter(150));
    } else {
        p.setBrush(QColor(128, 128, 128));
    }
    draw_shape(r, corner);
    const QPen pen = outline_pen(look.outline, look.pen);
    if (pen.style() == Qt::NoPen)
        return;
    const qreal inset = look.pen / 2;
    p.setPen(pen);
    p.setBrush(Qt::NoBrush);
    draw_shape(r.adjusted(inset, inset, -inset, -inset), std::max(0.0, corner - inset));
}

// The longest run of rows whose every pixel is opaque, as an image without alpha over the same
// pixels.
void find_core(cached_face& face) {
    const QImage& image = face.image;
    int best = 0;
    int run = 0;
    for (int y = 0; y < image.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        const bool opaque =
            std::all_of(row, row + image.width(), [](QRgb pixel) { return qAlpha(pixel) == 255; });
        run = opaque ? run + 1 : 0;
        if (run > best) {
            best = run;
            face.coreTop = y + 1 - run;
        }
    }
    if (best > 0)
        face.core = QImage(image.constScanLine(face.coreTop), image.width(), best,
                           image.bytesPerLine(), QImage::Format_RGB32);
}

quint64 bits_of(qreal value) {
    quint64 bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

} // namespace

const label_layout& label_text::layout(qreal scale, const QSize& box) const {
    const auto found = std::find_if(layouts_.begin(), layouts_.end(), [&](const label_layout& l) {
        return l.scale == scale && l.box == box;
    });
    if (found != layouts_.end()) {
        std::rotate(layouts_.begin(), found, std::next(found));
        return layouts_.front();
    }
    // A few are kept: the buttons of one text come in a few sizes, and a zoom goes back and forth.
    constexpr size_t kept = 4;
    if (layouts_.size() == kept)
        layouts_.pop_back();
    layouts_.insert(layouts_.begin(), fit(text, scale, box));
    return layouts_.front();
}

std::shared_ptr<const label_text> shared_label(const QString& text) {
    static label_set labels;
    return labels.label(text);
}

quint64 face_look::key() const {
    return quint64(shape) | quint64(outline) << 2 | quint64(fill & 0xFFFFFFu) << 4 |
           quint64(quint16(box.width())) << 28 | quint64(quint16(box.height())) << 44;
}

bool face_look::operator==(const face_look& other) const {
    return key() == other.key() && box == other.box && pen == other.pen;
}

void draw_face(QPainter& p, const QRectF& r, const face_look& look, const label_text* label,
               QRgb ink, qreal scale) {
    draw_look(p, r, look);
    if (label == nullptr)
        return;
    const label_layout& layout = label->layout(scale, look.box);
    if (!layout.drawn)
        return;
    p.setFont(layout.font);
    p.setPen(QColor::fromRgb(ink));
    p.drawText(r.topLeft() + layout.origin, label->text);
}

quint64 face_key::hash() const {
    quint64 k = look.key();
    const auto mix = [&k](quint64 v) { k = (k ^ v) * 0x9E3779B97F4A7C15ull; };
    mix(bits_of(look.pen));
    mix(label);
    mix(ink);
    mix(bits_of(scale));
    return k;
}

void face_cache::beginPaint() {
    ++paint_;
    swept_ = false;
}

void face_cache::use(cached_face& face) const {
    face.paint = paint_;
}

cached_face* face_cache::find(const face_key& key) {
    const auto found = entries_.find(key.hash());
    if (found == entries_.end() || !(found->key == key))
        return nullptr;
    found->cached.paint = paint_;
    return &found->cached;
}

cached_face* face_cache::make(const face_key& key, const label_text* label) {
    const quint64 hash = key.hash();
    const auto found = entries_.find(hash);
    if (found != entries_.end()) {
        if (found->key == key) {
            found->cached.paint = paint_;
            return &found->cached;
        }
        bytes_ -= found->cached.image.sizeInBytes();
        entries_.erase(found);
        ++generation_;
    }
    const QSize size = key.look.box;
    if (size.isEmpty() || size.width() > largest_side || size.height() > largest_side)
        return nullptr;
    const qint64 bytes = qint64(size.width()) * size.height() * 4;
    if (bytes_ + bytes > budget && !make_room(bytes))
        return nullptr;
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing, true);
    draw_face(painter, QRectF(QPointF(0, 0), QSizeF(size)), key.look, label, key.ink, key.scale);
    painter.end();
    bytes_ += image.sizeInBytes();
    ++generation_;
    cached_face& made = entries_.insert(hash, entry{key, cached_face()})->cached;
    made.image = std::move(image);
    made.paint = paint_;
    find_core(made);
    return &made;
}

bool face_cache::make_room(qint64 bytes) {
    if (!swept_) {
        swept_ = true;
        for (auto it = entries_.begin(); it != entries_.end();) {
            if (it->cached.paint == paint_) {
                ++it;
                continue;
            }
            bytes_ -= it->cached.image.sizeInBytes();
            it = entries_.erase(it);
            ++generation_;
        }
    }
    return bytes_ + bytes <= budget;
}

face_cache& faces() {
    static face_cache cache;
    return cache;
}

void copy_face(QPainter& p, const QPoint& at, const cached_face& face) {
    if (face.core.isNull()) {
        p.drawImage(at, face.image);
        return;
    }
    const int width = face.image.width();
    const int bottom = face.coreTop + face.core.height();
    if (face.coreTop > 0)
        p.drawImage(at, face.image, QRect(0, 0, width, face.coreTop));
    p.drawImage(at + QPoint(0, face.coreTop), face.core);
    if (bottom < face.image.height())
        p.drawImage(at + QPoint(0, bottom), face.image,
                    QRect(0, bottom, width, face.image.height() - bottom));
}
