#pragma once

#include "picker_host.h"

#include <maya/MApiNamespace.h>
#include <maya/MObject.h>

#include <memory>

// The picker's host bridge on OpenMaya and OpenMayaUI.
class picker_maya_host : public picker_host {
public:
    explicit picker_maya_host(const MObject& plugin);
    ~picker_maya_host() override;

    // Maya hands the plug-in's object to each entry point; unloading must use its own.
    void setPluginObject(const MObject& plugin);

    host_status openPlugin(const QString& vendor, const QString& version,
                           const QString& requiredApiVersion) override;
    host_status registerCommand(const QString& name, picker_command_fn command) override;
    host_status deregisterCommand(const QString& name) override;
    QString loadPath() const override;

    picker_callback_id addEventCallback(const QString& event, picker_event_fn function,
                                        void* clientData, host_status* status) override;
    host_status removeCallback(picker_callback_id id) override;

    host_status executeCommandOnIdle(const QString& mel, bool displayEnabled = false) override;
    host_status executePythonCommandOnIdle(const QString& python,
                                           bool displayEnabled = false) override;

    host_status activeSelection(QStringList& names) override;
    host_status selectByName(const QString& name, picker_list_adjustment adjustment) override;
    host_status clearSelectionList() override;

    void displayError(const QString& text) override;
    bool hasInterface() const override;
    QWidget* mainWindow() override;

private:
    MObject plugin_;
    std::unique_ptr<MFnPlugin> functionSet_;
};
