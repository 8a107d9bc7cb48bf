#include "picker_view.h"

#include "picker_prompt.h"
#include "picker_window.h"

#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QLinearGradient>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>

namespace {

QFont label_font() {
    QFont font(QStringLiteral("Tahoma"), 8, QFont::Normal, false);
    font.setStyleStrategy(QFont::NoAntialias);
    return font;
}

} // namespace

void picker_view::paintEvent(QPaintEvent* e) {
    if (!isVisible())
        return;
    QPainter painter(this);
    paint(painter, e->rect());
}

void picker_view::paint(QPainter& p, const QRect& area, bool overlays) {
    p.setRenderHint(QPainter::Antialiasing, true);
    p.fillRect(area, QBrush(QColor(51, 51, 51, 255)));
    if (!back_.isNull())
        p.drawPixmap(mapToScreen(back_.rect()), back_, back_.rect());
    draw_buttons(p, area);
    if (overlays)
        overlay_.draw(p);
}

void picker_view::draw_buttons(QPainter& p, const QRect& area) const {
    if (blist_.isEmpty())
        return;
    const QRect r = mapToPicker(area);
    // Set once: a command button leaves its outline pen behind for the shapes drawn after it.
    p.setPen(Qt::NoPen);
    for (const buttonRecord& button : blist_) {
        if (!button.bounds.intersects(r))
            continue;
        if (button.att.type != buttonAttributes::Selection)
            draw_command_button(p, button);
        else
            draw_one_button(p, button);
    }
}

void picker_view::draw_one_button(QPainter& p, const buttonRecord& b) const {
    QColor fill;
    if (b.selected == buttonRecord::None)
        fill = QColor::fromRgb(b.att.color);
    else if (b.selected == buttonRecord::All)
        fill = QColor(224, 224, 224);
    else
        fill = QColor(128, 128, 128);
    const QBrush brush(fill);
    const QRectF r(mapToScreen(b.bounds));
    if (b.att.sel.size() > 1) {
        p.setBrush(brush);
        if (b.img.isNull()) {
            p.drawEllipse(r);
        } else {
            const qreal k = 0.2 * std::min(r.width(), r.height());
            p.drawRoundedRect(r, k, k, Qt::AbsoluteSize);
        }
    } else {
        p.fillRect(r, brush);
    }
    draw_label(p, b, r.center());
}

void picker_view::draw_command_button(QPainter& p, const buttonRecord& b) const {
    const QRectF r(mapToScreen(b.bounds));
    const QColor c = QColor::fromRgb(b.att.color);
    QBrush fill;
    QBrush outline;
    if (b.selected == buttonRecord::None) {
        QLinearGradient gradient(r.topLeft(), r.bottomLeft());
        gradient.setColorAt(0.0, c.lighter(150));
        gradient.setColorAt(0.1, c);
        gradient.setColorAt(0.9, c);
        gradient.setColorAt(1.0, c.darker(150));
        fill = QBrush(gradient);
        outline = QBrush(Qt::black);
    } else if (b.selected == buttonRecord::All) {
        fill = QBrush(c.lighter(150));
        outline = QBrush(Qt::white);
    } else {
        fill = QBrush(QColor(128, 128, 128));
        outline = fill;
    }
    p.setBrush(fill);
    p.setPen(QPen(outline, 0.5, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    const qreal k = 0.05 * std::min(r.width(), r.height());
    p.drawRoundedRect(r, k, k, Qt::AbsoluteSize);
    draw_label(p, b, r.center());
}

void picker_view::draw_label(QPainter& p, const buttonRecord& b, const QPointF& center) const {
    if (b.img.isNull())
        return;
    const QRectF source(QPointF(0, 0), QSizeF(b.img.size()));
    QRectF target(0, 0, round_fn(b.img.width() * zoom_), round_fn(b.img.height() * zoom_));
    target.moveCenter(QPointF(round_fn(center.x()), round_fn(center.y())));
    // A light label on a lit selection button is cut out of it rather than drawn light on light.
    if (b.att.type == buttonAttributes::Selection && b.selected == buttonRecord::All &&
        (b.att.tcolor & 0x808080u) != 0) {
        p.setCompositionMode(QPainter::CompositionMode_Xor);
        p.drawPixmap(target, b.img, source);
        p.setCompositionMode(QPainter::CompositionMode_SourceOver);
        return;
    }
    p.drawPixmap(target, b.img, source);
}

void picker_view::make_button_label(const buttonAttributes& att, buttonRecord* rec) {
    const QFont font = label_font();
    QRect t = QFontMetrics(font).boundingRect(att.label);
    // Even sizes centre the text on whole pixels.
    if (t.width() % 2 != 0)
        t.setWidth(t.width() + 1);
    if (t.height() % 2 != 0)
        t.setHeight(t.height() + 1);
    const QSize box(std::max(t.width() + 2, att.size), std::max(t.height(), att.size));
    rec->bounds = QRect(QPoint(0, 0), box);
    rec->bounds.moveCenter(att.pos);

    QImage image(t.size(), QImage::Format_ARGB32);
    image.fill(0);
    QPainter painter;
    if (painter.begin(&image)) {
        painter.setFont(font);
        painter.setBrush(QBrush(Qt::black));
        painter.setPen(QColor::fromRgb(att.tcolor));
        painter.drawText(QRect(QPoint(0, 0), t.size()), Qt::AlignCenter, att.label);
        painter.end();
    }
    rec->img = QPixmap::fromImage(image);
}

void picker_view::change_background() {
    const QStringList chosen = picker_ask_files({picker_file_question::kind::open_files, this,
                                                 QStringLiteral("Choose Background"), QString(),
                                                 QStringLiteral("Images (*.png *.xpm *.jpg)")});
    if (!chosen.isEmpty()) {
        if (!back_.isNull() && window_ != nullptr)
            window_->removeImageData(this);
        back_ = QPixmap(chosen.first());
        // A file that does not load leaves the tab without a background, and the scene without
        // an entry for it.
        bkey_ = back_.isNull() ? QString() : QString::number(back_.cacheKey(), 10);
        if (window_ != nullptr)
            window_->setImageData(this);
        update();
        signal_changed();
        return;
    }
    if (back_.isNull())
        return;
    const QMessageBox::StandardButton answer =
        picker_ask({QMessageBox::Question, this, QStringLiteral("Background"),
                    QStringLiteral("Remove current background image?"),
                    QMessageBox::Yes | QMessageBox::Cancel});
    if (answer != QMessageBox::Yes)
        return;
    if (window_ != nullptr)
        window_->removeImageData(this);
    back_ = QPixmap();
    bkey_.clear();
    update();
    signal_changed();
}
