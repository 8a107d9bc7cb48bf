#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MStatus.h>
#include <maya/MStringArray.h>

#include <cstddef>
#include <vector>

OPENMAYA_MAJOR_NAMESPACE_OPEN

class MSelectionList {
public:
    MSelectionList();
    MSelectionList(const MSelectionList& other);
    virtual ~MSelectionList();

    bool isEmpty(MStatus* ReturnStatus = NULL) const;
    unsigned int length(MStatus* ReturnStatus = NULL) const;
    MStatus getSelectionStrings(MStringArray& array) const;

private:
    friend class MGlobal;
    friend class MItSelectionList;
    // One entry per selected item: a node, or a node's components written as several names.
    std::vector<MStringArray> items_;
};

OPENMAYA_MAJOR_NAMESPACE_CLOSE
