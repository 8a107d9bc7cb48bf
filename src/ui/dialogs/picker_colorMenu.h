#pragma once

#include "picker_edit_cmd.h"

#include <QColor>
#include <QPoint>
#include <QRgb>
#include <QSize>
#include <QWidget>

// The pop-up grid of swatches the toolbox opens to choose a colour. It closes itself after a
// choice or a click outside, and deletes itself once closed.
class picker_colorMenu : public QWidget {
    Q_OBJECT

public:
    picker_colorMenu(const color_list& colors, int columns, int swatchSize, QWidget* parent);

    // Open the button-colour (72 swatches) or label-colour (black and white) palette with the
    // swatch nearest to current centred under where (global coordinates). The caller connects
    // colorChanged to where the choice goes.
    static picker_colorMenu* execute_color(const QPoint& where, const QColor& current);
    static picker_colorMenu* execute_bw(const QPoint& where, const QColor& current);

    // One row of count hues at the given saturation and value, starting at red.
    static void add_row(double saturation, double value, int count, color_list& out);
    // A grey ramp of count swatches from black to exactly white.
    static void add_row_bw(int count, color_list& out);

    int findColorIndex(const QColor& color) const;
    // -1 outside the widget. The column is not clamped: the last pixels of a row belong to the
    // next row, and the bottom pixels to an index past the list.
    int positionToIndex(const QPoint& pos) const;
    QPoint indexToPosition(int index) const;
    void setTracking(int index);

    const color_list& colors() const { return clist_; }
    int tracked() const { return track_; }

signals:
    void colorChanged(QRgb color);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    static picker_colorMenu* open(const color_list& colors, int columns, const QPoint& where,
                                  const QColor& current);
    void select();

    color_list clist_;
    int numX_;
    int numY_;
    int rsize_;
    int pad_ = 2;
    int track_ = -1;
    QPoint last_;
    QColor hilite_ = QColor(0, 182, 255, 255);
    QSize size_;
    bool tracking_ = false;
};
