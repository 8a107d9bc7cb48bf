#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MArgList.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MTypes.h>

OPENMAYA_MAJOR_NAMESPACE_OPEN

class MPxCommand {
public:
    MPxCommand();
    virtual ~MPxCommand();

    virtual MStatus doIt(const MArgList& args);
    virtual MStatus undoIt();
    virtual MStatus redoIt();
    virtual bool isUndoable() const;

    static void setResult(const MString& result);
    static void displayError(const MString& text);
};

OPENMAYA_MAJOR_NAMESPACE_CLOSE
