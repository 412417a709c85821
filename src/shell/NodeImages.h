#pragma once
// The images of the project tree and the browse dialog: one strip of 16 x 16
// images drawn here, magenta (255, 0, 255) being the transparent colour.

#include <QIcon>
#include <QImage>

namespace rqshell {

namespace image {
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
} // namespace image

// The strip as drawn, with the magenta background still in place.
QImage nodeImageStrip();
// Image `index` of the strip with magenta made transparent.
QIcon nodeIcon(int index);

} // namespace rqshell
