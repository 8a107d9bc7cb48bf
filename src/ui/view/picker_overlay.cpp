#include "picker_overlay.h"

#include "picker_gesture_cmd.h"
#include "picker_view.h"

#include <QBrush>
#include <QColor>
#include <QFont>
#include <QFontMetrics>
#include <QPainter>
#include <QPen>

#include <algorithm>

// Resources of a static library are registered by hand, and only from the global namespace.
static void picker_view_init_resources() {
    Q_INIT_RESOURCE(picker_view);
}

namespace {

const char* const logo_resource = ":/resources/PickerWindowLogoCropped.png";

// Shared by every banner, loaded on first use.
QImage& logo() {
    static QImage image;
    return image;
}

} // namespace

void marquee_overlay::reset() {
    anchor_ = QPoint(0, 0);
    where_ = QPoint(0, 0);
}

bool marquee_overlay::isEmpty() const {
    return anchor_.isNull() && where_.isNull();
}

QRect marquee_overlay::bounds() const {
    const int left = std::min(anchor_.x(), where_.x());
    const int top = std::min(anchor_.y(), where_.y());
    return QRect(left, top, std::max(anchor_.x(), where_.x()) - left,
                 std::max(anchor_.y(), where_.y()) - top);
}

void marquee_overlay::draw(QPainter& p) {
    if (anchor_ == where_)
        return;
    const QRect r = bounds();
    if (r.isEmpty())
        return;
    p.setOpacity(0.2);
    p.setPen(Qt::NoPen);
    p.fillRect(r, QBrush(Qt::white));
    p.setPen(QColor(Qt::white));
    p.setBrush(Qt::NoBrush);
    p.setOpacity(1.0);
    p.drawRect(r);
    p.setPen(Qt::NoPen);
}

banner_overlay::banner_overlay(picker_view* view) : view_(view) {
    blist_ << bannerRecord("Quick start", "quick-start.html")
           << bannerRecord("Editing", "editing.html")
           << bannerRecord("Namespaces", "namespaces.html")
           << bannerRecord("Shortcuts", "shortcuts.html");
    resize(view->width(), view->height());
}

void banner_overlay::resize(int width, int height) {
    if (width < 1 || height < 1)
        return;
    QImage& image = logo();
    if (image.isNull() || image.width() == 0) {
        picker_view_init_resources();
        image = QImage(QString::fromLatin1(logo_resource));
    }
    if (image.isNull())
        return;
    const QFont font(QStringLiteral("Tahoma"), 8);
    const QFontMetrics fm(font);
    int total = image.width();
    for (bannerRecord& entry : blist_) {
        entry.bounds = fm.boundingRect(entry.label);
        total += entry.bounds.width();
    }
    auto gap = static_cast<int>((static_cast<float>(width) - static_cast<float>(total)) /
                                (static_cast<float>(blist_.size()) + 1.25f));
    if (gap <= 9)
        gap = 10;
    const int lh = image.height();
    img_ = QImage(width, lh, QImage::Format_ARGB32);
    img_.fill(0);
    QPainter p;
    if (p.begin(&img_)) {
        p.setFont(font);
        const QColor grey(146, 146, 146, 255);
        p.setBrush(QBrush(grey));
        p.setPen(grey);
        p.drawRect(QRect(0, lh - 22, width, 22));
        p.drawImage(QPoint(0, 3), image);
        int x = image.width() + gap;
        p.setBrush(QBrush(Qt::white));
        p.setPen(QColor(Qt::white));
        for (bannerRecord& entry : blist_) {
            p.drawText(QPoint(x, lh - 7), entry.label);
            const int labelWidth = entry.bounds.width();
            entry.bounds.moveTopLeft(QPoint(x, height - 7));
            entry.bounds.setTop(height - 22);
            entry.bounds.setBottom(height);
            x += labelWidth + gap;
        }
        p.end();
    }
    bounds_ = QRect(0, height - lh, width, lh);
}

void banner_overlay::draw(QPainter& p) {
    p.drawImage(bounds_.topLeft(), img_);
}

bool banner_overlay::click(const QPoint& p) const {
    if (!bounds_.contains(p))
        return false;
    if (bounds_.bottom() - p.y() >= 23 || p.x() - bounds_.left() <= logo().width())
        return false;
    for (const bannerRecord& entry : blist_) {
        if (entry.bounds.left() <= p.x() && p.x() <= entry.bounds.right()) {
            view_->addMouseCommand(
                std::make_unique<track_url_cmd>(view_, entry.bounds, p, entry.page));
            return true;
        }
    }
    return false;
}

overlay_list::overlay_list(picker_view* view) {
    list_.push_back(std::make_unique<marquee_overlay>());
    list_.push_back(std::make_unique<banner_overlay>(view));
}

overlay_list::~overlay_list() = default;

void overlay_list::draw(QPainter& p) {
    for (const auto& overlay : list_) {
        if (overlay)
            overlay->draw(p);
    }
}

picker_overlay* overlay_list::get(int i) const {
    if (i < 0 || static_cast<std::size_t>(i) >= list_.size())
        return nullptr;
    return list_[static_cast<std::size_t>(i)].get();
}

marquee_overlay* overlay_list::marquee() const {
    return static_cast<marquee_overlay*>(get(0));
}

banner_overlay* overlay_list::banner() const {
    return static_cast<banner_overlay*>(get(1));
}
