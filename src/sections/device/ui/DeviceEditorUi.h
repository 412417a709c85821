#pragma once
// The device configuration editor with its Qt dialogs, as the main window
// registers it.

#include "sections/device/DeviceSectionEditor.h"
#include "sections/device/ui/DeviceDialogs.h"
#include "shell/EditorEnv.h"

#include <memory>

namespace rqshell {

namespace detail {
struct DeviceQtDialogs {
    DeviceQtDialogHost qtDialogs;
};
} // namespace detail

class DeviceQtEditor : private detail::DeviceQtDialogs, public rq::DeviceSectionEditor {
public:
    explicit DeviceQtEditor(const EditorEnv& env);
};

std::unique_ptr<rq::SectionEditor> makeDeviceEditor(const EditorEnv& env);

} // namespace rqshell
