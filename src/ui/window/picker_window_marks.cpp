#include "picker_find_bar.h"
#include "picker_host.h"
#include "picker_tab.h"
#include "picker_view.h"
#include "picker_window.h"

#include <QTabWidget>
#include <QTimer>

#include <vector>

void mark_missing_nodes(picker_host& host, const QVector<picker_tab*>& tabs) {
    // Pickers repeat names across tabs and buttons: each goes to the host once.
    std::vector<char> asked;
    QStringList names;
    QVector<int> ids;
    for (picker_tab* tab : tabs)
        tab->collect_names(asked, names, ids);
    QVector<bool> exist;
    name_lookup missing;
    if (host.nodesExist(names, exist) && exist.size() == names.size()) {
        for (int i = 0; i < exist.size(); ++i) {
            if (!exist.at(i))
                missing.insertId(ids.at(i));
        }
    }
    for (picker_tab* tab : tabs)
        tab->mark_missing(missing);
}

QString picker_window::tab_title(int index) const {
    return find_ != nullptr ? find_->title(index) : tabs_->tabText(index);
}

void picker_window::marks_stale() {
    if (marksTimer_ == nullptr) {
        marksTimer_ = new QTimer(this);
        marksTimer_->setSingleShot(true);
        marksTimer_->setInterval(0);
        connect(marksTimer_, &QTimer::timeout, this, &picker_window::refresh_marks);
    }
    if (!marksTimer_->isActive())
        marksTimer_->start();
}

void picker_window::refresh_marks() {
    if (closing_)
        return;
    if (find_ != nullptr)
        find_->refresh();
    picker_host* host = picker_main::host();
    if (host == nullptr)
        return;
    QVector<picker_tab*> tabs;
    for (int i = 0; i < tabs_->count(); ++i) {
        if (picker_tab* tab = tab_at(i))
            tabs.append(tab);
    }
    mark_missing_nodes(*host, tabs);
}
