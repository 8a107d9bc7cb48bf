#include "picker_colorMenu.h"

#include <QMouseEvent>
#include <QPainter>

namespace {

const int swatch_size = 17;

// Alpha plays no part: the palettes are opaque and stored colours may carry alpha 0.
int distance_fn(const QColor& a, const QColor& b) {
    const int dr = a.red() - b.red();
    const int dg = a.green() - b.green();
    const int db = a.blue() - b.blue();
    return dr * dr + dg * dg + db * db;
}

QPoint position_of(const QMouseEvent* event) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event->position().toPoint();
#else
    return event->pos();
#endif
}

} // namespace

picker_colorMenu::picker_colorMenu(const color_list& colors, int columns, int swatchSize,
                                   QWidget* parent)
    : QWidget(parent), clist_(colors), numX_(columns),
      numY_(static_cast<int>(colors.size()) / columns), rsize_(swatchSize),
      size_(pad_ + (rsize_ + pad_) * numX_, pad_ + (rsize_ + pad_) * numY_) {
    setMinimumSize(size_);
    setMouseTracking(true);
    resize(size_);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
    setAttribute(Qt::WA_DeleteOnClose);
    // Frameless, so that the swatch lands under the pointer whatever frame the platform adds.
    setWindowFlags(Qt::Popup | Qt::FramelessWindowHint);
}

void picker_colorMenu::add_row(double saturation, double value, int count, color_list& out) {
    const double step = 1.0 / count;
    double hue = 0.0;
    for (int i = 0; i < count; ++i) {
        out.append(QColor::fromHsvF(hue, saturation, value, 1.0).rgba());
        hue += step;
    }
}

void picker_colorMenu::add_row_bw(int count, color_list& out) {
    const double step = 1.0 / (count - 1);
    double value = 0.0;
    for (int i = 0; i < count; ++i) {
        out.append(QColor::fromHsvF(0.0, 0.0, value, 1.0).rgba());
        // Rounding must not leave the last swatch a shade short of white.
        if (value + step < 1.0)
            value += step;
        else
            value = 1.0;
    }
}

picker_colorMenu* picker_colorMenu::execute_color(const QPoint& where, const QColor& current) {
    const int columns = 12;
    color_list colors;
    add_row(0.43, 0.702, columns, colors);
    add_row(0.498, 1.0, columns, colors);
    add_row(1.0, 1.0, columns, colors);
    add_row(1.0, 0.749, columns, colors);
    add_row(1.0, 0.502, columns, colors);
    add_row_bw(columns, colors);
    return open(colors, columns, where, current);
}

picker_colorMenu* picker_colorMenu::execute_bw(const QPoint& where, const QColor& current) {
    return open(color_list{0xFF000000u, 0xFFFFFFFFu}, 1, where, current);
}

picker_colorMenu* picker_colorMenu::open(const color_list& colors, int columns, const QPoint& where,
                                         const QColor& current) {
    auto* menu = new picker_colorMenu(colors, columns, swatch_size, nullptr);
    const int index = menu->findColorIndex(current);
    menu->move(where - menu->indexToPosition(index));
    menu->show();
    menu->setTracking(index);
    return menu;
}

int picker_colorMenu::findColorIndex(const QColor& color) const {
    int best = 0;
    int bestDistance = -1;
    for (int i = 0; i < clist_.size(); ++i) {
        const int distance = distance_fn(QColor::fromRgb(clist_.at(i)), color);
        if (bestDistance < 0 || distance < bestDistance) {
            best = i;
            bestDistance = distance;
        }
    }
    return best;
}

int picker_colorMenu::positionToIndex(const QPoint& pos) const {
    if (pos.x() < 0 || pos.x() > width() || pos.y() < 0 || pos.y() > height())
        return -1;
    return numX_ * (pos.y() / (rsize_ + pad_)) + pos.x() / (rsize_ + pad_);
}

QPoint picker_colorMenu::indexToPosition(int index) const {
    // Only the vertical term counts the leading pad; the popup sits one pixel apart in x and y.
    return QPoint((index % numX_) * (rsize_ + pad_) + rsize_ / 2,
                  pad_ + rsize_ / 2 + (index / numX_) * (rsize_ + pad_));
}

void picker_colorMenu::setTracking(int index) {
    if (index == track_)
        return;
    track_ = index;
    update();
}

void picker_colorMenu::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(Qt::NoPen);
    painter.fillRect(rect(), QColor(40, 40, 40));
    const int cell = rsize_ + pad_;
    if (track_ >= 0) {
        painter.setBrush(hilite_);
        painter.drawRoundedRect(QRect((track_ % numX_) * cell, (track_ / numX_) * cell,
                                      rsize_ + 2 * pad_, rsize_ + 2 * pad_),
                                2.0, 2.0, Qt::AbsoluteSize);
    }
    for (int i = 0; i < clist_.size(); ++i) {
        QRect swatch(pad_ + (i % numX_) * cell, pad_ + (i / numX_) * cell, rsize_, rsize_);
        if (i == track_)
            swatch.adjust(2, 2, -2, -2);
        painter.fillRect(swatch, QColor::fromRgba(clist_.at(i)));
    }
}

void picker_colorMenu::mouseMoveEvent(QMouseEvent* event) {
    const QPoint pos = position_of(event);
    if (pos != last_) {
        setTracking(positionToIndex(pos));
        last_ = pos;
    }
}

// The release of the click that opened the popup arrives before any press of ours and must not
// choose; a press arms the popup and its release chooses. A press outside only dismisses it.
void picker_colorMenu::mousePressEvent(QMouseEvent* event) {
    if (!rect().contains(position_of(event)))
        close();
    else if (tracking_)
        select();
    else
        tracking_ = true;
}

void picker_colorMenu::mouseReleaseEvent(QMouseEvent*) {
    if (tracking_)
        select();
}

void picker_colorMenu::select() {
    if (track_ >= 0 && track_ < clist_.size())
        emit colorChanged(clist_.at(track_));
    close();
}
