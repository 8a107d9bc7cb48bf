#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

OPENMAYA_MAJOR_NAMESPACE_OPEN

class MGlobal {
public:
    enum ListAdjustment {
        kReplaceList,
        kXORWithList,
        kAddToList,
        kRemoveFromList,
        kAddToHeadOfList
    };
    enum MMayaState { kInteractive, kBatch, kLibraryApp, kBaseUIMode };

    static MMayaState mayaState(MStatus* ReturnStatus = NULL);

    static MStatus executeCommandOnIdle(const MString& command, bool displayEnabled = false);
    static MStatus executePythonCommandOnIdle(const MString& command, bool displayEnabled = false);
    static MStatus executeCommand(const MString& command, bool displayEnabled = false,
                                  bool undoEnabled = false);
    static MStatus getActiveSelectionList(MSelectionList& dest,
                                          bool orderedSelectionIfAvailable = false);
    static MStatus setActiveSelectionList(const MSelectionList& list,
                                          ListAdjustment listAdjustment = kReplaceList);
    static MStatus selectByName(const MString& name, ListAdjustment adjustment = kAddToList);
    static MStatus clearSelectionList();
    static void displayInfo(const MString& text);
    static void displayWarning(const MString& text);
    static void displayError(const MString& text);
};

OPENMAYA_MAJOR_NAMESPACE_CLOSE
