#pragma once

// Every API class lives in a namespace named after the API version and is pulled into the global
// one here, so a plug-in built against one version cannot bind to another's classes.
#define OPENMAYA_MAJOR_NAMESPACE_OPEN                                                              \
    namespace Autodesk {                                                                           \
    namespace Maya {                                                                               \
    namespace OpenMaya20250000 {
#define OPENMAYA_MAJOR_NAMESPACE_CLOSE                                                             \
    }                                                                                              \
    }                                                                                              \
    }

OPENMAYA_MAJOR_NAMESPACE_OPEN
class MArgList;
class MEventMessage;
class MFn;
class MFnPlugin;
class MGlobal;
class MItSelectionList;
class MMessage;
class MObject;
class MPxCommand;
class MQtUtil;
class MSelectionList;
class MStatus;
class MString;
class MStringArray;
class MSyntax;
OPENMAYA_MAJOR_NAMESPACE_CLOSE

using Autodesk::Maya::OpenMaya20250000::MArgList;
using Autodesk::Maya::OpenMaya20250000::MEventMessage;
using Autodesk::Maya::OpenMaya20250000::MFn;
using Autodesk::Maya::OpenMaya20250000::MFnPlugin;
using Autodesk::Maya::OpenMaya20250000::MGlobal;
using Autodesk::Maya::OpenMaya20250000::MItSelectionList;
using Autodesk::Maya::OpenMaya20250000::MMessage;
using Autodesk::Maya::OpenMaya20250000::MObject;
using Autodesk::Maya::OpenMaya20250000::MPxCommand;
using Autodesk::Maya::OpenMaya20250000::MQtUtil;
using Autodesk::Maya::OpenMaya20250000::MSelectionList;
using Autodesk::Maya::OpenMaya20250000::MStatus;
using Autodesk::Maya::OpenMaya20250000::MString;
using Autodesk::Maya::OpenMaya20250000::MStringArray;
using Autodesk::Maya::OpenMaya20250000::MSyntax;
