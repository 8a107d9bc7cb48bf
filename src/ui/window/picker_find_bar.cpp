#include "picker_find_bar.h"

#include "picker_find.h"
#include "picker_view.h"
#include "picker_window.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

picker_view* view_of(const QTabWidget* tabs, int index) {
    return qobject_cast<picker_view*>(tabs->widget(index));
}

bool is_find_key(const QKeyEvent* key) {
    switch (key->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F3:
    case Qt::Key_Escape:
        return true;
    default:
        return false;
    }
}

} // namespace

picker_find_bar::picker_find_bar(picker_window* window, QTabWidget* tabs, QVBoxLayout* wlist)
    : QObject(window), window_(window), tabs_(tabs), field_(new QLineEdit(window)) {
    field_->setPlaceholderText(tr("Find buttons by label or node (* and ? match any)"));
    field_->setClearButtonEnabled(true);
    field_->hide();
    field_->installEventFilter(this);
    window_->installEventFilter(this);
    wlist->insertWidget(0, field_);
    connect(field_, &QLineEdit::textChanged, this, &picker_find_bar::refresh);
}

QString picker_find_bar::title(int index) const {
    const QVariant own = tabs_->tabBar()->tabData(index);
    return own.isValid() ? own.toString() : tabs_->tabText(index);
}

void picker_find_bar::setTitle(int index, const QString& title) {
    tabs_->setTabText(index, title);
    tabs_->tabBar()->setTabData(index, QVariant());
    refresh();
}

void picker_find_bar::open() {
    field_->show();
    field_->setFocus(Qt::ShortcutFocusReason);
    field_->selectAll();
}

void picker_find_bar::refresh() {
    const picker_find_pattern pattern(field_->text());
    // Edits refresh the marks too: with no find, and nothing marked by one, there is no work.
    if (pattern.isEmpty() && !marked_)
        return;
    marked_ = !pattern.isEmpty();
    picker_name_matcher matcher(pattern);
    QTabBar* bar = tabs_->tabBar();
    for (int i = 0; i < tabs_->count(); ++i) {
        picker_view* view = view_of(tabs_, i);
        if (view == nullptr)
            continue;
        const int count = view->tab()->mark_found(matcher);
        const QString own = title(i);
        if (pattern.isEmpty()) {
            if (bar->tabData(i).isValid()) {
                tabs_->setTabText(i, own);
                bar->setTabData(i, QVariant());
            }
            continue;
        }
        bar->setTabData(i, own);
        tabs_->setTabText(i, QStringLiteral("%1 (%2)").arg(own).arg(count));
    }
}

void picker_find_bar::select_found(bool add) {
    QVector<QPair<picker_tab*, index_list>> found;
    for (int i = 0; i < tabs_->count(); ++i) {
        picker_view* view = view_of(tabs_, i);
        if (view == nullptr)
            continue;
        index_list selectable;
        for (const int index : view->tab()->foundIndices()) {
            if (view->tab()->buttons().at(index).att.type == buttonAttributes::Selection)
                selectable.append(index);
        }
        if (!selectable.isEmpty())
            found.append({view->tab(), selectable});
    }
    if (found.isEmpty())
        return;
    if (!add)
        window_->clearAllSelected();
    for (const auto& tab : std::as_const(found))
        tab.first->select_list(tab.second, true);
    window_->postSelection();
}

void picker_find_bar::step(int direction) {
    // Every match in tab order, then button order; the walk goes on from the last one framed.
    QVector<QPair<int, int>> matches;
    int at = -1;
    for (int t = 0; t < tabs_->count(); ++t) {
        const picker_view* view = view_of(tabs_, t);
        if (view == nullptr)
            continue;
        for (const int index : view->tab()->foundIndices()) {
            if (view->tab()->buttons().at(index).id == lastFramed_ && lastFramed_ != 0)
                at = int(matches.size());
            matches.append({t, index});
        }
    }
    if (matches.isEmpty())
        return;
    const int count = int(matches.size());
    const int next = at < 0 ? (direction > 0 ? 0 : count - 1) : (at + direction + count) % count;
    const auto [tabIndex, buttonIndex] = matches.at(next);
    picker_view* view = view_of(tabs_, tabIndex);
    lastFramed_ = view->tab()->buttons().at(buttonIndex).id;
    tabs_->setCurrentIndex(tabIndex);
    // Centred where it is, never zoomed in on.
    view->frameBounds(view->shape(buttonIndex).bounds, true, 0.25f);
}

void picker_find_bar::close() {
    lastFramed_ = 0;
    field_->clear();
    field_->hide();
    window_->takeKeys();
}

bool picker_find_bar::eventFilter(QObject* watched, QEvent* event) {
    if (watched == window_) {
        // Esc on the canvas ends a find too, unless it is cancelling a gesture there.
        const picker_view* front = view_of(tabs_, tabs_->currentIndex());
        if (event->type() == QEvent::KeyPress && field_->isVisible() &&
            static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape &&
            (front == nullptr || front->mouseCommand() == nullptr)) {
            close();
            return true;
        }
        return false;
    }
    if (watched != field_)
        return QObject::eventFilter(watched, event);
    if (event->type() == QEvent::ShortcutOverride) {
        // The field's own keys, whatever the host binds them to.
        if (is_find_key(static_cast<QKeyEvent*>(event))) {
            event->accept();
            return true;
        }
        return false;
    }
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto* key = static_cast<QKeyEvent*>(event);
    const bool shift = key->modifiers().testFlag(Qt::ShiftModifier);
    switch (key->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        select_found(shift);
        return true;
    case Qt::Key_F3:
        step(shift ? -1 : 1);
        return true;
    case Qt::Key_Escape:
        close();
        return true;
    default:
        return false;
    }
}
