#pragma once

#include <maya/MTypes.h>

// The host reads the API version a plug-in was built against from this symbol; a second
// definition means the header went into more than one translation unit.
extern "C" {
PLUGIN_EXPORT char MApiVersion[] = "20250000";
}
