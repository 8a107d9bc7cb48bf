#include "picker_view.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

// Marks are laid over a button as drawn, in whole pixels so that they read the same at any zoom:
// a ring around a button the find field matches, well clear of the white and grey of lit
// buttons; a button none of whose nodes the scene has dimmed and hatched; one missing some of
// them badged at its top-right corner.
namespace {

const QColor found_ring(0, 200, 255);
const QColor missing_dim(51, 51, 51, 180);
const QColor missing_hatch(150, 150, 150);
const QColor missing_badge(255, 220, 0);

void draw_ring(QPainter& p, const QRect& box) {
    const QRect outer = box.adjusted(-4, -4, 4, 4);
    p.fillRect(QRect(outer.left(), outer.top(), outer.width(), 2), found_ring);
    p.fillRect(QRect(outer.left(), outer.bottom() - 1, outer.width(), 2), found_ring);
    p.fillRect(QRect(outer.left(), outer.top(), 2, outer.height()), found_ring);
    p.fillRect(QRect(outer.right() - 1, outer.top(), 2, outer.height()), found_ring);
}

} // namespace

void picker_view::draw_marks(QPainter& p, const buttonRecord& b, const button_shape& s) const {
    // Screen pixels as the faces use them: width and height without the +1.
    const QRect box = mapToScreen(s.bounds);
    const QRect pixels(box.topLeft(), QSize(box.width(), box.height()));
    if (b.missing == buttonRecord::All) {
        QPainterPath outline;
        if (b.att.sel.size() <= 1) {
            outline.addRect(pixels);
        } else if (s.label == nullptr) {
            outline.addEllipse(QRectF(pixels));
        } else {
            const qreal k = 0.2 * std::min(pixels.width(), pixels.height());
            outline.addRoundedRect(QRectF(pixels), k, k);
        }
        p.fillPath(outline, missing_dim);
        p.fillPath(outline, QBrush(missing_hatch, Qt::BDiagPattern));
    } else if (b.missing == buttonRecord::Some) {
        const int side = std::clamp(std::min(pixels.width(), pixels.height()) / 3, 4, 8);
        const QRect badge(pixels.right() - side + 1, pixels.top(), side, side);
        p.fillRect(badge, Qt::black);
        p.fillRect(badge.adjusted(1, 1, -1, -1), missing_badge);
    }
    if (b.found)
        draw_ring(p, pixels);
}
