#pragma once
// The steps that the window commands push on the project's history. Windows are
// addressed by their positions, which a linear history keeps valid; a step holds
// only what it took out or overwrote, and the layout file it made, if any.

#include "core/EditCommand.h"
#include "core/MessageSink.h"
#include "core/SectionTable.h"
#include "sections/hmiwindow/HmiWindowSection.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace rq {

inline constexpr int kHmiWindowSectionIndex = sectionIndexOf("hmiwindow.xml");

// A layout file that a command created, as its step sees it. Undo removes the
// file only while it still holds the bytes the step wrote; once the designer has
// changed it, it is the user's work and stays where it is (as the layout files of
// deleted windows do). Redo writes the bytes again only where nothing stands.
// A failure is reported through the sink and leaves the disk as it is.
class NewLayoutFile {
public:
    // `path` was just written with `bytes`.
    NewLayoutFile(std::string path, std::string bytes, MessageSink& sink)
        : path_(std::move(path)), bytes_(std::move(bytes)), sink_(&sink) {}
    void restore();
    void remove();

private:
    std::string path_;
    std::string bytes_;
    MessageSink* sink_;
    bool ours_ = true; // the file at path_ is the one this step wrote
};

// One window appended at the end of the list, with the layout file made for it.
class AppendWindow : public EditCommand {
public:
    AppendWindow(std::string name, HmiWindowSection& s, HmiWindow window,
                 std::optional<NewLayoutFile> file);
    void redo() override;
    void undo() override;

private:
    HmiWindowSection& s_;
    HmiWindow window_;
    std::optional<NewLayoutFile> file_;
};

// Windows taken out by position; undo puts each back where it was. Their layout
// files stay on disk.
class RemoveWindows : public EditCommand {
public:
    // `rows` in increasing order, each below the list's size.
    RemoveWindows(std::string name, HmiWindowSection& s, std::vector<std::size_t> rows);
    void redo() override;
    void undo() override;

private:
    HmiWindowSection& s_;
    std::vector<std::size_t> rows_;
    std::vector<HmiWindow> removed_;
};

// One window's fields overwritten, with the (empty) layout file made for it.
class ReplaceWindow : public EditCommand {
public:
    ReplaceWindow(std::string name, HmiWindowSection& s, std::size_t index, HmiWindow window,
                  std::optional<NewLayoutFile> file);
    void redo() override;
    void undo() override;

private:
    HmiWindowSection& s_;
    std::size_t index_;
    HmiWindow other_;
    std::optional<NewLayoutFile> file_;
};

} // namespace rq
