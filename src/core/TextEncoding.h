#pragma once
// Text encoding. Text in memory is UTF-8. Every byte that leaves the tool for a
// project file or the device is in the device code page (GB2312 unless set
// otherwise); in XML files a character the code page lacks becomes a character
// reference so that nothing is lost.

#include <optional>
#include <string>
#include <string_view>

namespace rq {

// Converts UTF-8 text into GB2312; nothing when the text holds an invalid sequence
// or a character that GB2312 lacks.
std::optional<std::string> Utf8ToGb2312(std::string_view text);

// The device code page as an iconv name: "GB2312" (default) or "UTF-8". The
// environment variable RQPDEV_CODEPAGE sets the start value.
const std::string& deviceCodePage();
void setDeviceCodePage(const std::string& name);
bool deviceCodePageIsUtf8();

bool isValidUtf8(std::string_view bytes);
// The offset of the first byte at which the bytes stop being text in the code page
// `from` (an iconv name), or nothing when all of them are.
std::optional<size_t> firstByteNotIn(std::string_view bytes, const char* from);
bool isAscii(std::string_view bytes);

// UTF-8 text of an XML file → bytes in the device code page; characters the code
// page lacks become "&#xHHHH;".
std::string toDeviceXml(std::string_view utf8);

// UTF-8 text → bytes in the device code page for the wire or a cipher key. A text
// the code page cannot hold whole is passed on as UTF-8.
std::string toDeviceBytes(std::string_view utf8);

// Bytes from the device or a file in the device code page → UTF-8 (bytes that are
// valid UTF-8 already are taken as they are).
std::string fromDeviceBytes(std::string_view bytes);

} // namespace rq
