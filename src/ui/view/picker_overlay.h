#pragma once

#include <QImage>
#include <QList>
#include <QPoint>
#include <QRect>
#include <QString>

#include <memory>
#include <vector>

class QPainter;
class picker_view;

// Something painted over a view after its buttons and never saved with the picker.
class picker_overlay {
public:
    picker_overlay() = default;
    picker_overlay(const picker_overlay&) = delete;
    picker_overlay& operator=(const picker_overlay&) = delete;

    virtual void draw(QPainter& p) = 0;
    virtual ~picker_overlay() = default;
};

// The rubber band of a marquee selection, in widget pixels.
class marquee_overlay : public picker_overlay {
public:
    void setAnchor(const QPoint& p) { anchor_ = p; }
    void setPoint(const QPoint& p) { where_ = p; }
    void reset();
    // Only after reset() or construction.
    bool isEmpty() const;
    // Width and height are the plain differences of the corners (no +1).
    QRect bounds() const;
    void draw(QPainter& p) override;

private:
    QPoint anchor_;
    QPoint where_;
};

// The strip of help links along the bottom edge of the view, after the logo.
class banner_overlay : public picker_overlay {
public:
    struct bannerRecord {
        bannerRecord(const char* text, const char* helpPage)
            : label(QString::fromUtf8(text)), page(QString::fromUtf8(helpPage)) {}
        QString label;
        QString page; // one of the picker's help pages
        QRect bounds; // the clickable band under the label, widget pixels
    };

    explicit banner_overlay(picker_view* view);
    // Lays the strip out again for a view of that size; a zero size keeps the last layout.
    void resize(int width, int height);
    void draw(QPainter& p) override;
    // A left press on a link installs the gesture that opens it on release; true when taken.
    bool click(const QPoint& p) const;

    const QList<bannerRecord>& entries() const { return blist_; }
    const QRect& bounds() const { return bounds_; }

private:
    picker_view* view_;
    QImage img_;
    QList<bannerRecord> blist_;
    QRect bounds_;
};

// A view's overlays in drawing order: 0 the marquee, 1 the banner.
class overlay_list {
public:
    explicit overlay_list(picker_view* view);
    overlay_list(const overlay_list&) = delete;
    overlay_list& operator=(const overlay_list&) = delete;
    ~overlay_list();

    void draw(QPainter& p);
    // Null when i is not below the count.
    picker_overlay* get(int i) const;
    marquee_overlay* marquee() const;
    banner_overlay* banner() const;

private:
    std::vector<std::unique_ptr<picker_overlay>> list_;
};
