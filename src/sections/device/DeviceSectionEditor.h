#pragma once
// The device configuration as a section editor of the shared base: links below
// "device configuration", devices below their link, in file order; the data points
// of the selected device as the list's rows.

#include "core/SectionEditor.h"
#include "sections/device/DeviceCommands.h"

namespace rq {

class DeviceSectionEditor : public SectionEditor {
public:
    DeviceSectionEditor(DeviceSection& device, const IoDriverCatalog& catalog,
                        DeviceDialogHost& dialogs, MessageSink& sink, UndoHistory& history)
        : device_(device), catalog_(catalog), dialogs_(&dialogs), sink_(sink), history_(history) {}

    void setDialogHost(DeviceDialogHost* dialogs) { dialogs_ = dialogs; }

    // Where the node of a key is (null: the section's node).
    DevicePlace place(const void* key) const;
    // The key of a place (null for the section's node).
    void* key(DevicePlace at) const;

    std::vector<EditorNode> nodes() const override;
    int treeMenu(const void* node) const override;
    int listMenu(const void* node) const override;
    EditorList list(const void* node) const override;
    EditorKeys keys(const void* node) const override;
    EditorResult run(int command, const EditorSelection& selection) override;

private:
    DeviceEditor editor() const {
        return DeviceEditor{device_, catalog_, *dialogs_, sink_, history_};
    }
    // Devices of a ferolt link use the second data menu.
    bool secondKind(DevicePlace at) const;

    DeviceSection& device_;
    const IoDriverCatalog& catalog_;
    DeviceDialogHost* dialogs_;
    MessageSink& sink_;
    UndoHistory& history_;
};

} // namespace rq
