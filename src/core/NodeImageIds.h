#pragma once
// The numbers of the images of the project tree's image strip (shell/NodeImages.h
// draws them); section editors give their nodes these numbers.

namespace rq::image {
inline constexpr int kLadder = 1;
inline constexpr int kDataGroup = 2;
inline constexpr int kRecord = 3;
inline constexpr int kDatabase = 4;
inline constexpr int kProject = 5;
inline constexpr int kRedundant = 6;
inline constexpr int kData = 7;
inline constexpr int kParameter = 8;
inline constexpr int kSystem = 9;
inline constexpr int kAlarm = 10;
inline constexpr int kHistory = 11;
inline constexpr int kHmi = 14;
inline constexpr int kWindows = 15;
inline constexpr int kFunctionBlock = 16;
inline constexpr int kDevice = 17;
inline constexpr int kModule = 18;
inline constexpr int kCount = 19;
} // namespace rq::image
