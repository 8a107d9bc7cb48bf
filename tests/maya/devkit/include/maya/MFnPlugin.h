#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MTypes.h>

// The host reads the API version a plug-in was built against from this symbol; a second
// definition means the header went into more than one translation unit.
#ifndef MNoVersionString
extern "C" {
PLUGIN_EXPORT char MApiVersion[] = "20250000";
}
#endif

OPENMAYA_MAJOR_NAMESPACE_OPEN

class MFnPlugin {
public:
    MFnPlugin(MObject& object, const char* vendor = "Unknown", const char* version = "Unknown",
              const char* requiredApiVersion = "Any", MStatus* ReturnStatus = 0L);
    virtual ~MFnPlugin();

    MStatus registerCommand(const MString& commandName, MCreatorFunction creatorFunction,
                            MCreateSyntaxFunction createSyntaxFunction = nullptr);
    MStatus deregisterCommand(const MString& commandName);
    MString loadPath(MStatus* ReturnStatus = nullptr) const;

private:
    MObject object_;
};

OPENMAYA_MAJOR_NAMESPACE_CLOSE
