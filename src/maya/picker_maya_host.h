#pragma once

#include "picker_host.h"

#include <maya/MApiNamespace.h>

#include <memory>

// The picker's host bridge on OpenMaya and OpenMayaUI. It keeps no Maya object past the entry
// point that made it, so nothing of Maya's is left for process exit, which comes after Maya's
// own teardown.
class picker_maya_host : public picker_host {
public:
    // The plug-in object Maya hands an entry point is good only while that entry point runs, as
    // is the function set openPlugin makes from it: both go when this scope ends.
    class entry_point {
    public:
        entry_point(picker_maya_host& host, MObject& plugin);
        ~entry_point();
        entry_point(const entry_point&) = delete;
        entry_point& operator=(const entry_point&) = delete;

    private:
        picker_maya_host& host_;
    };

    picker_maya_host();
    ~picker_maya_host() override;

    host_status openPlugin(const QString& vendor, const QString& version,
                           const QString& requiredApiVersion) override;
    host_status registerCommand(const QString& name, picker_command_fn command) override;
    host_status deregisterCommand(const QString& name) override;
    // The path read when the plug-in loaded.
    QString loadPath() const override;

    picker_callback_id addEventCallback(const QString& event, picker_event_fn function,
                                        void* clientData, host_status* status) override;
    picker_callback_id addNodesChangedCallback(picker_event_fn function, void* clientData,
                                               host_status* status) override;
    host_status removeCallback(picker_callback_id id) override;

    host_status executeCommandOnIdle(const QString& mel, bool displayEnabled = false) override;
    host_status executePythonCommandOnIdle(const QString& python,
                                           bool displayEnabled = false) override;

    host_status activeSelection(QStringList& names) override;
    std::unique_ptr<picker_selection_snapshot> saveSelection(host_status* status) override;
    host_status selectByName(const QString& name, picker_list_adjustment adjustment) override;
    host_status clearSelectionList() override;
    host_status nodesExist(const QStringList& names, QVector<bool>& exist) override;

    void displayError(const QString& text) override;
    bool hasInterface() const override;
    QWidget* mainWindow() override;

private:
    MObject* plugin_ = nullptr;
    std::unique_ptr<MFnPlugin> functionSet_;
    QString loadPath_;
};
