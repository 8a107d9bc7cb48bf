// Stand-in OpenMaya: a scene of node names with an active selection, an idle queue, event
// callbacks and command registration, all observable and breakable through maya_fake.h.
// The plug-in under test defines MApiVersion; the library it loads into must not.
#define MNoVersionString
#include "maya_fake.h"

#include <maya/MArgList.h>
#include <maya/MEventMessage.h>
#include <maya/MFnPlugin.h>
#include <maya/MGlobal.h>
#include <maya/MItSelectionList.h>
#include <maya/MMessage.h>
#include <maya/MObject.h>
#include <maya/MPxCommand.h>
#include <maya/MSelectionList.h>

#include <fnmatch.h>

#include <algorithm>
#include <map>
#include <memory>
#include <set>

namespace {

struct registered_callback {
    MCallbackId id;
    std::string event;
    MMessage::MBasicFunction function;
    void* clientData;
};

struct fake_state {
    std::vector<std::string> nodes;
    std::vector<MStringArray> selection;
    std::vector<maya_fake::idle_command> idleQueue;
    std::vector<registered_callback> callbacks;
    MCallbackId nextCallbackId = 1;
    std::map<std::string, MCreatorFunction> commands;
    std::vector<std::string> commandOrder;
    std::vector<maya_fake::plugin_open> pluginOpens;
    std::vector<std::string> errors;
    std::set<std::string> failures;
    std::string loadPath;
    int selectionChangedRaised = 0;
    int activeSelectionReads = 0;
    int itemStringReads = 0;
    MGlobal::MMayaState mayaState = MGlobal::kInteractive;
    std::vector<std::unique_ptr<MPxCommand>> undoQueue;
    // Calls before this index are done; from it on they wait for redo.
    std::size_t undoDone = 0;
};

// Not part of the resettable state: objects outlive a reset.
int liveObjectCount = 0;
int liveFunctionSetCount = 0;

fake_state& state() {
    static fake_state instance;
    return instance;
}

// Hook and test texts are UTF-8; MString's char constructors would read them as Latin-1.
MString utf8(const std::string& text) {
    MString string;
    string.setUTF8(text.c_str());
    return string;
}

bool failing(const std::string& key) {
    return state().failures.count(key) != 0;
}

void setStatus(MStatus* target, MStatus::MStatusCode code) {
    if (target)
        *target = code;
}

MStringArray single(const std::string& name) {
    MStringArray array;
    array.append(utf8(name));
    return array;
}

bool sameItem(const MStringArray& left, const MStringArray& right) {
    if (left.length() != right.length())
        return false;
    for (unsigned i = 0; i < left.length(); ++i) {
        if (left[i] != right[i])
            return false;
    }
    return true;
}

void selectionChanged() {
    maya_fake::fireEvent("SelectionChanged");
}

} // namespace

class maya_fake_arg_access {
public:
    static MArgList build(const std::vector<maya_fake::arg>& args) {
        MArgList list;
        for (const maya_fake::arg& argument : args) {
            MArgList::Slot slot{MArgList::kStringSlot, MStringArray()};
            if (argument.slotKind == maya_fake::arg::string_array)
                slot.kind = MArgList::kArraySlot;
            else if (argument.slotKind == maya_fake::arg::unreadable)
                slot.kind = MArgList::kUnreadableSlot;
            for (const std::string& value : argument.values)
                slot.values.append(utf8(value));
            list.slots_.push_back(slot);
        }
        return list;
    }
};

namespace maya_fake {

void failOperation(const std::string& key) {
    state().failures.insert(key);
}

void reset() {
    state() = fake_state();
}

void addNode(const std::string& name) {
    state().nodes.push_back(name);
}

void setSelection(const std::vector<std::vector<std::string>>& items) {
    state().selection.clear();
    for (const std::vector<std::string>& item : items) {
        MStringArray strings;
        for (const std::string& name : item)
            strings.append(utf8(name));
        state().selection.push_back(strings);
    }
}

std::vector<std::string> selectedNames() {
    std::vector<std::string> names;
    for (const MStringArray& item : state().selection) {
        for (unsigned i = 0; i < item.length(); ++i)
            names.push_back(item[i].asUTF8());
    }
    return names;
}

std::vector<std::string> registeredEvents() {
    std::vector<std::string> events;
    for (const registered_callback& callback : state().callbacks)
        events.push_back(callback.event);
    return events;
}

std::vector<std::string> registeredCommands() {
    return state().commandOrder;
}

std::vector<plugin_open> pluginOpens() {
    return state().pluginOpens;
}

std::vector<idle_command> takeIdleQueue() {
    std::vector<idle_command> queue;
    queue.swap(state().idleQueue);
    return queue;
}

std::vector<std::string> takeErrors() {
    std::vector<std::string> errors;
    errors.swap(state().errors);
    return errors;
}

void setLoadPath(const std::string& path) {
    state().loadPath = path;
}

void fireEvent(const std::string& event) {
    if (event == "SelectionChanged")
        ++state().selectionChangedRaised;
    const std::vector<registered_callback> callbacks = state().callbacks;
    for (const registered_callback& callback : callbacks) {
        if (callback.event == event)
            callback.function(callback.clientData);
    }
}

int selectionChangedRaised() {
    return state().selectionChangedRaised;
}
int activeSelectionReads() {
    return state().activeSelectionReads;
}
int itemStringReads() {
    return state().itemStringReads;
}

arg str(const std::string& value) {
    return {arg::string, {value}};
}
arg array(const std::vector<std::string>& values) {
    return {arg::string_array, values};
}
arg unreadable() {
    return {arg::unreadable, {}};
}

MStatus runCommand(const std::string& name, const std::vector<arg>& args) {
    const auto found = state().commands.find(name);
    if (found == state().commands.end())
        return MS::kNotFound;
    std::unique_ptr<MPxCommand> command(static_cast<MPxCommand*>(found->second()));
    const MStatus status = command->doIt(maya_fake_arg_access::build(args));
    if (status && command->isUndoable()) {
        fake_state& s = state();
        s.undoQueue.resize(s.undoDone);
        s.undoQueue.push_back(std::move(command));
        s.undoDone = s.undoQueue.size();
    }
    return status;
}

MStatus undo() {
    fake_state& s = state();
    if (s.undoDone == 0)
        return MS::kFailure;
    return s.undoQueue[--s.undoDone]->undoIt();
}

MStatus redo() {
    fake_state& s = state();
    if (s.undoDone == s.undoQueue.size())
        return MS::kFailure;
    return s.undoQueue[s.undoDone++]->redoIt();
}

int liveObjects() {
    return liveObjectCount;
}

int liveFunctionSets() {
    return liveFunctionSetCount;
}

void setMayaState(MGlobal::MMayaState mayaState) {
    state().mayaState = mayaState;
}

std::string failureText() {
    return MStatus(MS::kFailure).errorString().asUTF8();
}

} // namespace maya_fake

OPENMAYA_MAJOR_NAMESPACE_OPEN

MObject::MObject() : null_(true) {
    ++liveObjectCount;
}
MObject::MObject(const MObject& other) : null_(other.null_) {
    ++liveObjectCount;
}
MObject::~MObject() {
    --liveObjectCount;
}
bool MObject::isNull() const {
    return null_;
}

MArgList::MArgList() = default;
MArgList::MArgList(const MArgList& other) = default;
MArgList::~MArgList() = default;

unsigned int MArgList::length(MStatus* ReturnStatus) const {
    setStatus(ReturnStatus, MS::kSuccess);
    return static_cast<unsigned int>(slots_.size());
}

MString MArgList::asString(unsigned int index, MStatus* ret) const {
    MString value;
    const MStatus status = get(index, value);
    if (ret)
        *ret = status;
    return value;
}

const MStringArray MArgList::asStringArray(unsigned int& index, MStatus* ReturnStatus) const {
    MStringArray values;
    const MStatus status = get(index, values);
    if (ReturnStatus)
        *ReturnStatus = status;
    return values;
}

MStatus MArgList::get(unsigned int index, MString& ret) const {
    if (index >= slots_.size() || slots_[index].kind != kStringSlot)
        return MS::kInvalidParameter;
    ret = slots_[index].values[0];
    return MS::kSuccess;
}

MStatus MArgList::get(unsigned int& index, MStringArray& ret) const {
    if (index >= slots_.size() || slots_[index].kind == kUnreadableSlot)
        return MS::kInvalidParameter;
    if (slots_[index].kind == kArraySlot) {
        ret = slots_[index].values;
        return MS::kSuccess;
    }
    // Plain strings: the array is every string from here on, and index moves to the last one.
    MStringArray values;
    unsigned int last = index;
    for (; last < slots_.size() && slots_[last].kind == kStringSlot; ++last)
        values.append(slots_[last].values[0]);
    ret = values;
    index = last - 1;
    return MS::kSuccess;
}

MStatus MArgList::addArg(const MString& arg) {
    Slot slot{kStringSlot, MStringArray()};
    slot.values.append(arg);
    slots_.push_back(slot);
    return MS::kSuccess;
}

MPxCommand::MPxCommand() = default;
MPxCommand::~MPxCommand() = default;
MStatus MPxCommand::doIt(const MArgList&) {
    return MS::kNotImplemented;
}
MStatus MPxCommand::undoIt() {
    return MS::kNotImplemented;
}
MStatus MPxCommand::redoIt() {
    return MS::kNotImplemented;
}
bool MPxCommand::isUndoable() const {
    return false;
}

MFnPlugin::MFnPlugin(MObject& object, const char* vendor, const char* version,
                     const char* requiredApiVersion, MStatus* ReturnStatus)
    : object_(object) {
    ++liveFunctionSetCount;
    state().pluginOpens.push_back({vendor, version, requiredApiVersion});
    setStatus(ReturnStatus, failing("MFnPlugin") ? MS::kFailure : MS::kSuccess);
}

MFnPlugin::~MFnPlugin() {
    --liveFunctionSetCount;
}

MStatus MFnPlugin::registerCommand(const MString& commandName, MCreatorFunction creatorFunction,
                                   MCreateSyntaxFunction) {
    const std::string name = commandName.asUTF8();
    if (failing("registerCommand") || state().commands.count(name) != 0)
        return MS::kFailure;
    state().commands[name] = creatorFunction;
    state().commandOrder.push_back(name);
    return MS::kSuccess;
}

MStatus MFnPlugin::deregisterCommand(const MString& commandName) {
    const std::string name = commandName.asUTF8();
    if (failing("deregisterCommand") || state().commands.erase(name) == 0)
        return MS::kFailure;
    std::vector<std::string>& order = state().commandOrder;
    order.erase(std::remove(order.begin(), order.end(), name), order.end());
    return MS::kSuccess;
}

MString MFnPlugin::loadPath(MStatus* ReturnStatus) const {
    setStatus(ReturnStatus, MS::kSuccess);
    return utf8(state().loadPath);
}

MGlobal::MMayaState MGlobal::mayaState(MStatus* ReturnStatus) {
    setStatus(ReturnStatus, MS::kSuccess);
    return state().mayaState;
}

MStatus MGlobal::executeCommandOnIdle(const MString& command, bool) {
    state().idleQueue.push_back({false, command.asUTF8()});
    return MS::kSuccess;
}

MStatus MGlobal::executePythonCommandOnIdle(const MString& command, bool) {
    state().idleQueue.push_back({true, command.asUTF8()});
    return MS::kSuccess;
}

MStatus MGlobal::getActiveSelectionList(MSelectionList& dest, bool) {
    ++state().activeSelectionReads;
    if (failing("getActiveSelectionList"))
        return MS::kFailure;
    dest.items_ = state().selection;
    return MS::kSuccess;
}

MStatus MGlobal::setActiveSelectionList(const MSelectionList& list, ListAdjustment adjustment) {
    // The adapter only ever replaces the list.
    if (adjustment != kReplaceList)
        return MS::kNotImplemented;
    state().selection = list.items_;
    selectionChanged();
    return MS::kSuccess;
}

MStatus MGlobal::selectByName(const MString& name, ListAdjustment adjustment) {
    std::vector<MStringArray> matches;
    for (const std::string& node : state().nodes) {
        if (fnmatch(name.asUTF8(), node.c_str(), 0) == 0)
            matches.push_back(single(node));
    }
    if (matches.empty())
        return MS::kInvalidParameter;
    std::vector<MStringArray>& selection = state().selection;
    const auto selected = [&selection](const MStringArray& item) {
        return std::any_of(selection.begin(), selection.end(),
                           [&item](const MStringArray& other) { return sameItem(item, other); });
    };
    const auto remove = [&selection](const MStringArray& item) {
        selection.erase(
            std::remove_if(selection.begin(), selection.end(),
                           [&item](const MStringArray& other) { return sameItem(item, other); }),
            selection.end());
    };
    switch (adjustment) {
    case kReplaceList:
        selection = matches;
        break;
    case kAddToList:
        for (const MStringArray& item : matches) {
            if (!selected(item))
                selection.push_back(item);
        }
        break;
    case kAddToHeadOfList:
        for (auto item = matches.rbegin(); item != matches.rend(); ++item) {
            remove(*item);
            selection.insert(selection.begin(), *item);
        }
        break;
    case kRemoveFromList:
        for (const MStringArray& item : matches)
            remove(item);
        break;
    case kXORWithList:
        for (const MStringArray& item : matches) {
            if (selected(item))
                remove(item);
            else
                selection.push_back(item);
        }
        break;
    }
    selectionChanged();
    return MS::kSuccess;
}

MStatus MGlobal::clearSelectionList() {
    state().selection.clear();
    selectionChanged();
    return MS::kSuccess;
}

void MGlobal::displayError(const MString& text) {
    state().errors.push_back(text.asUTF8());
}

MSelectionList::MSelectionList() = default;
MSelectionList::MSelectionList(const MSelectionList& other) = default;
MSelectionList::~MSelectionList() = default;

bool MSelectionList::isEmpty(MStatus* ReturnStatus) const {
    setStatus(ReturnStatus, MS::kSuccess);
    return items_.empty();
}

unsigned int MSelectionList::length(MStatus* ReturnStatus) const {
    setStatus(ReturnStatus, MS::kSuccess);
    return static_cast<unsigned int>(items_.size());
}

MStatus MSelectionList::getSelectionStrings(MStringArray& array) const {
    array.clear();
    for (const MStringArray& item : items_) {
        for (unsigned i = 0; i < item.length(); ++i)
            array.append(item[i]);
    }
    return MS::kSuccess;
}

MItSelectionList::MItSelectionList(const MSelectionList& list, MFn::Type, MStatus* ReturnStatus)
    : list_(list), position_(0) {
    setStatus(ReturnStatus, MS::kSuccess);
}

MItSelectionList::~MItSelectionList() = default;

bool MItSelectionList::isDone(MStatus* ReturnStatus) {
    setStatus(ReturnStatus, MS::kSuccess);
    return position_ >= list_.items_.size();
}

MStatus MItSelectionList::next() {
    ++position_;
    return MS::kSuccess;
}

MStatus MItSelectionList::reset() {
    position_ = 0;
    return MS::kSuccess;
}

MStatus MItSelectionList::getStrings(MStringArray& array) {
    ++state().itemStringReads;
    if (position_ >= list_.items_.size())
        return MS::kFailure;
    array = list_.items_[position_];
    return MS::kSuccess;
}

MCallbackId MEventMessage::addEventCallback(const MString& event, MMessage::MBasicFunction func,
                                            void* clientData, MStatus* ReturnStatus) {
    const std::string name = event.asUTF8();
    if (failing("addEventCallback:" + name)) {
        setStatus(ReturnStatus, MS::kFailure);
        return 0;
    }
    const MCallbackId id = state().nextCallbackId++;
    state().callbacks.push_back({id, name, func, clientData});
    setStatus(ReturnStatus, MS::kSuccess);
    return id;
}

MStatus MMessage::removeCallback(MCallbackId id) {
    std::vector<registered_callback>& callbacks = state().callbacks;
    const auto found = std::find_if(callbacks.begin(), callbacks.end(),
                                    [id](const registered_callback& c) { return c.id == id; });
    if (found == callbacks.end() || failing("removeCallback:" + found->event))
        return MS::kFailure;
    callbacks.erase(found);
    return MS::kSuccess;
}

OPENMAYA_MAJOR_NAMESPACE_CLOSE
