#include "picker_maya_command.h"
#include "picker_maya_host.h"

#include "picker_main.h"
#include "picker_window.h"

#include <maya/MObject.h>
#include <maya/MStatus.h>
#include <maya/MTypes.h>

#include <memory>

namespace {
// picker_main keeps a pointer to the bridge from load to unload.
std::unique_ptr<picker_maya_host>& mayaHost() {
    static std::unique_ptr<picker_maya_host> host;
    return host;
}
} // namespace

PLUGIN_EXPORT MStatus initializePlugin(MObject obj) {
    mayaHost() = std::make_unique<picker_maya_host>(obj);
    return toMStatus(picker_main::initialize(*mayaHost(), &picker_window::create));
}

PLUGIN_EXPORT MStatus uninitializePlugin(MObject obj) {
    if (!mayaHost())
        return MS::kFailure;
    mayaHost()->setPluginObject(obj);
    const MStatus status = toMStatus(picker_main::uninitialize());
    // A refused unload leaves the plug-in loaded and picker_main still on this bridge.
    if (!picker_main::host())
        mayaHost().reset();
    return status;
}
