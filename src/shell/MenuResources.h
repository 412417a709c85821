#pragma once
// The menus of the workspace as data: the main menu, the view menu and the context
// menus of the project tree and the list view, with their exact texts and command
// numbers. The window builds QMenus from them; tests read them.

#include "core/MenuIds.h"

#include <string>
#include <vector>

namespace rqshell {

namespace menuid = rq::menuid;

struct MenuEntry {
    std::string text; // empty = separator; "\t" separates a shortcut in main-menu texts
    int command = 0;  // 0 for a pop-up or a separator
    std::vector<MenuEntry> popup;

    bool isSeparator() const { return text.empty(); }
    bool isPopup() const { return command == 0 && !text.empty(); }
};

// The main menu: its top-level entries, pop-ups and the "About(&A)..." command.
const std::vector<MenuEntry>& mainMenu();
// A context menu by resource number: the entries of its first pop-up. Empty for
// an unknown number.
const std::vector<MenuEntry>& contextMenu(int id);

// The status-bar prompt of a command: the text before the line break, and the
// tool tip after it (empty when the prompt has none).
struct CommandPrompt {
    std::string status;
    std::string tip;
};
CommandPrompt commandPrompt(int command);

} // namespace rqshell
