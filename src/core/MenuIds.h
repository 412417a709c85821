#pragma once
// Resource numbers of the context menus (what TreeNodeHandler::GetMenuId and
// GetListMenuId return); 0 = no menu.
namespace rq::menuid {
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
inline constexpr int kParamList = 149;
} // namespace rq::menuid
