#pragma once

#include "picker_host.h"
#include "picker_maya_ascii.h"
#include "picker_mel.h"

#include <QMap>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <vector>

class QMainWindow;

// A small host of its own for the standalone program and the tests: a scene of named nodes with
// an active selection and fileInfo storage, scene events, deferred MEL and Python, and a reader
// for the MEL the picker issues. Errors go to the script log and to stderr, as in a real host.
class picker_embedded_host : public QObject, public picker_host {
    Q_OBJECT
public:
    // Host operations that can be made to fail on request.
    enum class operation {
        openPlugin,
        registerCommand,
        deregisterCommand,
        addEventCallback,
        removeCallback,
        executeCommandOnIdle,
        activeSelection,
        selectByName,
        clearSelectionList,
    };

    explicit picker_embedded_host(QObject* parent = nullptr);
    ~picker_embedded_host() override;

    // The bridge.
    host_status openPlugin(const QString& vendor, const QString& version,
                           const QString& requiredApiVersion) override;
    host_status registerCommand(const QString& name, picker_command_fn command) override;
    host_status deregisterCommand(const QString& name) override;
    QString loadPath() const override;
    picker_callback_id addEventCallback(const QString& event, picker_event_fn function,
                                        void* clientData, host_status* status) override;
    picker_callback_id addNodesChangedCallback(picker_event_fn function, void* clientData,
                                               host_status* status) override;
    host_status removeCallback(picker_callback_id id) override;
    host_status executeCommandOnIdle(const QString& mel, bool displayEnabled = false) override;
    host_status executePythonCommandOnIdle(const QString& python,
                                           bool displayEnabled = false) override;
    host_status activeSelection(QStringList& names) override;
    std::unique_ptr<picker_selection_snapshot> saveSelection(host_status* status) override;
    host_status selectByName(const QString& name, picker_list_adjustment adjustment) override;
    host_status clearSelectionList() override;
    host_status nodesExist(const QStringList& names, QVector<bool>& exist) override;
    void displayError(const QString& text) override;
    bool hasInterface() const override { return !batch_; }
    QWidget* mainWindow() override;

    // What the host writes as it runs: print's text as it is, other log lines, and warnings and
    // errors with their "// Warning: " and "// Error: " prefixes.
    enum class output_kind { print, line, warning, error };
    using output_fn = std::function<void(output_kind kind, const QString& text)>;

    // The scene. Node names may carry namespaces ("hero:L_hand_ctrl").
    bool addNode(const QString& name);
    // False, changing nothing, when there is no such node (or, renaming, the new name is taken
    // or not a node name).
    bool removeNode(const QString& name);
    bool renameNode(const QString& name, const QString& newName);
    QStringList nodes() const { return nodes_; }
    // Every namespace followed by its descendants, depth-first, in order of first use.
    QStringList namespaces() const;
    QStringList selection() const { return selection_; }
    // Replaces the selection; fails, changing nothing, when a name is not in the scene.
    bool setSelection(const QStringList& names);

    QString fileInfo(const QString& key) const { return fileInfo_.value(key); }
    bool hasFileInfo(const QString& key) const { return fileInfo_.contains(key); }
    QMap<QString, QString> fileInfoEntries() const { return fileInfo_; }
    bool isModified() const { return modified_; }
    // The scene file as "file -open", "file -rename" and "file -save" keep it.
    QString scenePath() const { return scenePath_; }
    QList<picker_ma_reference> references() const { return scene_.references; }

    // Scene events as the host raises them.
    void newScene();
    void openScene(const QStringList& nodes, const QMap<QString, QString>& fileInfo);
    void quit();
    void raiseEvent(const QString& event);

    // Runs MEL now, as typed into the host's command line; the value is that of the last
    // statement.
    host_status executeCommand(const QString& mel, picker_mel_value* result = nullptr);
    // Runs MEL as a script file is sourced: the whole text is read first, then each statement in
    // turn, its value handed to result after its own output. Errors name source and the line
    // when a source is given. Stops at the first statement that fails.
    host_status runScript(const QString& mel, const QString& source,
                          const std::function<void(const picker_mel_value&)>& result);
    // Runs queued MEL and Python in order until none is left, including what they queue.
    void processIdle();
    int pendingIdleCount() const {
        return static_cast<int>(idleQueue_.size()) + (nodesPending_ ? 1 : 0);
    }
    // The queued MEL texts, first to run first.
    QStringList pendingMel() const;

    QStringList scriptLog() const { return scriptLog_; }
    void clearScriptLog() { scriptLog_.clear(); }
    // Where the log's text also goes as it is written; without one, warnings and errors go to
    // stderr.
    void setOutput(const output_fn& output) { output_ = output; }
    // Where scenes are opened, saved and referenced from; the disk unless told otherwise.
    void setFiles(picker_ma_files& files) { files_ = &files; }
    bool isProcedureDefined(const QString& name) const { return procedures_.contains(name); }
    bool isCommandRegistered(const QString& name) const { return commands_.count(name) != 0; }
    int callbackCount(const QString& event) const;
    QString pluginVersion() const { return pluginVersion_; }

    void setLoadPath(const QString& path) { loadPath_ = path; }
    // The window the program supplies; without one the host makes its own on first use.
    void setMainWindow(QWidget* window) { mainWindow_ = window; }
    // A host without interface answers no main window.
    void setBatchMode(bool batch) { batch_ = batch; }
    // Failing operations answer a failure and change nothing. For callbacks, event limits the
    // failure to that event; empty means all.
    void setFailing(operation which, bool failing, const QString& event = QString());
    void clearFailures() { failing_.clear(); }

private:
    struct callback_entry {
        QString event;
        picker_event_fn function = nullptr;
        void* clientData = nullptr;
    };
    // Keeps the callback when outcome allows it, and reports outcome.
    picker_callback_id keep_callback(const host_status& outcome, const QString& event,
                                     picker_event_fn function, void* clientData,
                                     host_status* status);
    struct idle_entry {
        bool python = false;
        QString text;
    };

    bool failing(operation which, const QString& event = QString()) const;
    host_status refuse() const;
    void scheduleIdle();
    void log(output_kind kind, const QString& text);
    void logError(const QString& text);
    void changeSelection(const QStringList& names);
    // As the select command changes it: one step on the undo queue.
    void changeSelectionUndoably(const QStringList& names);
    void resetScene(const QStringList& nodes, const QMap<QString, QString>& fileInfo);

    host_status runMel(const QString& text, picker_mel_value* result, int depth);
    host_status runStatement(const picker_mel_statement& statement, picker_mel_value* result,
                             int depth);
    host_status evaluateArguments(const picker_mel_statement& statement,
                                  QVector<picker_mel_value>& values, int depth);
    host_status runRegistered(picker_command_fn command, const QVector<picker_mel_value>& values);
    host_status runFileInfo(const QStringList& args, picker_mel_value* result);
    host_status runFile(const QStringList& args, picker_mel_value* result);
    host_status openFile(const QString& path);
    host_status saveFile();
    host_status referenceFile(const QString& ns, const QString& path);
    // Errors of a scene that was read all the same: logged, and the statement fails.
    host_status readErrors(const picker_ma_result& result);
    host_status runLs(const QStringList& args, picker_mel_value* result);
    void logWarning(const QString& text);
    host_status runSelect(const QStringList& args);
    host_status runXform(const QStringList& args);
    host_status runDelete(const QStringList& args);
    host_status runRename(const QStringList& args, picker_mel_value* result);
    // The node table changed: the nodes-changed callbacks run once the host is next idle.
    void nodesChanged();
    host_status melError(const QString& text);
    // The undo queue, as MEL's undo and redo walk it: a new step drops the undone ones.
    void pushUndo(picker_undo_ptr step);
    host_status walkUndo(bool back);

    QStringList nodes_;
    QSet<QString> nodeSet_;
    QStringList selection_;
    QMap<QString, QString> fileInfo_;
    bool modified_ = false;
    QString scenePath_;
    // Set by "file -rename": the next save gives the file its new name in the header too.
    bool renamed_ = false;
    // The scene file the references' relative paths were found from.
    QString referenceBase_;
    // The scene file as read (or last saved), its references and what they brought in.
    picker_ma_scene scene_;
    picker_ma_files* files_ = &picker_ma_disk();
    output_fn output_;
    // "FILE:LINE: " of the script statement running, for its errors.
    QString position_;

    std::map<QString, picker_command_fn> commands_;
    std::map<picker_callback_id, callback_entry> callbacks_;
    picker_callback_id nextCallbackId_ = 1;
    QSet<QString> procedures_;

    std::vector<picker_undo_ptr> undoQueue_;
    // Steps before this index are done; from it on they are undone and wait for redo.
    std::size_t undoDone_ = 0;

    std::deque<idle_entry> idleQueue_;
    bool idleScheduled_ = false;
    bool runningIdle_ = false;
    bool nodesPending_ = false;

    QStringList scriptLog_;
    QString loadPath_;
    QString pluginVersion_;
    QPointer<QWidget> mainWindow_;
    std::unique_ptr<QMainWindow> ownMainWindow_;
    bool batch_ = false;
    QMap<operation, QString> failing_;
};
