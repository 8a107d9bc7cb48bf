#include "picker_maya_command.h"
#include "picker_maya_host.h"

#include "picker_main.h"
#include "picker_window.h"

#include <maya/MObject.h>
#include <maya/MStatus.h>
#include <maya/MTypes.h>

#include <memory>

namespace {
// picker_main keeps a pointer to the bridge from load until unload, or until Maya quits, which
// unloads nothing.
std::unique_ptr<picker_maya_host>& mayaHost() {
    static std::unique_ptr<picker_maya_host> host;
    return host;
}

void releaseMayaHost() {
    mayaHost().reset();
}
} // namespace

PLUGIN_EXPORT MStatus initializePlugin(MObject obj) {
    auto host = std::make_unique<picker_maya_host>();
    host_status status;
    {
        const picker_maya_host::entry_point entry(*host, obj);
        status = picker_main::initialize(*host, &picker_window::create, &releaseMayaHost);
    }
    if (status)
        mayaHost() = std::move(host);
    return toMStatus(status);
}

PLUGIN_EXPORT MStatus uninitializePlugin(MObject obj) {
    if (!mayaHost())
        return MS::kFailure;
    host_status status;
    {
        const picker_maya_host::entry_point entry(*mayaHost(), obj);
        status = picker_main::uninitialize();
    }
    // A refused unload leaves the plug-in loaded and picker_main still on this bridge.
    if (!picker_main::host())
        mayaHost().reset();
    return toMStatus(status);
}
