#pragma once
// The HMI windows (hmiwindow.xml): the list of the HMI's screens. Each window's
// layout lives in its own file in the project directory, edited by the window
// designer; this section holds only the list.

#include "core/ConfigSection.h"

#include <string>
#include <string_view>
#include <vector>

namespace rq {

struct HmiWindow {
    std::string name;         // unique within the section
    std::string caption;      // window title
    std::string filename;     // layout file, relative to the project directory
    int displayOnStartup = 0; // 1 = shown at start-up
    std::string enable = "1"; // "1" enabled, "0" disabled
};

class HmiWindowSection : public ConfigSection {
public:
    const char* fileName() const override { return "hmiwindow.xml"; }
    void clear() override { windows.clear(); }
    bool read(const std::string& path, ReadContext& ctx) override;
    void write(std::string& out) const override;
    std::vector<std::pair<std::string, std::size_t>> counts() const override;
    void check(CheckContext& ctx) const override;

    // Index of the window with exactly this name, or -1.
    int findWindow(std::string_view name) const;

    std::vector<HmiWindow> windows;
};

} // namespace rq
