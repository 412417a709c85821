#pragma once
// Shared pieces of the section editors' tests without a display: a file of the
// example project, the node labels and list rows an editor shows, and the walk of
// a list of commands through undo and redo.

#include "core/SectionEditor.h"
#include "core/UndoHistory.h"
#include "support/ScriptedDialog.h"
#include "support/SectionTestKit.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

namespace rqtest {

// A file of the example project data/examples/demo.
inline std::string demoFile(const std::string& name) {
    const char* src = std::getenv("RQ_SOURCE_DIR");
    return std::string(src ? src : ".") + "/data/examples/demo/" + name;
}

// Each row of the list as its cells joined by '|'.
inline std::vector<std::string> listRows(const rq::EditorList& l) {
    std::vector<std::string> out;
    for (std::size_t r = 0; r < l.rows(); ++r) {
        std::string line;
        for (int c = 0; c < static_cast<int>(l.columns.size()); ++c)
            line += (c ? "|" : "") + std::string(l.cell(r, c));
        out.push_back(line);
    }
    return out;
}

// The labels of the top nodes.
inline std::vector<std::string> nodeLabels(const std::vector<rq::EditorNode>& nodes) {
    std::vector<std::string> out;
    for (const rq::EditorNode& n : nodes)
        out.push_back(n.label);
    return out;
}

// One command run against an editor and the undo text it leaves.
struct EditorStep {
    const char* undoText;
    std::function<bool()> run;
};

// Runs the steps in order: each must change what `snapshot()` gives (the file's
// bytes) and be one step of the history with its undo text. Then undoes back to
// the start and redoes to the end, comparing at every step. Returns the snapshots,
// the one before the first step first; the editor is left after the last step.
inline std::vector<std::string>
expectEveryStepUndoesAndRedoes(rq::UndoHistory& history, const std::vector<EditorStep>& steps,
                               const std::function<std::string()>& snapshot) {
    std::vector<std::string> shots{snapshot()};
    for (const EditorStep& step : steps) {
        if (!step.run()) {
            ADD_FAILURE() << "no change: " << step.undoText;
            return shots;
        }
        EXPECT_EQ(history.undoText(), step.undoText);
        shots.push_back(snapshot());
        EXPECT_NE(shots.back(), shots[shots.size() - 2]) << step.undoText;
    }
    for (std::size_t i = steps.size(); i > 0; --i) {
        EXPECT_TRUE(history.undo()) << steps[i - 1].undoText;
        EXPECT_EQ(snapshot(), shots[i - 1]) << steps[i - 1].undoText;
    }
    for (std::size_t i = 1; i < shots.size(); ++i) {
        EXPECT_TRUE(history.redo()) << steps[i - 1].undoText;
        EXPECT_EQ(snapshot(), shots[i]) << steps[i - 1].undoText;
    }
    return shots;
}

} // namespace rqtest
