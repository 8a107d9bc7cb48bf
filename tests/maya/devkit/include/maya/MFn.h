#pragma once

#include <maya/MApiNamespace.h>

OPENMAYA_MAJOR_NAMESPACE_OPEN

class MFn {
public:
    enum Type { kInvalid = 0, kBase, kNamedObject, kDependencyNode, kDagNode, kTransform };
};

OPENMAYA_MAJOR_NAMESPACE_CLOSE
