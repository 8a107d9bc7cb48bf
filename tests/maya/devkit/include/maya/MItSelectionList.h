#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MFn.h>
#include <maya/MSelectionList.h>
#include <maya/MStatus.h>
#include <maya/MStringArray.h>

#include <cstddef>

OPENMAYA_MAJOR_NAMESPACE_OPEN

class MItSelectionList {
public:
    MItSelectionList(const MSelectionList& list, MFn::Type filter = MFn::kInvalid,
                     MStatus* ReturnStatus = NULL);
    virtual ~MItSelectionList();

    bool isDone(MStatus* ReturnStatus = NULL);
    MStatus next();
    MStatus reset();
    MStatus getStrings(MStringArray& array);

private:
    MSelectionList list_;
    unsigned int position_;
};

OPENMAYA_MAJOR_NAMESPACE_CLOSE
