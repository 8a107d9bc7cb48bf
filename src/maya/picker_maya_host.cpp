#include "picker_maya_host.h"

#include "picker_maya_command.h"

#include <maya/MEventMessage.h>
#include <maya/MFnPlugin.h>
#include <maya/MGlobal.h>
#include <maya/MItSelectionList.h>
#include <maya/MMessage.h>
#include <maya/MQtUtil.h>
#include <maya/MSelectionList.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MStringArray.h>

#include <QByteArray>

namespace {
// The adapter is held to the Maya API facts the project has checked; none of them reads the
// scene's node table or reports nodes as they come and go, so the picker marks no node missing in
// Maya rather than guess.
host_status noNodeTable() {
    return host_status::failure(
        QStringLiteral("the scene's node names cannot be read through this adapter"));
}

host_status notOpen() {
    return host_status::failure(QStringLiteral("the plug-in function set is not open"));
}

// The selection as Maya holds it; restoring it is one change of the active list.
class picker_maya_selection : public picker_selection_snapshot {
public:
    explicit picker_maya_selection(const MSelectionList& list) : list_(list) {}
    host_status restore() override {
        return toHostStatus(MGlobal::setActiveSelectionList(list_, MGlobal::kReplaceList));
    }

private:
    MSelectionList list_;
};
} // namespace

picker_maya_host::entry_point::entry_point(picker_maya_host& host, MObject& plugin) : host_(host) {
    host_.plugin_ = &plugin;
}

picker_maya_host::entry_point::~entry_point() {
    host_.functionSet_.reset();
    host_.plugin_ = nullptr;
}

picker_maya_host::picker_maya_host() = default;

picker_maya_host::~picker_maya_host() = default;

host_status picker_maya_host::openPlugin(const QString& vendor, const QString& version,
                                         const QString& requiredApiVersion) {
    if (!plugin_)
        return notOpen();
    const QByteArray vendorText = vendor.toUtf8();
    const QByteArray versionText = version.toUtf8();
    const QByteArray apiText = requiredApiVersion.toUtf8();
    MStatus status;
    auto functionSet = std::make_unique<MFnPlugin>(
        *plugin_, vendorText.constData(), versionText.constData(), apiText.constData(), &status);
    if (!status)
        return toHostStatus(status);
    functionSet_ = std::move(functionSet);
    loadPath_ = MQtUtil::toQString(functionSet_->loadPath());
    return {};
}

host_status picker_maya_host::registerCommand(const QString& name, picker_command_fn command) {
    if (!functionSet_)
        return notOpen();
    picker_maya_command::setCommand(command);
    const MStatus status =
        functionSet_->registerCommand(MQtUtil::toMString(name), &picker_maya_command::creator);
    if (!status)
        picker_maya_command::setCommand(nullptr);
    return toHostStatus(status);
}

host_status picker_maya_host::deregisterCommand(const QString& name) {
    if (!functionSet_)
        return notOpen();
    const MStatus status = functionSet_->deregisterCommand(MQtUtil::toMString(name));
    if (status)
        picker_maya_command::setCommand(nullptr);
    return toHostStatus(status);
}

QString picker_maya_host::loadPath() const {
    return loadPath_;
}

picker_callback_id picker_maya_host::addEventCallback(const QString& event,
                                                      picker_event_fn function, void* clientData,
                                                      host_status* status) {
    MStatus result;
    const MCallbackId id =
        MEventMessage::addEventCallback(MQtUtil::toMString(event), function, clientData, &result);
    if (status)
        *status = toHostStatus(result);
    return static_cast<picker_callback_id>(id);
}

picker_callback_id picker_maya_host::addNodesChangedCallback(picker_event_fn, void*,
                                                             host_status* status) {
    if (status)
        *status = noNodeTable();
    return 0;
}

host_status picker_maya_host::removeCallback(picker_callback_id id) {
    return toHostStatus(MMessage::removeCallback(static_cast<MCallbackId>(id)));
}

host_status picker_maya_host::executeCommandOnIdle(const QString& mel, bool displayEnabled) {
    return toHostStatus(MGlobal::executeCommandOnIdle(MQtUtil::toMString(mel), displayEnabled));
}

host_status picker_maya_host::executePythonCommandOnIdle(const QString& python,
                                                         bool displayEnabled) {
    return toHostStatus(
        MGlobal::executePythonCommandOnIdle(MQtUtil::toMString(python), displayEnabled));
}

host_status picker_maya_host::activeSelection(QStringList& names) {
    names.clear();
    MSelectionList list;
    const MStatus status = MGlobal::getActiveSelectionList(list);
    if (!status)
        return toHostStatus(status);
    if (list.isEmpty())
        return {};
    // getStrings writes each item as the user sees it, components included, unlike a node filter.
    for (MItSelectionList item(list); !item.isDone(); item.next()) {
        MStringArray strings;
        item.getStrings(strings);
        names += MStringArrayToQStringList(strings);
    }
    return {};
}

std::unique_ptr<picker_selection_snapshot> picker_maya_host::saveSelection(host_status* status) {
    MSelectionList list;
    // In the order the user selected, where Maya tracks it: restoring keeps that order.
    const MStatus read = MGlobal::getActiveSelectionList(list, true);
    if (status)
        *status = toHostStatus(read);
    if (!read)
        return nullptr;
    return std::make_unique<picker_maya_selection>(list);
}

host_status picker_maya_host::selectByName(const QString& name, picker_list_adjustment adjustment) {
    const MGlobal::ListAdjustment listAdjustment =
        adjustment == picker_list_adjustment::replace ? MGlobal::kReplaceList : MGlobal::kAddToList;
    return toHostStatus(MGlobal::selectByName(MQtUtil::toMString(name), listAdjustment));
}

host_status picker_maya_host::clearSelectionList() {
    return toHostStatus(MGlobal::clearSelectionList());
}

host_status picker_maya_host::nodesExist(const QStringList&, QVector<bool>& exist) {
    exist.clear();
    return noNodeTable();
}

void picker_maya_host::displayError(const QString& text) {
    MGlobal::displayError(MQtUtil::toMString(text));
}

bool picker_maya_host::hasInterface() const {
    return MGlobal::mayaState() == MGlobal::kInteractive;
}

QWidget* picker_maya_host::mainWindow() {
    return MQtUtil::mainWindow();
}
