#include "sections/device/ui/DeviceEditorUi.h"

#include "sections/rtdb/ui/RtdbBrowseDialog.h"

namespace rqshell {

DeviceQtEditor::DeviceQtEditor(const EditorEnv& env)
    : detail::DeviceQtDialogs{DeviceQtDialogHost(
          env.dialogParent, env.sink, env.catalogs.io,
          RealtimeSource{env.project.rtdb, systemDatabase(env.programDir)})},
      rq::DeviceSectionEditor(env.project.device, env.catalogs.io, qtDialogs, env.sink,
                              env.project.doc.history()) {}

std::unique_ptr<rq::SectionEditor> makeDeviceEditor(const EditorEnv& env) {
    return std::make_unique<DeviceQtEditor>(env);
}

} // namespace rqshell
