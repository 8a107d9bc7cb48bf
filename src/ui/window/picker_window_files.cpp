#include "picker_window.h"

#include "picker_file.h"
#include "picker_prompt.h"
#include "picker_stream.h"
#include "picker_view.h"

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMenu>
#include <QSettings>
#include <QTabWidget>

#include <algorithm>

namespace {

const QString picker_filter = QStringLiteral("Talvora Picker (*.pkr)");
const QString recent_key = QStringLiteral("recentPickers");
constexpr int recent_count = 10;

QSettings picker_settings() {
    return QSettings(QStringLiteral("Talvora"), QStringLiteral("picker"));
}

// Another tool's file named .pkr reads as nonsense right away; ours has at least its version,
// title and background whole, whatever became of the buttons.
bool header_reads_whole(QIODevice& device) {
    if (!device.seek(0))
        return false;
    QDataStream stream(&device);
    stream.setVersion(picker_file_stream_version);
    qint32 version = 0;
    stream >> version;
    if (stream.status() != QDataStream::Ok || version < 1)
        return false;
    readString(stream);
    if (version > 1 && stream.status() == QDataStream::Ok && !readString(stream).isEmpty())
        readImage(stream);
    return stream.status() == QDataStream::Ok;
}

} // namespace

void picker_window::load_one_picker(const QString& path) {
    load_pickers(QStringList{path});
}

bool picker_window::load_pickers(const QStringList& paths) {
    bool allOpened = true;
    for (int i = 0; i < paths.size(); ++i) {
        const QString& path = paths.at(i);
        QFile file(path);
        picker_tab_record tab;
        picker_read_result read;
        QString problem;
        if (!file.open(QIODevice::ReadOnly)) {
            problem = QStringLiteral("Could not open the file \"%1\".\n\nPlease check the file "
                                     "permissions and try again.")
                          .arg(QDir::toNativeSeparators(path));
        } else {
            read = readPickerFile(file, tab);
            if (!header_reads_whole(file))
                problem = QStringLiteral("The file \"%1\" is not a picker file.")
                              .arg(QDir::toNativeSeparators(path));
            file.close();
        }
        if (!problem.isEmpty()) {
            const bool more = i + 1 < paths.size();
            const QMessageBox::StandardButton answer =
                picker_ask({QMessageBox::Critical, this, tr("Open Failed"), problem,
                            more ? QMessageBox::Cancel | QMessageBox::Ignore : QMessageBox::Ok});
            allOpened = false;
            if (answer == QMessageBox::Cancel)
                return false;
            continue;
        }
        picker_view* view = view_from_record(tab);
        view->tab()->setPath(file.fileName());
        connect_picker(view->tab());
        // The image enters the scene with the picker; restoring a scene then has it there.
        setImageData(view->tab());
        tabs_->setCurrentIndex(tabs_->addTab(view, tab.title));
        view->fitWhenShown();
        remember_picker(path);
        updateSceneData();
        request_rebind(false);
        // What was whole is open; what was lost is said, not skipped in silence.
        if (!read.ok()) {
            const QString kept = read.buttonCount < 0
                                     ? QStringLiteral("none of its buttons could be read")
                                     : QStringLiteral("%1 of %2 buttons could be read")
                                           .arg(tab.buttons.size())
                                           .arg(qMax(read.buttonCount, qint32(tab.buttons.size())));
            picker_ask({QMessageBox::Warning, this, tr("Damaged Picker"),
                        QStringLiteral("The file \"%1\" is damaged: %2.\n\n%3")
                            .arg(QDir::toNativeSeparators(path), kept, read.error),
                        QMessageBox::Ok});
        }
    }
    return allOpened;
}

void picker_window::remember_picker(const QString& path) {
    QSettings settings = picker_settings();
    QStringList paths = settings.value(recent_key).toStringList();
    const QString absolute = QFileInfo(path).absoluteFilePath();
    paths.removeAll(absolute);
    paths.prepend(absolute);
    settings.setValue(recent_key, QStringList(paths.mid(0, recent_count)));
}

void picker_window::fill_recent_pickers() {
    QSettings settings = picker_settings();
    QStringList paths = settings.value(recent_key).toStringList();
    // Files gone since are dropped for good.
    paths.erase(std::remove_if(paths.begin(), paths.end(),
                               [](const QString& path) { return !QFileInfo::exists(path); }),
                paths.end());
    settings.setValue(recent_key, paths);
    recentFiles_->clear();
    for (const QString& path : std::as_const(paths)) {
        QAction* entry = recentFiles_->addAction(QFileInfo(path).fileName());
        entry->setToolTip(QDir::toNativeSeparators(path));
        connect(entry, &QAction::triggered, this, [this, path] { load_one_picker(path); });
    }
    recentFiles_->setEnabled(!paths.isEmpty());
}

void picker_window::open_tab() {
    load_pickers(picker_ask_files({picker_file_question::kind::open_files, this,
                                   tr("Select Picker"), QString(), picker_filter, QString()}));
}

bool picker_window::do_save(picker_view* view, const QString& path) {
    const bool saved = writeFileWhole(path, pickerFileBytes(tab_record(tabs_->indexOf(view))));
    if (saved)
        remember_picker(path);
    if (!saved) {
        picker_ask({QMessageBox::Critical, this, tr("Save Failed"),
                    QStringLiteral("Could not open the file \"%1\" for writing.\n\nPlease check "
                                   "that this file is not locked and that you have the proper "
                                   "permissions and try again.")
                        .arg(path),
                    QMessageBox::Ok});
    }
    return saved;
}

bool picker_window::save_current() {
    picker_view* view = frontPicker();
    if (view == nullptr)
        return false;
    if (view->tab()->path().isEmpty())
        return saveas_current(QString());
    return do_save(view, view->tab()->path());
}

bool picker_window::saveas_current(const QString& path) {
    picker_view* view = frontPicker();
    if (view == nullptr)
        return false;
    picker_tab* tab = view->tab();
    QString target = path;
    if (target.isEmpty()) {
        target = picker_ask_files({picker_file_question::kind::save_file, this, tr("Save Tab:"),
                                   tab->path(), picker_filter, QStringLiteral("pkr")})
                     .value(0);
        if (target.isEmpty())
            return true;
    }
    const bool saved = do_save(view, target);
    tab->setPath(saved ? target : QString());
    return saved;
}

void picker_window::request_save() {
    if (picker_host* host = picker_main::host())
        host->executeCommandOnIdle(QStringLiteral("TalvoraPicker(\"save\");"), false);
}

void picker_window::request_saveas() {
    if (picker_host* host = picker_main::host())
        host->executeCommandOnIdle(QStringLiteral("TalvoraPicker(\"saveas\");"), false);
}

void picker_window::close_one(int index) {
    // A tab with nothing on it has nothing to lose.
    const picker_tab* tab = tab_at(index);
    if (tab != nullptr && tab->count() == 0 && tab->background().isNull()) {
        close_tab(index);
        updateSceneData();
        return;
    }
    const QMessageBox::StandardButton answer = picker_ask(
        {QMessageBox::Warning, this, tr("Close Tab"),
         QStringLiteral(
             "Are you sure you want to close the tab \"%1\"?\n\nAll changes will be lost.")
             .arg(tabs_->tabText(index)),
         QMessageBox::Cancel | QMessageBox::Ok});
    if (answer == QMessageBox::Cancel)
        return;
    close_tab(index);
    updateSceneData();
}

void picker_window::close_tab(int index) {
    picker_view* view = view_at(index);
    if (view == nullptr)
        return;
    tabs_->removeTab(index);
    // While the window goes away the scene keeps every image; otherwise an image no remaining tab
    // uses leaves the scene. The tab now at index is left out of the search on purpose.
    const QString& key = view->tab()->backgroundKey();
    if (!closing_ && !key.isEmpty()) {
        bool shared = false;
        for (int i = 0; i < tabs_->count() && !shared; ++i) {
            const picker_tab* other = tab_at(i);
            shared = i != index && other != nullptr && other->backgroundKey() == key;
        }
        if (!shared)
            removeImageData(view->tab());
    }
    delete view;
}
