#pragma once

#include "picker_host.h"

#include <maya/MApiNamespace.h>
#include <maya/MPxCommand.h>

#include <QStringList>

QStringList MStringArrayToQStringList(const MStringArray& array);

host_status toHostStatus(const MStatus& status);
MStatus toMStatus(const host_status& status);

// Reads a command's MArgList the way picker_main expects, strings crossing as UTF-8.
class picker_maya_arg_list : public picker_arg_list {
public:
    explicit picker_maya_arg_list(const MArgList& args) : args_(args) {}

    unsigned length(host_status* status = nullptr) const override;
    QString asString(unsigned index, host_status* status = nullptr) const override;
    QStringList asStringArray(unsigned& index, host_status* status = nullptr) const override;

private:
    const MArgList& args_;
};

// The one command the plug-in registers; Maya creates an instance per call, and keeps the
// undoable ones on its undo queue.
class picker_maya_command : public MPxCommand {
public:
    static void* creator();
    // MCreatorFunction carries no context, so the registered function is held class-wide.
    static void setCommand(picker_command_fn command);

    MStatus doIt(const MArgList& args) override;
    MStatus undoIt() override;
    MStatus redoIt() override;
    // Asked after doIt: true when the call changed the selection.
    bool isUndoable() const override;

private:
    static picker_command_fn command_;
    picker_undo_ptr undo_;
};
