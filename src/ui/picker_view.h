#pragma once

#include "picker_types.h"

#include <QList>
#include <QPixmap>
#include <QString>
#include <QUndoStack>
#include <QWidget>

class QDataStream;

using button_list = QList<buttonRecord>;

// One tab's canvas: its buttons, background and undo history.
class picker_view : public QWidget {
    Q_OBJECT

public:
    explicit picker_view(QWidget* parent = nullptr);

    QUndoStack* undoer() { return &undoer_; }
    button_list* buttons() { return &blist_; }
    const QPixmap& background() const { return background_; }
    const QString& backgroundKey() const { return backgroundKey_; }
    void setBackground(const QString& key, const QPixmap& image);
    const QString& path() const { return path_; }
    void setPath(const QString& path) { path_ = path; }

    // Appends when index < 0; returns where the button now is. No repaint, no signal.
    int push_button(const buttonAttributes& att, int index);
    void pop_button(int index);
    // Also forgets the undo history, whose indices would no longer hold.
    void reset_buttons();

    bool any_selected() const;
    // Lights each button from the names: 1 all of its names, 2 some, 0 none. Only flags change,
    // nothing goes back to the host. True when any button's lit state changed.
    bool conform_to_set(const button_set& names);
    // Unlights every lit button, handing its names to the selection mirror.
    bool clear_selected();

    void refresh() { update(); }
    void signal_changed() { emit changed(); }

    void streamTo(QDataStream& stream) const;
    void streamFrom(QDataStream& stream, int version);

signals:
    void changed();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    button_list blist_;
    QUndoStack undoer_;
    QPixmap background_;
    QString backgroundKey_;
    QString path_;
};
