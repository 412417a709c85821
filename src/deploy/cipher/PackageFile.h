#pragma once
// The package file format and the wrapping and unwrapping behind EncryptPackage and
// DecryptPackage, with the reason for a failure for callers that report it.

#include <cstdint>
#include <optional>
#include <string>

namespace rq {

inline constexpr std::size_t kPackageHeaderSize = 16;
inline constexpr std::size_t kPackageKeyBlockSize = 16;
inline constexpr uint64_t kPackageMaxLength = 0xFFFFFFFFull;

struct PackageHeader {
    int mode = 0;        // 0 plain, 1 enciphered, 2 enciphered with password
    uint32_t length = 0; // the plain content's length in bytes
};

void writePackageHeader(const PackageHeader& header, uint8_t out[kPackageHeaderSize]);
// Nothing when the magic is not "RQP", bytes 3-4 are not zero or the mode is unknown.
std::optional<PackageHeader> readPackageHeader(const uint8_t bytes[kPackageHeaderSize]);

// `password` is in bytes as the device compares them (the device code page); only
// mode 2 uses it, and only its first 16 bytes count. The target is written through
// a temporary file in its directory and appears only when complete.
bool wrapPackage(const std::string& source, const std::string& target, int mode,
                 const std::optional<std::string>& password, std::string* error);
// Besides a bad header, a package whose content is shorter than its header says or
// is not a whole number of 8-byte blocks is refused.
bool unwrapPackage(const std::string& source, const std::string& target,
                   const std::optional<std::string>& password, std::string* error);

} // namespace rq
