#pragma once

#include <QString>
#include <QStringList>
#include <QVector>
#include <QtGlobal>

#include <memory>
#include <utility>

class QWidget;

// A host call's outcome: success, or failure with the host's own error text.
class host_status {
public:
    host_status() = default;
    static host_status failure(const QString& error) { return host_status(false, error); }

    bool ok() const { return ok_; }
    explicit operator bool() const { return ok_; }
    const QString& errorString() const { return error_; }

private:
    host_status(bool ok, const QString& error) : ok_(ok), error_(error) {}
    bool ok_ = true;
    QString error_;
};

// A command's arguments, read the way the host's own argument list reads them.
class picker_arg_list {
public:
    virtual ~picker_arg_list() = default;
    virtual unsigned length(host_status* status = nullptr) const = 0;
    virtual QString asString(unsigned index, host_status* status = nullptr) const = 0;
    // On return index is the last argument consumed.
    virtual QStringList asStringArray(unsigned& index, host_status* status = nullptr) const = 0;
};

// The host's active selection in the host's own form, so that putting it back is exact:
// components, order, and whatever the picker has no names for.
class picker_selection_snapshot {
public:
    virtual ~picker_selection_snapshot() = default;
    // Makes this the active selection again, as one change.
    virtual host_status restore() = 0;
};

// What one call of the registered command leaves on the host's undo queue. The host keeps it
// with the call and runs undo and redo as the user walks the queue, as Maya does with an
// undoable MPxCommand.
class picker_undo_step {
public:
    virtual ~picker_undo_step() = default;
    virtual host_status undo() = 0;
    virtual host_status redo() = 0;
};
using picker_undo_ptr = std::unique_ptr<picker_undo_step>;

// A change of the active selection: undo puts back the selection before it, redo the one after.
class picker_selection_change : public picker_undo_step {
public:
    picker_selection_change(std::unique_ptr<picker_selection_snapshot> before,
                            std::unique_ptr<picker_selection_snapshot> after)
        : before_(std::move(before)), after_(std::move(after)) {}
    host_status undo() override { return before_->restore(); }
    host_status redo() override { return after_->restore(); }

private:
    std::unique_ptr<picker_selection_snapshot> before_;
    std::unique_ptr<picker_selection_snapshot> after_;
};

using picker_callback_id = quintptr;
using picker_event_fn = void (*)(void* clientData);
// A call that changes the scene leaves its undo step in undo; one left empty is not undoable.
using picker_command_fn = host_status (*)(const picker_arg_list& args, picker_undo_ptr& undo);

enum class picker_list_adjustment { replace, add };

// Every host operation the picker uses. Nothing outside the Maya adapter talks to Maya; the
// embedded host gives the same operations to the standalone program and the tests.
class picker_host {
public:
    virtual ~picker_host() = default;

    // Registration. openPlugin stands for creating the host's plug-in function set.
    virtual host_status openPlugin(const QString& vendor, const QString& version,
                                   const QString& requiredApiVersion) = 0;
    virtual host_status registerCommand(const QString& name, picker_command_fn command) = 0;
    virtual host_status deregisterCommand(const QString& name) = 0;
    virtual QString loadPath() const = 0;

    virtual picker_callback_id addEventCallback(const QString& event, picker_event_fn function,
                                                void* clientData, host_status* status) = 0;
    // Calls function once the host is idle after nodes were added, removed or renamed, once for
    // however many changed; removeCallback takes it off.
    virtual picker_callback_id addNodesChangedCallback(picker_event_fn function, void* clientData,
                                                       host_status* status) = 0;
    virtual host_status removeCallback(picker_callback_id id) = 0;

    // Deferred until the host is idle; the result is never examined.
    virtual host_status executeCommandOnIdle(const QString& mel, bool displayEnabled = false) = 0;
    virtual host_status executePythonCommandOnIdle(const QString& python,
                                                   bool displayEnabled = false) = 0;

    // The active selection as node names, as the host writes them, in selection order.
    virtual host_status activeSelection(QStringList& names) = 0;
    // Null, with the reason in status, when the host cannot read its selection.
    virtual std::unique_ptr<picker_selection_snapshot> saveSelection(host_status* status) = 0;
    virtual host_status selectByName(const QString& name, picker_list_adjustment adjustment) = 0;
    virtual host_status clearSelectionList() = 0;
    // One flag a name, in order: whether the scene holds a node by that name. A host that cannot
    // tell fails, and nothing is taken for missing.
    virtual host_status nodesExist(const QStringList& names, QVector<bool>& exist) = 0;

    virtual void displayError(const QString& text) = 0;
    // False in batch sessions, where creating any widget aborts the host.
    virtual bool hasInterface() const = 0;
    // Null when the host has no interface (batch mode).
    virtual QWidget* mainWindow() = 0;
};
