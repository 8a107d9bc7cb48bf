#include "picker_main.h"

#include "picker_file.h"
#include "picker_version.h"

#include <QByteArray>
#include <QDataStream>
#include <QDockWidget>
#include <QGuiApplication>
#include <QIcon>
#include <QMainWindow>
#include <QMutex>
#include <QPixmap>
#include <QRect>
#include <QResource>
#include <QScreen>
#include <QSettings>

#include <iterator>
#include <mutex>

// Resources of a static library are registered by hand, and only from the global namespace.
static void picker_init_resources() {
    Q_INIT_RESOURCE(picker_host);
}

namespace {

const QString vendor = QStringLiteral("Talvora");
const QString anyApiVersion = QStringLiteral("Any");
// Unloading announces itself with a different version than loading; the host accepts both.
const QString unloadVersion = QStringLiteral("1.0");
const QString internalFailure = QStringLiteral("(kFailure): Unexpected Internal Failure");
const QString noInterface = QStringLiteral("TalvoraPicker - no user interface in this session");
constexpr int minimumExtent = 150;

struct plugin_state {
    picker_host* host = nullptr;
    picker_window_factory windowFactory = nullptr;
    picker_release_fn released = nullptr;
    QPointer<QDockWidget> window;
    QMutex mutex;
    QString path;
    picker_callback_id selectionChangedId = 0;
    picker_callback_id quitApplicationId = 0;
    picker_callback_id deleteAllId = 0;
    picker_callback_id newSceneOpenedId = 0;
    picker_callback_id sceneOpenedId = 0;
    picker_callback_id nodesChangedId = 0; // 0 where the host cannot tell
};

plugin_state& state() {
    static plugin_state instance;
    return instance;
}

QSettings picker_settings() {
    return QSettings(QStringLiteral("Talvora"), QStringLiteral("picker"));
}

// Installs one event callback; false (after reporting) when the host refuses it.
bool install_callback(const char* event, picker_event_fn function, picker_callback_id& id,
                      const char* message, host_status& status) {
    id = state().host->addEventCallback(QString::fromUtf8(event), function, nullptr, &status);
    picker_main::report_error(status, message);
    return status.ok();
}

void remove_callback(picker_callback_id id, const char* message, host_status& status) {
    status = state().host->removeCallback(id);
    picker_main::report_error(status, message);
}

// Each failure is reported and none stops the others; status is the last removal's.
void remove_callbacks(host_status& status) {
    plugin_state& s = state();
    if (s.nodesChangedId != 0) {
        remove_callback(s.nodesChangedId, "could not remove the nodes-changed callback", status);
        s.nodesChangedId = 0;
    }
    remove_callback(s.selectionChangedId, "could not remove selectionChanged callback", status);
    remove_callback(s.quitApplicationId, "could not remove the quitApplicaiton callback", status);
    remove_callback(s.deleteAllId, "could not remove the deleteAll callback", status);
    remove_callback(s.newSceneOpenedId, "could not remove the newSceneOpened callback", status);
    remove_callback(s.sceneOpenedId, "could not remove the sceneOpened callback", status);
}

void forget_host() {
    plugin_state& s = state();
    s.host = nullptr;
    s.windowFactory = nullptr;
    s.released = nullptr;
    s.path.clear();
}

// Changes the host's selection under the mutex, so that the host's notice of each single change
// is ignored, tells the picker the outcome once, and leaves the change for the host's undo queue.
template <typename Change>
host_status change_selection(Change change, picker_undo_ptr& undo) {
    plugin_state& s = state();
    // Without a readable selection the change still happens; it only cannot be undone.
    host_status saved;
    std::unique_ptr<picker_selection_snapshot> before = s.host->saveSelection(&saved);
    host_status status;
    {
        std::lock_guard<QMutex> guard(s.mutex);
        status = change(*s.host);
    }
    std::unique_ptr<picker_selection_snapshot> after;
    if (before)
        after = s.host->saveSelection(&saved);
    if (after)
        undo = std::make_unique<picker_selection_change>(std::move(before), std::move(after));
    picker_main::selectionChangedFn(nullptr);
    return status;
}

void create_dock() {
    plugin_state& s = state();
    auto* mainWindow = qobject_cast<QMainWindow*>(s.host->mainWindow());
    // Owned by the host's main window once added to it, and deleted by cleanup() in any case.
    auto* dock = new QDockWidget();
    s.window = dock;
    dock->setObjectName(picker_main::name_);
    if (s.windowFactory)
        dock->setWidget(s.windowFactory(dock));
    if (mainWindow)
        mainWindow->addDockWidget(Qt::RightDockWidgetArea, dock);
    dock->setFloating(true);
    dock->setAllowedAreas(Qt::NoDockWidgetArea);
    // Without the tool bits the floating dock behaves as an ordinary top-level window.
    const Qt::WindowFlags toolBits(static_cast<Qt::WindowType>(0xA));
    dock->setWindowFlags(dock->windowFlags() & ~toolBits);
    dock->setFeatures(QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetMovable |
                      QDockWidget::DockWidgetFloatable);
    dock->setWindowTitle(picker_main::name_);
    dock->setWindowIcon(QIcon(QStringLiteral(":/resources/TalvoraLogo.png")));
    picker_main::read_settings();
    dock->show();
    picker_main::sceneOpenedFn(nullptr);
}

host_status not_done(const char* what) {
    return host_status::failure(QStringLiteral("TalvoraPicker - the picker ") +
                                QLatin1String(what));
}

host_status refuse_without_interface() {
    state().host->displayError(noInterface);
    return host_status::failure(noInterface);
}

} // namespace

const QString picker_main::name_ = QStringLiteral("TalvoraPicker");
const QString picker_main::version_ = QStringLiteral(PICKER_VERSION);

picker_host* picker_main::host() {
    return state().host;
}

QDockWidget* picker_main::dock() {
    return state().window.data();
}

picker_window_link* picker_main::window() {
    QDockWidget* dock = state().window.data();
    return dock ? dynamic_cast<picker_window_link*>(dock->widget()) : nullptr;
}

host_status picker_main::initialize(picker_host& host, picker_window_factory windowFactory,
                                    picker_release_fn released) {
    picker_init_resources();
    plugin_state& s = state();
    s.host = &host;
    s.windowFactory = windowFactory;
    s.released = released;

    // A failed load is over for the host: nothing of it stays reachable.
    const auto failed = [](const host_status& status) {
        forget_host();
        return status;
    };
    host_status status = host.openPlugin(vendor, version_, anyApiVersion);
    report_error(status, "could not initialize the plugin");
    if (!status)
        return failed(status);
    status = host.registerCommand(name_, &picker_main::doIt);
    report_error(status, "could not initialize the plugin");
    if (!status)
        return failed(status);

    struct callback_entry {
        const char* event;
        picker_event_fn function;
        picker_callback_id* id;
        const char* message;
    };
    const callback_entry callbacks[] = {
        {"SelectionChanged", &picker_main::selectionChangedFn, &s.selectionChangedId,
         "could not install SelectionChanged callback"},
        {"quitApplication", &picker_main::quitApplicationFn, &s.quitApplicationId,
         "could not install quitApplication callback"},
        {"deleteAll", &picker_main::deleteAllFn, &s.deleteAllId,
         "could not install the deleteAll callback"},
        {"NewSceneOpened", &picker_main::deleteAllFn, &s.newSceneOpenedId,
         "could not install the NewSceneOpened callback"},
        {"SceneOpened", &picker_main::sceneOpenedFn, &s.sceneOpenedId,
         "could not install the SceneOpened callback"}};
    for (std::size_t i = 0; i < std::size(callbacks); ++i) {
        const callback_entry& entry = callbacks[i];
        if (install_callback(entry.event, entry.function, *entry.id, entry.message, status))
            continue;
        // Nothing may stay registered that could call into the library once Maya drops it.
        host_status undone;
        for (std::size_t j = i; j-- > 0;)
            remove_callback(*callbacks[j].id, "could not remove a callback of the failed load",
                            undone);
        undone = host.deregisterCommand(name_);
        report_error(undone, "could not deregister the command of the failed load");
        return failed(status);
    }

    // A host without a node table to report on simply marks no node missing.
    host_status nodesStatus;
    s.nodesChangedId =
        host.addNodesChangedCallback(&picker_main::nodesChangedFn, nullptr, &nodesStatus);
    if (!nodesStatus)
        s.nodesChangedId = 0;

    s.path = host.loadPath();
    load_script(QStringLiteral("picker_ListNamespaces.mel"));
    return status;
}

host_status picker_main::uninitialize() {
    plugin_state& s = state();
    if (!s.host)
        return host_status::failure(internalFailure);
    host_status status = s.host->openPlugin(vendor, unloadVersion, anyApiVersion);
    report_error(status, "could not deregister the plugin");
    if (!status)
        return status;

    cleanup();

    status = s.host->deregisterCommand(name_);
    report_error(status, "could not deregister the plugin");
    if (!status)
        return status;

    remove_callbacks(status);
    forget_host();
    return status;
}

host_status picker_main::doIt(const picker_arg_list& args, picker_undo_ptr& undo) {
    if (!state().host)
        return host_status::failure(internalFailure);
    host_status status;
    const unsigned count = args.length(&status);
    if (!status) {
        report_error(status, "could not determine the number of parameters");
        return status;
    }
    const bool hasInterface = state().host->hasInterface();
    if (hasInterface && !state().window)
        create_dock();

    if (count == 0) {
        if (!hasInterface)
            return refuse_without_interface();
        QDockWidget* dockWidget = dock();
        if (dockWidget && !dockWidget->isVisible())
            dockWidget->showNormal();
        else if (dockWidget && dockWidget->isActiveWindow())
            dockWidget->raise();
        selectionChangedFn(nullptr);
        return host_status();
    }

    const QString directive = args.asString(0, &status);
    if (!status) {
        report_error(status, "could not parse the command");
        return status;
    }

    QStringList directiveArgs;
    if (count == 2) {
        unsigned index = 1;
        directiveArgs = args.asStringArray(index, &status);
    }
    if (count > 2 || (count == 2 && !status)) {
        directiveArgs.clear();
        for (unsigned index = 1; index < count; ++index) {
            const QString arg = args.asString(index, &status);
            if (!status)
                break;
            directiveArgs.append(arg);
        }
    }
    if (!status) {
        report_error(status, "could not parse the command");
        return status;
    }
    return process_command(directive, directiveArgs, undo);
}

host_status picker_main::process_command(const QString& directive, const QStringList& args,
                                         picker_undo_ptr& undo) {
    picker_host* host = state().host;
    if (!host)
        return host_status::failure(internalFailure);
    if (directive == QLatin1String("clear"))
        return change_selection([](picker_host& h) { return h.clearSelectionList(); }, undo);
    if (directive == QLatin1String("select")) {
        return change_selection(
            [&args](picker_host& h) {
                if (args.isEmpty())
                    return h.clearSelectionList();
                host_status status;
                int first = 0;
                for (; first < args.size(); ++first) {
                    status = h.selectByName(args.at(first), picker_list_adjustment::replace);
                    if (status)
                        break;
                }
                for (int index = first; index < args.size(); ++index)
                    status = h.selectByName(args.at(index), picker_list_adjustment::add);
                return status;
            },
            undo);
    }
    static const QStringList windowDirectives = {
        QStringLiteral("restore"), QStringLiteral("fetch_image"), QStringLiteral("bind"),
        QStringLiteral("rebind"),  QStringLiteral("save"),        QStringLiteral("saveas"),
        QStringLiteral("open")};
    if (windowDirectives.contains(directive) && !host->hasInterface())
        return refuse_without_interface();
    picker_window_link* link = window();
    if (directive == QLatin1String("restore"))
        return fetch_pickerdata(args);
    if (directive == QLatin1String("fetch_image"))
        return fetch_image(args);
    if (directive == QLatin1String("bind"))
        return rebind_picker(args, false);
    if (directive == QLatin1String("rebind"))
        return rebind_picker(args, true);
    // What failed the window has told the user; the command fails so that scripts stop there.
    if (directive == QLatin1String("save"))
        return !link || link->save_current() ? host_status() : not_done("was not saved");
    if (directive == QLatin1String("saveas")) {
        if (args.size() > 1) {
            const QString message = QStringLiteral("TalvoraPicker - saveas takes one file at most");
            host->displayError(message);
            return host_status::failure(message);
        }
        return !link || link->saveas_current(args.value(0)) ? host_status()
                                                            : not_done("was not saved");
    }
    if (directive == QLatin1String("open"))
        return !link || link->load_pickers(args) ? host_status() : not_done("did not all open");
    const QString message = QStringLiteral("TalvoraPicker - unknown directive: %1").arg(directive);
    host->displayError(message);
    return host_status::failure(message);
}

host_status picker_main::fetch_pickerdata(const QStringList& args) {
    if (args.size() == 1 && !args.at(0).isEmpty()) {
        const QByteArray data = qUncompress(QByteArray::fromBase64(args.at(0).toUtf8()));
        if (!data.isEmpty()) {
            QDataStream stream(data);
            if (picker_window_link* link = window())
                link->streamFrom(stream);
            selectionChangedFn(nullptr);
            if (picker_window_link* link = window())
                link->fetchFrontImageData();
            return host_status();
        }
        if (picker_window_link* link = window())
            link->reset();
        return host_status::failure(internalFailure);
    }
    if (picker_window_link* link = window())
        link->reset();
    return host_status();
}

host_status picker_main::fetch_image(const QStringList& args) {
    if (args.size() != 2 || args.at(0).isEmpty())
        return host_status();
    // Only as many bytes of the image text as the key has are decoded; an old rule of the
    // stored format, kept so scenes read as they always have.
    const int byteCount = args.at(0).toUtf8().size();
    const QByteArray image = QByteArray::fromBase64(args.at(1).toUtf8().left(byteCount));
    if (image.isEmpty())
        return host_status::failure(internalFailure);
    QPixmap pixmap;
    pixmap.loadFromData(image, "PNG");
    if (picker_window_link* link = window())
        link->setBackgroundImage(args.at(0), pixmap);
    return host_status();
}

host_status picker_main::rebind_picker(const QStringList& args, bool rebind) {
    if (picker_window_link* link = window())
        link->rebindFront(args, rebind);
    return host_status();
}

void picker_main::selectionChangedFn(void* clientData) {
    Q_UNUSED(clientData)
    plugin_state& s = state();
    if (!s.window || !s.host)
        return;
    // Taken while "select" or "clear" change the host's selection: their own notifications are
    // ignored, and they report the outcome once when done.
    std::unique_lock<QMutex> guard(s.mutex, std::try_to_lock);
    if (!guard.owns_lock())
        return;
    QStringList names;
    const host_status status = s.host->activeSelection(names);
    if (!status) {
        s.host->displayError(
            QStringLiteral("TalvoraPicker- could not get the current selection: %1")
                .arg(status.errorString()));
        return;
    }
    if (picker_window_link* link = window())
        link->setSelection(names);
}

void picker_main::quitApplicationFn(void* clientData) {
    Q_UNUSED(clientData)
    plugin_state& s = state();
    if (s.window)
        cleanup();
    if (!s.host)
        return;
    // The host quits without unloading the plug-in: let go of it now, while it still answers,
    // not at process exit after its own teardown. The command stays and refuses to run.
    host_status status;
    remove_callbacks(status);
    const picker_release_fn released = s.released;
    forget_host();
    if (released)
        released();
}

void picker_main::deleteAllFn(void* clientData) {
    Q_UNUSED(clientData)
    if (!state().window)
        return;
    if (picker_window_link* link = window())
        link->reset();
}

void picker_main::nodesChangedFn(void* clientData) {
    Q_UNUSED(clientData)
    if (!state().window)
        return;
    if (picker_window_link* link = window())
        link->nodesChanged();
}

void picker_main::sceneOpenedFn(void* clientData) {
    Q_UNUSED(clientData)
    plugin_state& s = state();
    if (!s.window || !s.host)
        return;
    s.host->executeCommandOnIdle(QStringLiteral("TalvoraPicker restore `fileInfo -q \"%1\"`;")
                                     .arg(QLatin1String(picker_scene_data_key)));
}

void picker_main::cleanup() {
    if (!state().window)
        return;
    write_settings();
    delete state().window.data();
}

void picker_main::read_settings() {
    QDockWidget* dockWidget = dock();
    if (!dockWidget)
        return;
    QSettings settings = picker_settings();
    QSize size = settings.value(QStringLiteral("pickerSize"), QSize(400, 400)).toSize();
    const QPoint position =
        settings.value(QStringLiteral("pickerPosition"), QPoint(120, 100)).toPoint();
    if (size.width() < minimumExtent)
        size.setWidth(minimumExtent);
    // A low height widens the window and keeps the height: long-standing behaviour users'
    // stored layouts rely on.
    if (size.height() < minimumExtent)
        size.setWidth(minimumExtent);

    QRect rect(position, size);
    bool onScreen = false;
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens) {
        if (screen->availableGeometry().contains(rect)) {
            onScreen = true;
            break;
        }
    }
    if (!onScreen) {
        if (const QScreen* primary = QGuiApplication::primaryScreen())
            rect.moveCenter(primary->availableGeometry().center());
    }
    dockWidget->resize(rect.size());
    dockWidget->move(rect.topLeft());
}

void picker_main::write_settings() {
    QDockWidget* dockWidget = dock();
    if (!dockWidget)
        return;
    QSettings settings = picker_settings();
    settings.setValue(QStringLiteral("pickerSize"), dockWidget->size());
    settings.setValue(QStringLiteral("pickerPosition"), dockWidget->pos());
}

void picker_main::load_script(const QString& name) {
    picker_host* host = state().host;
    if (!host)
        return;
    const QResource resource(QStringLiteral(":/scripts/%1").arg(name));
    if (!resource.isValid())
        return;
    host->executeCommandOnIdle(QString::fromUtf8(resource.uncompressedData()));
}

void picker_main::report_error(const host_status& status, const char* message) {
    if (status || !state().host)
        return;
    state().host->displayError(QStringLiteral("%1 - %2: %3 ")
                                   .arg(name_, QString::fromUtf8(message), status.errorString()));
}
