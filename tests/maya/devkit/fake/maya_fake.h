#pragma once

// Test hooks into the stand-in OpenMaya and OpenMayaUI libraries: a scene of node names, the
// active selection, the idle queue, registered callbacks and commands, and failures on request.

#include <maya/MArgList.h>
#include <maya/MGlobal.h>
#include <maya/MStatus.h>

#include <string>
#include <vector>

class QWidget;

namespace maya_fake {

struct idle_command {
    bool python;
    std::string text;
};

struct plugin_open {
    std::string vendor;
    std::string version;
    std::string requiredApiVersion;
};

// Operation keys for failOperation: "MFnPlugin", "registerCommand", "deregisterCommand",
// "getActiveSelectionList", "addEventCallback:<event>", "removeCallback:<event>".
void failOperation(const std::string& key);
// Empties the scene, selection, queues, registries, records and failures.
void reset();

void addNode(const std::string& name);
// Each entry is one selected item with the strings MItSelectionList::getStrings gives for it.
void setSelection(const std::vector<std::vector<std::string>>& items);
std::vector<std::string> selectedNames();

std::vector<std::string> registeredEvents();
std::vector<std::string> registeredCommands();
std::vector<plugin_open> pluginOpens();
std::vector<idle_command> takeIdleQueue();
std::vector<std::string> takeErrors();
void setLoadPath(const std::string& path);

// Raises a host event; counts every SelectionChanged raised, including those the selection
// changes of MGlobal raise by themselves.
void fireEvent(const std::string& event);
int selectionChangedRaised();
int activeSelectionReads();
int itemStringReads();

// One argument slot of a command call. Maya hands a MEL array over whole in one slot; several
// strings each take their own, and reading them as an array consumes them all.
struct arg {
    enum kind { string, string_array, unreadable };
    kind slotKind;
    std::vector<std::string> values;
};
arg str(const std::string& value);
arg array(const std::vector<std::string>& values);
arg unreadable();

// Creates the registered command through its creator and runs doIt. As Maya does, a call that
// succeeded and is undoable then goes on the undo queue, dropping what was undone; any other is
// deleted.
MStatus runCommand(const std::string& name, const std::vector<arg>& args);
// Walk the undo queue with undoIt and redoIt; kFailure when there is nothing to walk.
MStatus undo();
MStatus redo();

// Plug-in objects and plug-in function sets alive right now.
int liveObjects();
int liveFunctionSets();

// The error text MStatus::errorString gives for a failed operation.
std::string failureText();

void setMainWindow(QWidget* window);
// What MGlobal::mayaState answers; reset() makes it interactive.
void setMayaState(MGlobal::MMayaState state);

} // namespace maya_fake
