#pragma once

#include <maya/MApiNamespace.h>

OPENMAYA_MAJOR_NAMESPACE_OPEN

class MStatus {
public:
    enum MStatusCode {
        kSuccess = 0,
        kFailure,
        kInsufficientMemory,
        kInvalidParameter,
        kLicenseFailure,
        kUnknownParameter,
        kNotImplemented,
        kNotFound,
        kEndOfFile
    };

    MStatus();
    MStatus(MStatusCode code);
    MStatus(const MStatus& other);
    MStatus& operator=(const MStatus& other);

    bool operator==(const MStatus& other) const;
    bool operator==(MStatusCode code) const;
    bool operator!=(const MStatus& other) const;
    bool operator!=(MStatusCode code) const;
    operator bool() const;

    bool error() const;
    void clear();
    MStatusCode statusCode() const;
    MString errorString() const;
    void perror(const char* text) const;
    void perror(const MString& text) const;

private:
    MStatusCode code_;
};

typedef MStatus MS;

OPENMAYA_MAJOR_NAMESPACE_CLOSE

using Autodesk::Maya::OpenMaya20250000::MS;
