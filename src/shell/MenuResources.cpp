#include "shell/MenuResources.h"

#include <map>

namespace rqshell {

namespace {

MenuEntry item(const char* text, int command) {
    return MenuEntry{text, command, {}};
}
MenuEntry popup(const char* text, std::vector<MenuEntry> entries) {
    return MenuEntry{text, 0, std::move(entries)};
}
MenuEntry separator() {
    return MenuEntry{};
}

} // namespace

const std::vector<MenuEntry>& mainMenu() {
    static const std::vector<MenuEntry> menu = {
        popup("Project(&P)",
              {item("New(&N)\tCtrl+N", 57600), item("Open(&O)...\tCtrl+O", 57601),
               item("Save(&S)\tCtrl+S", 57603), item("Undo\tCtrl+Z", 57643),
               item("Redo\tCtrl+Y", 57644), separator(), item("Property...", 32809), separator(),
               item("Recent File", 57616), separator(), item("Quit(&X)", 57665)}),
        popup("View(&V)",
              {item("Toolbar(&T)", 59392), item("Status Bar(&S)", 59393),
               item("Project Manager", 103), separator(), item("Find References", 32997)}),
        popup("Tool(&T)",
              {item("Compile...    F9", 32823), item("Offline Simulation       F5", 32824),
               item("OnLine Simulation...", 32875), separator(),
               item("Download Project...   F10", 32871), item("Upload Project...", 32872),
               item("Download Package...", 3), item("Download Startup Image...", 32873),
               separator(), item("HMI Running Condition Monitoring", 32915)}),
        popup("Configuration(&C)",
              {item("Alarm Configuration", 32856), item("Redundant Configuration", 32863),
               item("Print Configuration", 32911)}),
        popup("Help(&H)",
              {item("User Guide\tF1", 32990), separator(), item("About(&A)...", 57664)}),
        item("About(&A)...", 57664),
    };
    return menu;
}

const std::vector<MenuEntry>& contextMenu(int id) {
    static const std::map<int, std::vector<MenuEntry>> menus = {
        {menuid::kView,
         {item("Menu Bar", 32771), item("Tool Bar(&T)", 59392), item("Status Bar(&S)", 59393),
          item("Project Manager", 103)}},
        {menuid::kRtdbTree,
         {item("New Database", 32807), item("Delete Database", 32808),
          item("New Data Group", 32802), item("Delete Data Group", 32803), item("Modify", 32806)}},
        {menuid::kRtdbList,
         {item("New Data(&N)", 32810), item("Delete Data(&D)", 32811), item("Modify(&P)", 32812),
          item("Batch Data", 32906), separator(), item("Find References", 32997)}},
        {menuid::kHmiDbTree,
         {item("New Data Group", 32813), item("Delete Data Group", 32814), item("Modify", 32874)}},
        {menuid::kHmiDbList,
         {item("New Data(&N)", 32816), item("Delete Data(&D)", 32817), item("Modify(&P)", 32818)}},
        {menuid::kWindowsList,
         {item("New Window(&N)", 32819), item("Delete Window(&D)", 32820),
          item("Modify(&P)", 32821), item("Edit(&E)", 32822)}},
        {menuid::kDeviceTree,
         {popup("New Device Link",
                {item("Serial Port", 32831), item("Common Link", 32833),
                 item("TCP Network Client", 32834), item("TCP Network Service", 32914)}),
          item("Delete Device Link", 32827), item("New Device", 32828),
          item("Delete Device", 32829), item("Modify", 32830)}},
        {menuid::kDeviceList,
         {item("New Data(&N)", 32835), item("Delete Data(&D)", 32836), item("Modify(&P)", 32837)}},
        {menuid::kDeviceList2,
         {item("New Data(&N)", 32839), item("Delete Data(&D)", 32840), item("Modify(&P)", 32841)}},
        {menuid::kDataLogTree,
         {item("New Data Record", 32842), item("New All Database Record", 32843),
          item("Delete Data Record", 32844), item("Modify", 32845)}},
        {menuid::kDataLogList,
         {item("New Data(&N)", 32846), item("Delete Data(&D)", 32848), item("Modify(&P)", 32849)}},
        {menuid::kHistoryTree,
         {item("New History Data Record", 32912), item("Delete History Data Record", 32913),
          item("Modify", 32853)}},
        {menuid::kHistoryList,
         {item("New Data(&N)", 32850), item("Delete Data(&D)", 32851), item("Modify(&P)", 32852)}},
        {menuid::kAlarmTree,
         {item("Add Alarm Group", 32854), item("Delete Alram Group", 32855),
          item("Modify Alarm Group", 32909), item("Configuration", 32856)}},
        {menuid::kAlarmList,
         {item("Add Data(&N)", 32857), item("Delete Data(&D)", 32858), item("Modify(&P)", 32859)}},
        {menuid::kModulesList,
         {item("Add Module(&N)", 32860), item("Delete Module(&D)", 32861),
          item("Modify(&P)", 32862)}},
        {menuid::kRedundancyTree, {item("Configuration", 32863)}},
        {menuid::kFbdTree,
         {item("New FDB", 32864), item("Delete FBD", 32865), item("Configuration", 32866)}},
        {menuid::kFbdList, {item("Modify(&P)", 32868)}},
        {menuid::kParamList,
         {item("New Parameter(&N)", 32917), item("Delete Parameter(&D)", 32918),
          item("Modify(&P)", 32919)}},
    };
    static const std::vector<MenuEntry> none;
    auto it = menus.find(id);
    return it == menus.end() ? none : it->second;
}

CommandPrompt commandPrompt(int command) {
    static const std::map<int, const char*> prompts = {
        {32809, "Show project property\nSetting"},
        {32823, "Compile project\nCompile"},
        {32824, "Local offline simulate project running\nOffline Simulation"},
        {32871, "Download project to HMI\nDownload"},
        {32872, "Upload project of HMI\nUpload"},
        {3, "Download upgrade package\nDowload Package"},
        {32873, "Download startup image \nDownload Startup Image"},
        {32875, "Online simulate  HMI running\nOnline Simulator"},
        {32843, "Add Full Record Database  "},
        {32911, "HMI print configuration"},
        {32919, "Modify Parameter"},
        {103, "View Project Manager"},
        {32771, "View Menubar"},
    };
    auto it = prompts.find(command);
    if (it == prompts.end())
        return {};
    std::string text = it->second;
    auto nl = text.find('\n');
    if (nl == std::string::npos)
        return {text, {}};
    return {text.substr(0, nl), text.substr(nl + 1)};
}

} // namespace rqshell
