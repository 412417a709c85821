#pragma once
// The command numbers of the main menu and of the section commands.

namespace rq::cmd {
inline constexpr int kNew = 57600;
inline constexpr int kOpen = 57601;
inline constexpr int kSave = 57603;
inline constexpr int kProperty = 32809;
inline constexpr int kRecentFile = 57616;
inline constexpr int kQuit = 57665;
inline constexpr int kViewToolbar = 59392;
inline constexpr int kViewStatusBar = 59393;
inline constexpr int kViewProjectManager = 103;
inline constexpr int kViewMenuBar = 32771;
inline constexpr int kCompile = 32823;
inline constexpr int kOfflineSimulation = 32824;
inline constexpr int kOnlineSimulation = 32875;
inline constexpr int kDownloadProject = 32871;
inline constexpr int kUploadProject = 32872;
inline constexpr int kDownloadPackage = 3;
inline constexpr int kDownloadStartupImage = 32873;
inline constexpr int kMonitor = 32915;
inline constexpr int kAlarmConfiguration = 32856;
inline constexpr int kRedundantConfiguration = 32863;
inline constexpr int kPrintConfiguration = 32911;
inline constexpr int kAbout = 57664;
// Help > User Guide: this program's own command (the guide rendered from docs/).
inline constexpr int kUserGuide = 32990;
// Find References on a data row of the real-time database: the uses of the item in
// the "References" dock (this program's own command).
inline constexpr int kFindReferences = 32997;

// Real-time database.
inline constexpr int kNewDataGroup = 32802;
inline constexpr int kDeleteDataGroup = 32803;
inline constexpr int kModifyDatabase = 32806;
inline constexpr int kNewDatabase = 32807;
inline constexpr int kDeleteDatabase = 32808;
inline constexpr int kNewData = 32810;
inline constexpr int kDeleteData = 32811;
inline constexpr int kModifyData = 32812;
inline constexpr int kBatchData = 32906;
// HMI database ("Window database").
inline constexpr int kNewHmiDataGroup = 32813;
inline constexpr int kDeleteHmiDataGroup = 32814;
inline constexpr int kModifyHmiDataGroup = 32874;
inline constexpr int kNewHmiData = 32816;
inline constexpr int kDeleteHmiData = 32817;
inline constexpr int kModifyHmiData = 32818;
// HMI windows: the list's menu of the "windows" node.
inline constexpr int kNewWindow = 32819;
inline constexpr int kDeleteWindow = 32820;
inline constexpr int kModifyWindow = 32821;
inline constexpr int kEditWindow = 32822; // starts the window designer
// Function blocks.
inline constexpr int kNewFbd = 32864;
inline constexpr int kDeleteFbd = 32865;
inline constexpr int kFbdConfiguration = 32866;
inline constexpr int kFbdModifyParameter = 32868;
// Devices and links.
inline constexpr int kDeleteLink = 32827;
inline constexpr int kNewDevice = 32828;
inline constexpr int kDeleteDevice = 32829;
inline constexpr int kModifyDevice = 32830; // "Modify" on a link or a device
inline constexpr int kNewSerialLink = 32831;
inline constexpr int kNewCommonLink = 32833;
inline constexpr int kNewTcpClientLink = 32834;
inline constexpr int kNewTcpServerLink = 32914;
inline constexpr int kNewFeroltLink = 32916; // in no menu
inline constexpr int kNewDeviceData = 32835;
inline constexpr int kDeleteDeviceData = 32836;
inline constexpr int kModifyDeviceData = 32837;
inline constexpr int kNewDeviceData2 = 32839;
inline constexpr int kDeleteDeviceData2 = 32840;
inline constexpr int kModifyDeviceData2 = 32841;
// Data logs.
inline constexpr int kNewDataRecord = 32842;        // a log of chosen variables
inline constexpr int kNewAllDatabaseRecord = 32843; // a log of a whole database
inline constexpr int kDeleteDataRecord = 32844;
inline constexpr int kModifyDataRecord = 32845;
inline constexpr int kNewRecordData = 32846;
inline constexpr int kDeleteRecordData = 32848;
inline constexpr int kModifyRecordData = 32849;
// Parameters: the list's menu of the "Parameter" node (this program's own
// numbers; the node has no tree menu).
inline constexpr int kNewParameter = 32917;
inline constexpr int kDeleteParameter = 32918;
inline constexpr int kModifyParameter = 32919;
// Alarms ("Configuration" of the alarm node is kAlarmConfiguration).
inline constexpr int kAddAlarmGroup = 32854;
inline constexpr int kDeleteAlarmGroup = 32855;
inline constexpr int kModifyAlarmGroup = 32909;
inline constexpr int kAddAlarmData = 32857;
inline constexpr int kDeleteAlarmData = 32858;
inline constexpr int kModifyAlarmData = 32859;
// User modules: the list's menu of "module  configuration".
inline constexpr int kAddModule = 32860;
inline constexpr int kDeleteModule = 32861;
inline constexpr int kModifyModule = 32862;
// History records.
inline constexpr int kModifyHistoryRecord = 32853;
inline constexpr int kNewHistoryRecord = 32912;
inline constexpr int kDeleteHistoryRecord = 32913;
inline constexpr int kNewHistoryData = 32850;
inline constexpr int kDeleteHistoryData = 32851;
inline constexpr int kModifyHistoryData = 32852;
// The edit history.
inline constexpr int kUndo = 57643;
inline constexpr int kRedo = 57644;
} // namespace rq::cmd
