#pragma once

#include <maya/MApiNamespace.h>

#include <cstdint>

// Not Maya's: marks the stand-in, which the build does not hold to a real Maya's runtime floor.
#define PICKER_STAND_IN_DEVKIT 1

#define MAYA_API_VERSION 20250000
#define MAYA_APP_VERSION 2025

#define PLUGIN_EXPORT __attribute__((visibility("default")))

typedef uintptr_t MCallbackId;
typedef void* (*MCreatorFunction)();
typedef MSyntax (*MCreateSyntaxFunction)();
