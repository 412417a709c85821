#pragma once
// The menus of the workspace as data: the main menu, the view menu and the context
// menus of the project tree and the list view, with their exact texts and command
// numbers. The window builds QMenus from them; tests read them.

#include <string>
#include <vector>

namespace rqshell {

struct MenuEntry {
    std::string text; // empty = separator; "\t" separates a shortcut in main-menu texts
    int command = 0;  // 0 for a pop-up or a separator
    std::vector<MenuEntry> popup;

    bool isSeparator() const { return text.empty(); }
    bool isPopup() const { return command == 0 && !text.empty(); }
};

// Resource numbers of the context menus (what TreeNodeHandler::GetMenuId and
// GetListMenuId return); 0 = no menu.
namespace menuid {
inline constexpr int kNone = 0;
inline constexpr int kView = 130;
inline constexpr int kRtdbTree = 131;
inline constexpr int kRtdbList = 132;
inline constexpr int kHmiDbTree = 133;
inline constexpr int kHmiDbList = 134;
inline constexpr int kWindowsList = 135;
inline constexpr int kDeviceTree = 136;
inline constexpr int kDeviceList = 137;
inline constexpr int kDeviceList2 = 138;
inline constexpr int kDataLogTree = 139;
inline constexpr int kDataLogList = 140;
inline constexpr int kHistoryTree = 141;
inline constexpr int kHistoryList = 142;
inline constexpr int kAlarmTree = 143;
inline constexpr int kAlarmList = 144;
inline constexpr int kModulesList = 145;
inline constexpr int kRedundancyTree = 146;
inline constexpr int kFbdTree = 147;
inline constexpr int kFbdList = 148;
} // namespace menuid

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
