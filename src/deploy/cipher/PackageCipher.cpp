#include "deploy/cipher/PackageCipher.h"

#include "core/RuntimeRandom.h"
#include "core/TripleDes.h"
#include "deploy/cipher/PackageFile.h"
#include "deploy/cipher/PackageKeys.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <random>
#include <vector>

namespace rq {
namespace {

namespace fs = std::filesystem;

// Content goes through in pieces of this size (a multiple of the 8-byte block).
constexpr std::size_t kChunkSize = std::size_t{64} << 10;
static_assert(kChunkSize % 8 == 0);

void setError(std::string* error, std::string text) {
    if (error)
        *error = std::move(text);
}

std::string systemReason() {
    return std::strerror(errno);
}

class InputFile {
public:
    ~InputFile() {
        if (file_)
            std::fclose(file_);
    }
    bool open(const std::string& path, std::string* error) {
        file_ = std::fopen(path.c_str(), "rb");
        if (!file_)
            setError(error, "cannot open " + path + ": " + systemReason());
        return file_ != nullptr;
    }
    // Reads until `size` bytes or the end; a read error leaves failed() true.
    std::size_t read(uint8_t* out, std::size_t size) {
        std::size_t done = 0;
        while (done < size) {
            const std::size_t n = std::fread(out + done, 1, size - done, file_);
            if (n == 0)
                break;
            done += n;
        }
        return done;
    }
    bool failed() const { return std::ferror(file_) != 0; }

private:
    std::FILE* file_ = nullptr;
};

// The target is written to a temporary file in its directory and renamed over the
// target only when complete; on any other way out the temporary file is removed.
class OutputFile {
public:
    ~OutputFile() {
        if (file_)
            std::fclose(file_);
        if (!temp_.empty()) {
            std::error_code ec;
            fs::remove(temp_, ec);
        }
    }
    bool open(const std::string& target, std::string* error) {
        target_ = target;
        std::random_device device;
        for (int attempt = 0; attempt < 16 && !file_; ++attempt) {
            char suffix[24];
            std::snprintf(suffix, sizeof suffix, ".tmp-%08x%08x", device(), device());
            const std::string temp = target + suffix;
            file_ = std::fopen(temp.c_str(), "wbx");
            if (file_)
                temp_ = temp;
            else if (errno != EEXIST)
                break;
        }
        if (!file_)
            setError(error, "cannot write " + target + ": " + systemReason());
        return file_ != nullptr;
    }
    bool write(const uint8_t* bytes, std::size_t size, std::string* error) {
        if (std::fwrite(bytes, 1, size, file_) == size)
            return true;
        setError(error, "cannot write " + target_ + ": " + systemReason());
        return false;
    }
    bool commit(std::string* error) {
        bool ok = std::fflush(file_) == 0 && !std::ferror(file_);
        std::string reason = ok ? std::string() : systemReason();
        if (std::fclose(file_) != 0 && ok) {
            ok = false;
            reason = systemReason();
        }
        file_ = nullptr;
        if (!ok) {
            setError(error, "cannot write " + target_ + ": " + reason);
            return false;
        }
        std::error_code ec;
        fs::rename(temp_, target_, ec);
        if (ec) {
            setError(error, "cannot write " + target_ + ": " + ec.message());
            return false;
        }
        temp_.clear();
        return true;
    }

private:
    std::FILE* file_ = nullptr;
    std::string target_;
    std::string temp_;
};

// Mode 2: the password's first bytes (at most 16) replace the start of KeyPart1
// followed by KeyPart0.
void overlayPassword(PackageKeys& keys, const std::string& password) {
    uint8_t w[16];
    std::memcpy(w, keys.part[1], 8);
    std::memcpy(w + 8, keys.part[0], 8);
    std::memcpy(w, password.data(), std::min<std::size_t>(password.size(), 16));
    std::memcpy(keys.part[1], w, 8);
    std::memcpy(keys.part[0], w + 8, 8);
    wipeKeyBytes(w, sizeof w);
}

} // namespace

void writePackageHeader(const PackageHeader& header, uint8_t out[kPackageHeaderSize]) {
    std::memset(out, 0, kPackageHeaderSize);
    out[0] = 'R';
    out[1] = 'Q';
    out[2] = 'P';
    out[6] = static_cast<uint8_t>(header.mode);
    for (int i = 0; i < 4; ++i)
        out[7 + i] = static_cast<uint8_t>(header.length >> (8 * i));
}

std::optional<PackageHeader> readPackageHeader(const uint8_t bytes[kPackageHeaderSize]) {
    if (bytes[0] != 'R' || bytes[1] != 'Q' || bytes[2] != 'P' || bytes[3] != 0 || bytes[4] != 0)
        return std::nullopt;
    if (bytes[5] != 0 || bytes[6] > 2)
        return std::nullopt;
    PackageHeader header;
    header.mode = bytes[6];
    for (int i = 0; i < 4; ++i)
        header.length |= uint32_t{bytes[7 + i]} << (8 * i);
    return header;
}

bool wrapPackage(const std::string& source, const std::string& target, int mode,
                 const std::optional<std::string>& password, std::string* error) {
    if (mode < 0 || mode > 2) {
        setError(error, "the package mode must be 0, 1 or 2");
        return false;
    }
    InputFile in;
    if (!in.open(source, error))
        return false;
    std::error_code ec;
    const uint64_t size = fs::file_size(source, ec);
    if (ec) {
        setError(error, "cannot open " + source + ": " + ec.message());
        return false;
    }
    if (size > kPackageMaxLength) {
        setError(error, source + " is too large for a package (at most 4294967295 bytes)");
        return false;
    }
    PackageKeys keys;
    if (!loadPackageKeys(keys, error))
        return false;
    if (mode == 2 && password)
        overlayPassword(keys, *password);

    OutputFile out;
    if (!out.open(target, error))
        return false;
    uint8_t header[kPackageHeaderSize];
    writePackageHeader({mode, static_cast<uint32_t>(size)}, header);
    if (!out.write(header, sizeof header, error))
        return false;

    // Four bytes of the data key are random; they travel in the key block,
    // enciphered with the key-wrapping key.
    const TripleDesContext wrappingKey(keys.part[2], keys.part[3], keys.part[4]);
    RuntimeRandom& random = RuntimeRandom::shared();
    keys.part[1][6] = random.nextByte();
    keys.part[0][6] = random.nextByte();
    keys.part[1][7] = random.nextByte();
    keys.part[0][7] = random.nextByte();
    uint8_t keyBlock[kPackageKeyBlockSize];
    wrappingKey.encryptBlock(keys.part[1], keyBlock);
    wrappingKey.encryptBlock(keys.part[0], keyBlock + 8);
    for (int i = 0; i < 8; ++i)
        keyBlock[i] ^= keys.part[2][i];
    const bool keyBlockWritten = mode == 0 || out.write(keyBlock, sizeof keyBlock, error);
    wipeKeyBytes(keyBlock, sizeof keyBlock);
    if (!keyBlockWritten)
        return false;

    const TripleDesContext dataKey(keys.part[2], keys.part[1], keys.part[0]);
    std::vector<uint8_t> buffer(kChunkSize);
    uint64_t total = 0;
    for (;;) {
        const std::size_t n = in.read(buffer.data(), buffer.size());
        if (in.failed()) {
            setError(error, "cannot read " + source + ": " + systemReason());
            return false;
        }
        total += n;
        if (total > size)
            break;
        const std::size_t padded = (n + 7) & ~std::size_t{7};
        std::memset(buffer.data() + n, 0, padded - n);
        if (mode != 0)
            dataKey.encryptBlocks(buffer.data(), buffer.data(), padded / 8);
        if (padded && !out.write(buffer.data(), padded, error))
            return false;
        if (n < buffer.size())
            break;
    }
    if (total != size) {
        setError(error, source + " changed while it was being wrapped");
        return false;
    }
    return out.commit(error);
}

bool unwrapPackage(const std::string& source, const std::string& target,
                   const std::optional<std::string>& password, std::string* error) {
    InputFile in;
    if (!in.open(source, error))
        return false;
    uint8_t headerBytes[kPackageHeaderSize];
    const std::size_t got = in.read(headerBytes, sizeof headerBytes);
    if (in.failed()) {
        setError(error, "cannot read " + source + ": " + systemReason());
        return false;
    }
    const std::optional<PackageHeader> header =
        got == sizeof headerBytes ? readPackageHeader(headerBytes) : std::nullopt;
    if (!header) {
        setError(error, source + " is not a package (bad header)");
        return false;
    }
    PackageKeys keys;
    if (!loadPackageKeys(keys, error))
        return false;
    if (header->mode == 2 && password)
        overlayPassword(keys, *password);
    if (header->mode != 0) {
        uint8_t keyBlock[kPackageKeyBlockSize];
        if (in.read(keyBlock, sizeof keyBlock) != sizeof keyBlock) {
            setError(error, source + " is not a package (no key block)");
            return false;
        }
        for (int i = 0; i < 8; ++i)
            keyBlock[i] ^= keys.part[2][i];
        const TripleDesContext wrappingKey(keys.part[2], keys.part[3], keys.part[4]);
        wrappingKey.decryptBlocks(keyBlock, keyBlock, 2);
        keys.part[1][6] = keyBlock[6];
        keys.part[1][7] = keyBlock[7];
        keys.part[0][6] = keyBlock[14];
        keys.part[0][7] = keyBlock[15];
        wipeKeyBytes(keyBlock, sizeof keyBlock);
    }
    const TripleDesContext dataKey(keys.part[2], keys.part[1], keys.part[0]);

    OutputFile out;
    if (!out.open(target, error))
        return false;
    std::vector<uint8_t> buffer(kChunkSize);
    uint64_t remaining = header->length;
    for (;;) {
        const std::size_t n = in.read(buffer.data(), buffer.size());
        if (in.failed()) {
            setError(error, "cannot read " + source + ": " + systemReason());
            return false;
        }
        if (n % 8 != 0) {
            setError(error, source + " is damaged (content is not whole 8-byte blocks)");
            return false;
        }
        // Blocks past the length in the header are padding or surplus: dropped.
        const std::size_t wanted = static_cast<std::size_t>(std::min<uint64_t>(n, remaining));
        if (header->mode != 0)
            dataKey.decryptBlocks(buffer.data(), buffer.data(), (wanted + 7) / 8);
        if (wanted && !out.write(buffer.data(), wanted, error))
            return false;
        remaining -= wanted;
        if (n < buffer.size())
            break;
    }
    if (remaining != 0) {
        setError(error, source + " is damaged (content shorter than its header says)");
        return false;
    }
    return out.commit(error);
}

int EncryptPackage(const std::string& source, const std::string& target, int mode,
                   const std::optional<std::string>& password) {
    return wrapPackage(source, target, mode, password, nullptr) ? 1 : 0;
}

int DecryptPackage(const std::string& source, const std::string& target,
                   const std::optional<std::string>& password) {
    return unwrapPackage(source, target, password, nullptr) ? 1 : 0;
}

} // namespace rq
