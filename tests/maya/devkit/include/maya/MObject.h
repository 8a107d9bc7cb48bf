#pragma once

#include <maya/MApiNamespace.h>

OPENMAYA_MAJOR_NAMESPACE_OPEN

class MObject {
public:
    MObject();
    MObject(const MObject& other);
    ~MObject();
    bool isNull() const;

private:
    bool null_;
};

OPENMAYA_MAJOR_NAMESPACE_CLOSE
