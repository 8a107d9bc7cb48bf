#pragma once

#include <QObject>
#include <QString>

class QEvent;
class QLineEdit;
class QTabWidget;
class QVBoxLayout;
class picker_window;

// The find field over the tabs. As the user types, every button whose label or a node's short
// name matches is marked in every tab, and each tab's title carries its count; Enter selects
// the matches in the host (Shift adds them), F3 and Shift+F3 walk them, Esc ends the find.
class picker_find_bar : public QObject {
    Q_OBJECT

public:
    // The field goes first in wlist, over the tabs, hidden until a find starts.
    picker_find_bar(picker_window* window, QTabWidget* tabs, QVBoxLayout* wlist);

    QLineEdit* field() const { return field_; }
    // A tab's own title, without the count a find shows in it.
    QString title(int index) const;
    void setTitle(int index, const QString& title);

public slots:
    void open();
    // Matches the field's text against every tab again.
    void refresh();
    // Selects the matches in the host, or adds them to its selection.
    void select_found(bool add);
    void find_next() { step(1); }
    void find_previous() { step(-1); }
    // Empties and hides the field, unmarking every button; the keys go back to the window.
    void close();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Frames the next match after the last one framed (before it for -1), in the tab order,
    // bringing its tab to the front.
    void step(int direction);

    picker_window* window_;
    QTabWidget* tabs_;
    QLineEdit* field_;
    quint32 lastFramed_ = 0; // id of the button last framed; 0 none
    bool marked_ = false;    // buttons carry a find's marks
};
