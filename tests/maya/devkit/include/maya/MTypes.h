#pragma once

#include <maya/MApiNamespace.h>

#include <cstdint>

#define MAYA_API_VERSION 20250000
#define MAYA_APP_VERSION 2025

#define PLUGIN_EXPORT __attribute__((visibility("default")))

typedef uintptr_t MCallbackId;
typedef void* (*MCreatorFunction)();
typedef MSyntax (*MCreateSyntaxFunction)();
