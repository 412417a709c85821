#pragma once
// The package file (.rqp): a 16-byte header, in modes 1 and 2 a 16-byte key block,
// then the content in 8-byte blocks (the last one zero-padded), enciphered with
// triple DES in modes 1 and 2. Files are streamed; packages hold up to 4 GiB - 1.
//
// Header: "RQP", 00 00, mode (00 00 plain, 00 01 enciphered, 00 02 enciphered with
// password), the plain length (4 bytes, little-endian), five zero bytes.

#include <optional>
#include <string>

namespace rq {

// 1 after writing the target, 0 when a file cannot be opened (or the keys cannot be read,
// or the header is not valid when unwrapping). mode 0, 1 or 2.
int EncryptPackage(const std::string& source, const std::string& target, int mode,
                   const std::optional<std::string>& password);
int DecryptPackage(const std::string& source, const std::string& target,
                   const std::optional<std::string>& password);

} // namespace rq
