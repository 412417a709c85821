#pragma once
// The stored form of the download password in rqrun.xml: two random triple-DES
// keys, filler, and the password enciphered under the key derived from them, all
// in Base64. Everything needed to unscramble travels in the value.

#include "core/RuntimeRandom.h"

#include <optional>
#include <string>
#include <string_view>

namespace rq {

class PasswordCodec {
public:
    // `password` is in bytes as stored (the device code page).
    static std::string scramble(std::string_view password, RuntimeRandom& random);
    static std::string scramble(std::string_view password);
    // Nothing when the text is not Base64 or too short to hold the keys.
    static std::optional<std::string> unscramble(std::string_view stored);
};

std::string base64Encode(std::string_view bytes);
std::optional<std::string> base64Decode(std::string_view text);

} // namespace rq
