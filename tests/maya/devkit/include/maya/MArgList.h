#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MStringArray.h>

#include <cstddef>
#include <vector>

// The test hooks lay out argument slots that MEL would produce; see fake/maya_fake.h.
class maya_fake_arg_access;

OPENMAYA_MAJOR_NAMESPACE_OPEN

class MArgList {
public:
    MArgList();
    MArgList(const MArgList& other);
    ~MArgList();

    unsigned int length(MStatus* ReturnStatus = NULL) const;
    MString asString(unsigned int index, MStatus* ret = NULL) const;
    const MStringArray asStringArray(unsigned int& index, MStatus* ReturnStatus = NULL) const;
    MStatus get(unsigned int index, MString& ret) const;
    MStatus get(unsigned int& index, MStringArray& ret) const;
    MStatus addArg(const MString& arg);

private:
    friend class ::maya_fake_arg_access;
    enum SlotKind { kStringSlot, kArraySlot, kUnreadableSlot };
    struct Slot {
        SlotKind kind;
        MStringArray values;
    };
    std::vector<Slot> slots_;
};

OPENMAYA_MAJOR_NAMESPACE_CLOSE
