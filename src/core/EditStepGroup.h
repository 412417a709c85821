#pragma once
// Several steps that the history keeps as one: Undo reverts them all (the last
// first), Redo makes them again in order. A rename that updates every reference to
// the renamed data is one such step over several section files.

#include "core/EditCommand.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace rq {

class EditStepGroup : public EditCommand {
public:
    // `steps` must not be empty; the group's section is the first step's.
    EditStepGroup(std::string name, std::vector<std::unique_ptr<EditCommand>> steps)
        : EditCommand(std::move(name), steps.front()->section()), steps_(std::move(steps)) {}

    void redo() override {
        for (auto& s : steps_)
            s->redo();
    }
    void undo() override {
        for (auto it = steps_.rbegin(); it != steps_.rend(); ++it)
            (*it)->undo();
    }
    std::vector<int> sections() const override {
        std::vector<int> out;
        for (const auto& s : steps_)
            for (int i : s->sections())
                if (std::find(out.begin(), out.end(), i) == out.end())
                    out.push_back(i);
        return out;
    }

private:
    std::vector<std::unique_ptr<EditCommand>> steps_;
};

} // namespace rq
