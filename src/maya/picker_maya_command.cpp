#include "picker_maya_command.h"

#include <maya/MArgList.h>
#include <maya/MQtUtil.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MStringArray.h>

picker_command_fn picker_maya_command::command_ = nullptr;

QStringList MStringArrayToQStringList(const MStringArray& array) {
    QStringList list;
    const unsigned count = array.length();
    list.reserve(static_cast<int>(count));
    for (unsigned i = 0; i < count; ++i)
        list.append(MQtUtil::toQString(array[i]));
    return list;
}

host_status toHostStatus(const MStatus& status) {
    if (status)
        return {};
    return host_status::failure(MQtUtil::toQString(status.errorString()));
}

MStatus toMStatus(const host_status& status) {
    return status.ok() ? MStatus(MS::kSuccess) : MStatus(MS::kFailure);
}

namespace {
void storeStatus(host_status* target, const MStatus& status) {
    if (target)
        *target = toHostStatus(status);
}
} // namespace

unsigned picker_maya_arg_list::length(host_status* status) const {
    MStatus result;
    const unsigned count = args_.length(&result);
    storeStatus(status, result);
    return count;
}

QString picker_maya_arg_list::asString(unsigned index, host_status* status) const {
    MStatus result;
    const MString text = args_.asString(index, &result);
    storeStatus(status, result);
    return MQtUtil::toQString(text);
}

QStringList picker_maya_arg_list::asStringArray(unsigned& index, host_status* status) const {
    MStatus result;
    const MStringArray array = args_.asStringArray(index, &result);
    storeStatus(status, result);
    return MStringArrayToQStringList(array);
}

void* picker_maya_command::creator() {
    // Maya owns and deletes the instance once the call is over.
    return new picker_maya_command;
}

void picker_maya_command::setCommand(picker_command_fn command) {
    command_ = command;
}

MStatus picker_maya_command::doIt(const MArgList& args) {
    if (!command_)
        return MS::kFailure;
    return toMStatus(command_(picker_maya_arg_list(args), undo_));
}

MStatus picker_maya_command::undoIt() {
    return undo_ ? toMStatus(undo_->undo()) : MStatus(MS::kFailure);
}

MStatus picker_maya_command::redoIt() {
    return undo_ ? toMStatus(undo_->redo()) : MStatus(MS::kFailure);
}

bool picker_maya_command::isUndoable() const {
    return undo_ != nullptr;
}
