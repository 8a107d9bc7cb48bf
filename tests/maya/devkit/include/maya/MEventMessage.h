#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MMessage.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MTypes.h>

#include <cstddef>

OPENMAYA_MAJOR_NAMESPACE_OPEN

class MEventMessage : public MMessage {
public:
    static MCallbackId addEventCallback(const MString& event, MMessage::MBasicFunction func,
                                        void* clientData = NULL, MStatus* ReturnStatus = NULL);
};

OPENMAYA_MAJOR_NAMESPACE_CLOSE
