#pragma once

#include "picker_host.h"

#include <QPointer>
#include <QString>
#include <QStringList>

class QDataStream;
class QDockWidget;
class QPixmap;
class QWidget;

// What the command asks of the picker window. The window implements it; the command finds it as
// the dock's widget.
class picker_window_link {
public:
    virtual ~picker_window_link() = default;
    virtual void setSelection(const QStringList& names) = 0;
    virtual void reset() = 0;
    virtual void streamFrom(QDataStream& stream) = 0;
    // Brings the front tab's background image in from the scene.
    virtual void fetchFrontImageData() = 0;
    virtual void setBackgroundImage(const QString& key, const QPixmap& image) = 0;
    // False when the front tab could not be written.
    virtual bool save_current() = 0;
    // The front tab to path, or to a file the user chooses when path is empty. False when it
    // could not be written; a choice cancelled writes nothing and is no failure.
    virtual bool saveas_current(const QString& path) = 0;
    // False when any of the files did not open.
    virtual bool load_pickers(const QStringList& paths) = 0;
    virtual void rebindFront(const QStringList& namespaces, bool rebind) = 0;
    // Nodes were added, removed or renamed in the scene.
    virtual void nodesChanged() = 0;
};

// Builds the picker window inside the dock; the window must also be a picker_window_link.
using picker_window_factory = QWidget* (*)(QDockWidget* dock);
// Told when picker_main lets go of the host for good at quit, when the host unloads nothing.
using picker_release_fn = void (*)();

// The "TalvoraPicker" command and the plug-in's process-wide state. Everything here reaches the
// host through the bridge handed to initialize().
class picker_main {
public:
    static const QString name_;
    static const QString version_;

    // The plug-in's load and unload steps.
    static host_status initialize(picker_host& host, picker_window_factory windowFactory,
                                  picker_release_fn released = nullptr);
    static host_status uninitialize();

    // "select" and "clear" leave their undo step in undo.
    static host_status doIt(const picker_arg_list& args, picker_undo_ptr& undo);
    static host_status process_command(const QString& directive, const QStringList& args,
                                       picker_undo_ptr& undo);
    static host_status fetch_pickerdata(const QStringList& args);
    static host_status fetch_image(const QStringList& args);
    static host_status rebind_picker(const QStringList& args, bool rebind);

    static void selectionChangedFn(void* clientData);
    static void quitApplicationFn(void* clientData);
    static void deleteAllFn(void* clientData);
    static void sceneOpenedFn(void* clientData);
    static void nodesChangedFn(void* clientData);

    static void cleanup();
    static void read_settings();
    static void write_settings();
    static void load_script(const QString& name);
    static void report_error(const host_status& status, const char* message);

    // Null before initialize() and after uninitialize().
    static picker_host* host();
    static QDockWidget* dock();
    static picker_window_link* window();
};
