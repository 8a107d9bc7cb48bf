#include "picker_view.h"

#include <QFont>
#include <QFontMetrics>
#include <QHash>
#include <QImage>
#include <QLinearGradient>
#include <QPaintEvent>
#include <QPainter>
#include <QPair>
#include <QPen>
#include <QTransform>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace {

QFont label_font() {
    QFont font(QStringLiteral("Tahoma"), 8, QFont::Normal, false);
    font.setStyleStrategy(QFont::NoAntialias);
    return font;
}

// A command button leaves its outline pen set for the shapes drawn after it; the outlines are
// told apart by that button's lit state, and no_outline stands for the pen set before any.
constexpr int no_outline = 3;

int lit_state(const buttonRecord& b) {
    if (b.selected == buttonRecord::None || b.selected == buttonRecord::All)
        return b.selected;
    return buttonRecord::Some;
}

QPen outline_pen(int outline) {
    if (outline == no_outline)
        return QPen(Qt::NoPen);
    const QColor colour = outline == buttonRecord::None  ? QColor(Qt::black)
                          : outline == buttonRecord::All ? QColor(Qt::white)
                                                         : QColor(128, 128, 128);
    return QPen(QBrush(colour), 0.5, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin);
}

// What a button's shape looks like, short of its label. colour is the fill of a selection
// shape and the own colour of a command button, whose outline follows its lit state.
struct button_look {
    enum shape_kind { ellipse, rounded, command };
    shape_kind shape;
    int outline;
    QRgb colour;
    QSize size;

    quint64 key() const {
        return quint64(shape) | quint64(outline) << 2 | quint64(colour & 0xFFFFFFu) << 4 |
               quint64(size.width()) << 28 | quint64(size.height()) << 46;
    }
};

void draw_look(QPainter& p, const QRectF& r, const button_look& look) {
    p.setPen(outline_pen(look.outline));
    const QColor c = QColor::fromRgb(look.colour);
    if (look.shape != button_look::command) {
        p.setBrush(c);
        if (look.shape == button_look::ellipse) {
            p.drawEllipse(r);
        } else {
            const qreal k = 0.2 * std::min(r.width(), r.height());
            p.drawRoundedRect(r, k, k, Qt::AbsoluteSize);
        }
        return;
    }
    if (look.outline == buttonRecord::None) {
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
    const qreal k = 0.05 * std::min(r.width(), r.height());
    p.drawRoundedRect(r, k, k, Qt::AbsoluteSize);
}

// Where a label lands: a whole-pixel size centred on a whole pixel, so its target is exact in
// halves and the pixels it touches follow in integers. Empty without a label.
struct label_spot {
    QPoint centre;
    QSize size;

    bool isEmpty() const { return size.isEmpty(); }
    QRectF target() const {
        return QRectF(centre.x() - size.width() / 2.0, centre.y() - size.height() / 2.0,
                      size.width(), size.height());
    }
    // target(), widened to whole pixels: an odd side starts and ends half-way into one.
    QRect pixels() const {
        const int w = size.width();
        const int h = size.height();
        return QRect(centre.x() - (w + 1) / 2, centre.y() - (h + 1) / 2, w + (w & 1), h + (h & 1));
    }
    bool operator==(const label_spot& other) const {
        return centre == other.centre && size == other.size;
    }
};

// Where a label lands on a button drawn in box at the given zoom.
label_spot spot_for(const QImage& label, const QRect& box, qreal zoom) {
    if (label.isNull())
        return label_spot();
    // round_fn of the box's centre, x + w / 2 + 1/2 truncated, in integers: division truncates too.
    const auto rounded_centre = [](int x, int w) { return int((2 * qint64(x) + w + 1) / 2); };
    return {QPoint(rounded_centre(box.x(), box.width()), rounded_centre(box.y(), box.height())),
            QSize(int(round_fn(label.width() * zoom)), int(round_fn(label.height() * zoom)))};
}

// Every pixel a button's look (with a pixel of margin for the outline) and label touch.
QRect face_area(const QRect& box, const label_spot& label) {
    const QRect area = box.adjusted(-1, -1, 1, 1);
    return label.isEmpty() ? area : area | label.pixels();
}

void draw_label_image(QPainter& p, const label_spot& spot, const QImage& label) {
    p.drawImage(spot.target(), label, QRectF(QPointF(0, 0), QSizeF(label.size())));
}

// A label drawn on its own over what the canvas shows; one cut out of its button in XOR.
void draw_label_apart(QPainter& p, const label_spot& spot, const QImage& label, bool cut_out) {
    if (cut_out)
        p.setCompositionMode(QPainter::CompositionMode_Xor);
    draw_label_image(p, spot, label);
    if (cut_out)
        p.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

// A button as it lands on the canvas, short of a label that is cut out of it: its look, and
// its label drawn over it. Positions are relative to the image it is drawn into, whose top-left
// pixel is the first one either of them touches, with a pixel of margin for the outline.
// Buttons with the same label text and colour share one label image, so its cache key tells
// labels apart without reading their text.
struct button_face {
    button_look look;
    QRect box;
    label_spot text;
    qint64 labelKey = 0; // the label image's cache key

    QSize imageSize() const {
        const QRect area = face_area(box, text);
        return QSize(area.right() + 1, area.bottom() + 1);
    }
    bool operator==(const button_face& other) const {
        return look.key() == other.look.key() && box == other.box && text == other.text &&
               labelKey == other.labelKey;
    }
    quint64 key() const {
        quint64 k = look.key();
        const auto mix = [&k](quint64 v) { k = (k ^ v) * 0x9E3779B97F4A7C15ull; };
        mix(quint64(quint32(box.x())) | quint64(quint32(box.y())) << 32);
        mix(quint64(quint32(text.centre.x())) | quint64(quint32(text.centre.y())) << 32);
        mix(quint64(quint32(text.size.width())) | quint64(quint32(text.size.height())) << 32);
        mix(quint64(labelKey));
        return k;
    }
    void draw(QPainter& p, const QImage& label) const {
        draw_look(p, QRectF(box), look);
        if (!text.isEmpty())
            draw_label_image(p, text, label);
    }
};

// Copies stay exact only while one painter unit is one whole device pixel.
bool copies_exact(const QPainter& p) {
    const QTransform& t = p.deviceTransform();
    return t.type() <= QTransform::TxTranslate && t.dx() == std::floor(t.dx()) &&
           t.dy() == std::floor(t.dy());
}

// Drawing the same faces again and again is most of a repaint, so each is drawn once into an
// image and copied from then on. The images are shared by every view. Past the budget, faces
// no paint has used since the last one go to make room; when a single paint needs more than the
// budget, the rest of its faces are drawn directly rather than churning the cache.
class face_cache {
public:
    // Larger faces are rare and would crowd the others out: they are drawn each time.
    static constexpr int largest_side = 512;

    void beginPaint(const QPainter& p) {
        ++paint_;
        swept_ = false;
        exact_ = copies_exact(p);
    }

    // Changes whenever an image may have moved or gone, and while faces are not copied.
    quint64 generation() const { return exact_ ? generation_ : 0; }

    // A face found through a view's copy of it, rather than looked up, is used all the same.
    const QImage& use(cached_face& face) const {
        face.paint = paint_;
        return face.image;
    }

    // Null when the face is not to be copied in this paint. label is the face's label image.
    cached_face* image(const button_face& face, const QImage& label) {
        if (!exact_)
            return nullptr;
        const quint64 key = face.key();
        const auto found = entries_.find(key);
        if (found != entries_.end()) {
            if (found->face == face) {
                found->cached.paint = paint_;
                return &found->cached;
            }
            bytes_ -= found->cached.image.sizeInBytes();
            entries_.erase(found);
            ++generation_;
        }
        const QSize size = face.imageSize();
        if (size.isEmpty())
            return nullptr; // a zero-size button without a label: nothing to draw
        const qint64 bytes = qint64(size.width()) * size.height() * 4;
        if (bytes_ + bytes > budget && !make_room(bytes))
            return nullptr;
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing, true);
        face.draw(painter, label);
        painter.end();
        bytes_ += image.sizeInBytes();
        ++generation_;
        return &entries_.insert(key, entry{face, cached_face{std::move(image), paint_}})->cached;
    }

private:
    struct entry {
        button_face face;
        cached_face cached;
    };

    bool make_room(qint64 bytes) {
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

    static constexpr qint64 budget = 32 * 1024 * 1024;
    QHash<quint64, entry> entries_;
    qint64 bytes_ = 0;
    quint64 paint_ = 0;
    quint64 generation_ = 1;
    bool swept_ = false;
    bool exact_ = false;
};

face_cache& faces() {
    static face_cache cache;
    return cache;
}

// A label as a button holds it: the size its text measures, in even sizes so the text centres
// on whole pixels, and the text drawn in that size (null when the size is empty).
struct label_image {
    QSize size;
    QImage image;
};

// Buttons with the same label text and colour share one image of it, measured and drawn once:
// a big picker holds each label once, and a repaint tells faces apart by the image alone. An
// image no button holds any more is let go once the set has doubled since the last sweep.
class label_image_set {
public:
    label_image label(const QString& text, QRgb colour) {
        const auto key = qMakePair(text, colour);
        const auto found = labels_.constFind(key);
        if (found != labels_.constEnd())
            return *found;
        const label_image made = draw(text, colour);
        if (made.image.isNull())
            return made; // nothing to share, and a null image would never be let go
        if (labels_.size() >= sweep_at_)
            sweep();
        labels_.insert(key, made);
        return made;
    }

private:
    static label_image draw(const QString& text, QRgb colour) {
        const QFont font = label_font();
        QRect t = QFontMetrics(font).boundingRect(text);
        if (t.width() % 2 != 0)
            t.setWidth(t.width() + 1);
        if (t.height() % 2 != 0)
            t.setHeight(t.height() + 1);
        label_image made{t.size(), QImage()};
        if (made.size.isEmpty())
            return made;
        made.image = QImage(made.size, QImage::Format_ARGB32_Premultiplied);
        made.image.fill(Qt::transparent);
        QPainter painter;
        if (painter.begin(&made.image)) {
            painter.setFont(font);
            painter.setBrush(QBrush(Qt::black));
            painter.setPen(QColor::fromRgb(colour));
            painter.drawText(QRect(QPoint(0, 0), made.size), Qt::AlignCenter, text);
            painter.end();
        }
        return made;
    }

    void sweep() {
        for (auto it = labels_.begin(); it != labels_.end();)
            it = it->image.isDetached() ? labels_.erase(it) : std::next(it);
        sweep_at_ = std::max<qsizetype>(first_sweep, 2 * labels_.size());
    }

    static constexpr qsizetype first_sweep = 256;
    QHash<QPair<QString, QRgb>, label_image> labels_;
    qsizetype sweep_at_ = first_sweep;
};

label_image_set& label_images() {
    static label_image_set images;
    return images;
}

// label is empty, or where the label picture is drawn over the look in the current composition
// mode. Returns where the face was copied from, or no image when it was drawn directly.
face_copy draw_face(QPainter& p, const QRect& box, const button_look& look, const QImage& picture,
                    const label_spot& label) {
    const QRect area = face_area(box, label);
    if (area.width() <= face_cache::largest_side && area.height() <= face_cache::largest_side) {
        button_face face{look, box.translated(-area.topLeft()), label_spot(), 0};
        if (!label.isEmpty()) {
            face.text = {label.centre - area.topLeft(), label.size};
            face.labelKey = picture.cacheKey();
        }
        if (cached_face* cached = faces().image(face, picture)) {
            p.drawImage(area.topLeft(), cached->image);
            face_copy copy;
            copy.at = area.topLeft();
            copy.face = cached;
            return copy;
        }
    }
    draw_look(p, QRectF(box), look);
    if (!label.isEmpty())
        draw_label_image(p, label, picture);
    return face_copy();
}

// Draws a button whole, its look (sized here to its box) with its label over it, copying the face
// the last paint copied when nothing it was worked out from has changed since.
void draw_whole_face(QPainter& p, const picker_view& view, const button_shape& s, button_look look,
                     face_copy& copy) {
    face_cache& cache = faces();
    const quint64 lookKey = look.key();
    const qint64 labelKey = s.img.cacheKey();
    if (copy.face != nullptr && copy.generation == cache.generation() && copy.bounds == s.bounds &&
        copy.look == lookKey && copy.label == labelKey) {
        p.drawImage(copy.at, cache.use(*copy.face));
        return;
    }
    const QRect box = view.mapToScreen(s.bounds);
    look.size = box.size();
    copy = draw_face(p, box, look, s.img, spot_for(s.img, box, view.zoom()));
    copy.bounds = s.bounds;
    copy.look = lookKey;
    copy.label = labelKey;
    copy.generation = cache.generation();
}

} // namespace

void picker_view::paintEvent(QPaintEvent* e) {
    if (!isVisible())
        return;
    QPainter painter(this);
    paint(painter, e->rect());
}

void picker_view::paint(QPainter& p, const QRect& area, bool overlays) {
    faces().beginPaint(p);
    p.setRenderHint(QPainter::Antialiasing, true);
    p.fillRect(area, QBrush(QColor(51, 51, 51, 255)));
    const QPixmap& background = tab_->background();
    if (!background.isNull())
        p.drawPixmap(mapToScreen(background.rect()), background, background.rect());
    draw_buttons(p, area);
    if (overlays)
        overlay_.draw(p);
}

void picker_view::draw_buttons(QPainter& p, const QRect& area) {
    const button_list& buttons = tab_->buttons();
    if (buttons.isEmpty() && preview_.isEmpty())
        return;
    settle_shapes();
    if (copiesZoom_ != zoom_ || copiesShift_ != shift_) {
        copies_.clear();
        copiesZoom_ = zoom_;
        copiesShift_ = shift_;
    }
    // Buttons added or taken away shift the others: their copies no longer match and are
    // worked out again.
    copies_.resize(static_cast<size_t>(buttons.size()));
    const QRect r = mapToPicker(area);
    int outline = no_outline;
    const auto draw = [&](const buttonRecord& button, const button_shape& shape, face_copy& copy) {
        if (!shape.bounds.intersects(r))
            return;
        if (button.att.type != buttonAttributes::Selection) {
            outline = lit_state(button);
            draw_command_button(p, button, shape, copy);
        } else {
            draw_one_button(p, button, shape, outline, copy);
        }
        if (button.found || button.missing != buttonRecord::None)
            draw_marks(p, button, shape);
    };
    for (qsizetype i = 0; i < buttons.size(); ++i)
        draw(buttons.at(i), shapes_[size_t(i)], copies_[size_t(i)]);
    face_copy none;
    for (qsizetype i = 0; i < preview_.size(); ++i)
        draw(preview_.at(i), previewShapes_[size_t(i)], none);
}

void picker_view::draw_one_button(QPainter& p, const buttonRecord& b, const button_shape& s,
                                  int outline, face_copy& copy) const {
    QRgb fill = b.att.color;
    if (b.selected == buttonRecord::All)
        fill = qRgb(224, 224, 224);
    else if (b.selected != buttonRecord::None)
        fill = qRgb(128, 128, 128);
    const auto shape = s.img.isNull() ? button_look::ellipse : button_look::rounded;
    // A label cut out of the button must meet the canvas as it stands, so it is drawn apart.
    const bool cut_out = label_cut_out(b, s);
    if (b.att.sel.size() > 1 && !cut_out) {
        draw_whole_face(p, *this, s, {shape, outline, fill, QSize()}, copy);
        return;
    }
    copy = face_copy();
    const QRect box = mapToScreen(s.bounds);
    if (b.att.sel.size() > 1)
        draw_face(p, box, {shape, outline, fill, box.size()}, QImage(), label_spot());
    else
        p.fillRect(QRectF(box), QColor::fromRgb(fill));
    const label_spot label = spot_for(s.img, box, zoom_);
    if (!label.isEmpty())
        draw_label_apart(p, label, s.img, cut_out);
}

void picker_view::draw_command_button(QPainter& p, const buttonRecord& b, const button_shape& s,
                                      face_copy& copy) const {
    draw_whole_face(p, *this, s, {button_look::command, lit_state(b), b.att.color, QSize()}, copy);
}

// A light label on a lit selection button is cut out of it rather than drawn light on light.
bool picker_view::label_cut_out(const buttonRecord& b, const button_shape& s) {
    return b.att.type == buttonAttributes::Selection && b.selected == buttonRecord::All &&
           (b.att.tcolor & 0x808080u) != 0 && !s.img.isNull();
}

void picker_view::make_shape(const buttonAttributes& att, const QPoint& pos, button_shape& shape) {
    if (att.label.isEmpty()) {
        if (!shape.label.isEmpty()) {
            shape.img = QImage();
            shape.labelSize = QSize();
            shape.label.clear();
        }
        // Half the size to each side of the centre: a 10-unit button at (50, 50) spans 45 to 54.
        shape.bounds = QRect(pos.x() - att.size / 2, pos.y() - att.size / 2, att.size, att.size);
        return;
    }
    if (shape.label != att.label || shape.labelColor != att.tcolor || shape.labelSize.isNull()) {
        const label_image made = label_images().label(att.label, att.tcolor);
        shape.img = made.image;
        shape.labelSize = made.size;
        shape.label = att.label;
        shape.labelColor = att.tcolor;
    }
    const QSize box(std::max(shape.labelSize.width() + 2, att.size),
                    std::max(shape.labelSize.height(), att.size));
    shape.bounds = QRect(QPoint(0, 0), box);
    shape.bounds.moveCenter(pos);
}
