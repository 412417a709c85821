#pragma once
// The key parts of the package cipher. The device side settles them; the tool reads
// KeyPart1 to KeyPart4 at run time from a key file and computes KeyPart0 as the
// byte-wise XOR of KeyPart1 and KeyPart2. Nothing here writes a key anywhere, and
// the parts are cleared when they go out of scope.
//
// Key file: conffile/package.keys in the program directory, or the file named by
// the environment variable RQP_PACKAGE_KEYS. Four lines of 16 hexadecimal digits
// (KeyPart1 first, the first pair of digits being byte 0); lines starting with '#'
// and blank lines are skipped.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace rq {

struct PackageKeys {
    uint8_t part[5][8] = {}; // KeyPart0 .. KeyPart4

    PackageKeys() = default;
    PackageKeys(const PackageKeys& other);
    PackageKeys& operator=(const PackageKeys& other);
    ~PackageKeys();
};

// RQP_PACKAGE_KEYS when set, else <program directory>/conffile/package.keys.
std::string packageKeysPath();

// Parses the text of a key file; false with the reason in *error.
bool parsePackageKeys(std::string_view text, PackageKeys& keys, std::string* error);
// Reads the key file at packageKeysPath(); false with the reason (naming the file).
bool loadPackageKeys(PackageKeys& keys, std::string* error);

// Overwrites key material so that it does not linger in memory.
void wipeKeyBytes(void* bytes, std::size_t size);

} // namespace rq
