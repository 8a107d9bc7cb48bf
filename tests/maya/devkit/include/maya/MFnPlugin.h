#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MTypes.h>

#ifndef MNoVersionString
#include <maya/MApiVersion.h>
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
    // As in Maya: a function set is made from the object an entry point was handed, never from a
    // const one, and its address is not taken.
    MFnPlugin(const MObject& object);
    MFnPlugin* operator&() const;

    MObject object_;
};

OPENMAYA_MAJOR_NAMESPACE_CLOSE
