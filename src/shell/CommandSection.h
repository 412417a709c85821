#pragma once
// A section object without a node of its own in the project tree: its editor's
// commands come from the main menu only (the print configuration). A change marks
// the project modified; Undo and Redo need nothing shown again.

#include "core/SectionEditor.h"
#include "shell/ShellSection.h"

#include <memory>

namespace rqshell {

class CommandSection : public ShellSection {
public:
    CommandSection(rq::SectionObject object, std::unique_ptr<rq::SectionEditor> editor,
                   ShellContext ctx)
        : object_(object), editor_(std::move(editor)), ctx_(std::move(ctx)) {}

    rq::SectionObject object() const override { return object_; }
    void clearNodes() override {}
    void rebuildNodes() override {}
    bool handles(int command) const override { return editor_->handles(command); }
    void runCommand(int command) override {
        if (editor_->run(command, rq::EditorSelection{}).changed)
            ctx_.markModified();
    }

private:
    rq::SectionObject object_;
    std::unique_ptr<rq::SectionEditor> editor_;
    ShellContext ctx_;
};

} // namespace rqshell
