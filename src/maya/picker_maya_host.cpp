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
host_status notOpen() {
    return host_status::failure(QStringLiteral("the plug-in function set is not open"));
}
} // namespace

picker_maya_host::picker_maya_host(const MObject& plugin) : plugin_(plugin) {}

picker_maya_host::~picker_maya_host() = default;

void picker_maya_host::setPluginObject(const MObject& plugin) {
    functionSet_.reset();
    plugin_ = plugin;
}

host_status picker_maya_host::openPlugin(const QString& vendor, const QString& version,
                                         const QString& requiredApiVersion) {
    const QByteArray vendorText = vendor.toUtf8();
    const QByteArray versionText = version.toUtf8();
    const QByteArray apiText = requiredApiVersion.toUtf8();
    MStatus status;
    auto functionSet = std::make_unique<MFnPlugin>(
        plugin_, vendorText.constData(), versionText.constData(), apiText.constData(), &status);
    if (!status)
        return toHostStatus(status);
    functionSet_ = std::move(functionSet);
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
    if (!functionSet_)
        return QString();
    return MQtUtil::toQString(functionSet_->loadPath());
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

host_status picker_maya_host::selectByName(const QString& name, picker_list_adjustment adjustment) {
    const MGlobal::ListAdjustment listAdjustment =
        adjustment == picker_list_adjustment::replace ? MGlobal::kReplaceList : MGlobal::kAddToList;
    return toHostStatus(MGlobal::selectByName(MQtUtil::toMString(name), listAdjustment));
}

host_status picker_maya_host::clearSelectionList() {
    return toHostStatus(MGlobal::clearSelectionList());
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
