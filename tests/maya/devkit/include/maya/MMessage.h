#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MStatus.h>
#include <maya/MTypes.h>

OPENMAYA_MAJOR_NAMESPACE_OPEN

class MMessage {
public:
    typedef void (*MBasicFunction)(void* clientData);

    static MStatus removeCallback(MCallbackId id);
};

OPENMAYA_MAJOR_NAMESPACE_CLOSE
