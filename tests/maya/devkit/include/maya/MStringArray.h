#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include <vector>

OPENMAYA_MAJOR_NAMESPACE_OPEN

class MStringArray {
public:
    MStringArray();
    MStringArray(const MStringArray& other);
    MStringArray(unsigned int initialSize, const MString& initialValue);
    ~MStringArray();

    MString operator[](unsigned int index) const;
    MString& operator[](unsigned int index);
    unsigned int length() const;
    MStatus append(const MString& element);
    MStatus setLength(unsigned int length);
    MStatus clear();
    int indexOf(const MString& element) const;

private:
    std::vector<MString> items_;
};

OPENMAYA_MAJOR_NAMESPACE_CLOSE
