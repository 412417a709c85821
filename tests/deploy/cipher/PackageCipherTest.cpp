// Package wrapping and unwrapping: round trips, the file layout, refused input, and
// the enciphered content checked with OpenSSL's des-ede3 in ECB mode.

#include "deploy/cipher/PackageCipher.h"
#include "deploy/cipher/PackageFile.h"
#include "deploy/cipher/PackageKeys.h"

#include "TestSupport.h"

#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>

namespace {

namespace fs = std::filesystem;
using rqtest::readFile;
using rqtest::TempDir;
using rqtest::writeFile;

std::string randomText(std::size_t n, unsigned seed) {
    std::mt19937 gen(seed);
    std::string s(n, '\0');
    for (auto& c : s)
        c = static_cast<char>(gen());
    return s;
}

std::size_t fileCount(const TempDir& dir) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(dir.path()), {}));
}

std::string opensslDecrypt(const uint8_t key[24], const std::string& in) {
    EVP_CIPHER_CTX* ctx = EVP_CIPHER_CTX_new();
    std::string out(in.size() + 8, '\0');
    int n = 0, tail = 0;
    EVP_DecryptInit_ex(ctx, EVP_des_ede3_ecb(), nullptr, key, nullptr);
    EVP_CIPHER_CTX_set_padding(ctx, 0);
    EVP_DecryptUpdate(ctx, reinterpret_cast<uint8_t*>(out.data()), &n,
                      reinterpret_cast<const uint8_t*>(in.data()), static_cast<int>(in.size()));
    EVP_DecryptFinal_ex(ctx, reinterpret_cast<uint8_t*>(out.data()) + n, &tail);
    EVP_CIPHER_CTX_free(ctx);
    out.resize(static_cast<std::size_t>(n + tail));
    return out;
}

TEST(PackageCipher, RoundTripsInEveryModeAndSize) {
    TempDir dir;
    const auto roundTrip = [&](int mode, std::size_t size, std::optional<std::string> password) {
        SCOPED_TRACE("mode " + std::to_string(mode) + ", " + std::to_string(size) + " bytes");
        const std::string plain = randomText(size, static_cast<unsigned>(size));
        writeFile(dir.file("plain"), plain);
        ASSERT_EQ(rq::EncryptPackage(dir.file("plain"), dir.file("pkg"), mode, password), 1);
        const std::string pkg = readFile(dir.file("pkg"));
        const std::size_t blocks = (size + 7) / 8;
        EXPECT_EQ(pkg.size(), 16 + (mode ? 16 : 0) + 8 * blocks);
        EXPECT_EQ(static_cast<uint8_t>(pkg[6]), mode);
        std::string padded = plain;
        padded.resize(8 * blocks, '\0');
        if (mode == 0)
            EXPECT_EQ(pkg.substr(16), padded);
        else if (size >= 8)
            EXPECT_NE(pkg.substr(32, 8), plain.substr(0, 8));
        ASSERT_EQ(rq::DecryptPackage(dir.file("pkg"), dir.file("out"), password), 1);
        EXPECT_TRUE(readFile(dir.file("out")) == plain);
    };
    const std::size_t large = (std::size_t{200} << 10) + 13; // several read chunks
    for (int mode : {0, 1, 2})
        for (std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{8}, std::size_t{9},
                                 std::size_t{4096}, large})
            roundTrip(mode, size, mode == 2 ? std::optional<std::string>("pa55") : std::nullopt);
    roundTrip(2, 100, std::nullopt); // mode 2 without a password
    EXPECT_EQ(fileCount(dir), 3u);   // no temporary file left behind
}

TEST(PackageCipher, HeaderLayout) {
    TempDir dir;
    writeFile(dir.file("plain"), std::string(0x0102, 'x'));
    ASSERT_EQ(rq::EncryptPackage(dir.file("plain"), dir.file("pkg"), 1, std::nullopt), 1);
    const std::string expected("RQP\0\0\0\x01\x02\x01\0\0\0\0\0\0\0", 16);
    EXPECT_EQ(readFile(dir.file("pkg")).substr(0, 16), expected);
}

TEST(PackageCipher, TwoWrappingsDifferButUnwrapAlike) {
    TempDir dir;
    const std::string plain = randomText(1000, 7);
    writeFile(dir.file("plain"), plain);
    for (int mode : {1, 2}) {
        const std::optional<std::string> pw =
            mode == 2 ? std::optional<std::string>("pw") : std::nullopt;
        ASSERT_EQ(rq::EncryptPackage(dir.file("plain"), dir.file("a"), mode, pw), 1);
        ASSERT_EQ(rq::EncryptPackage(dir.file("plain"), dir.file("b"), mode, pw), 1);
        const std::string a = readFile(dir.file("a")), b = readFile(dir.file("b"));
        EXPECT_EQ(a.substr(0, 16), b.substr(0, 16));
        EXPECT_NE(a.substr(16, 16), b.substr(16, 16)) << "key blocks of mode " << mode;
        EXPECT_NE(a.substr(32), b.substr(32)) << "content of mode " << mode;
        ASSERT_EQ(rq::DecryptPackage(dir.file("b"), dir.file("pb"), pw), 1);
        EXPECT_EQ(readFile(dir.file("pb")), plain);
    }
}

TEST(PackageCipher, OnlyTheFirstSixteenPasswordBytesCount) {
    TempDir dir;
    const std::string plain = randomText(77, 3);
    writeFile(dir.file("plain"), plain);
    ASSERT_EQ(rq::EncryptPackage(dir.file("plain"), dir.file("pkg"), 2,
                                 std::string("0123456789abcdefWXYZ")),
              1);
    const struct {
        std::optional<std::string> password;
        bool same;
    } tries[] = {{std::string("0123456789abcdefWXYZ"), true},
                 {std::string("0123456789abcdef"), true},
                 {std::string("0123456789abcdef-other-tail"), true},
                 {std::string("0123456789abcDef"), false},
                 // Bytes 6, 7, 14 and 15 of the overlaid key are replaced by random
                 // bytes, so the password's bytes there do not count either.
                 {std::string("012345XY89abcdeZ"), true},
                 {std::string("0123456789abcde"), true},
                 {std::nullopt, false}};
    for (const auto& t : tries) {
        ASSERT_EQ(rq::DecryptPackage(dir.file("pkg"), dir.file("out"), t.password), 1);
        EXPECT_EQ(readFile(dir.file("out")) == plain, t.same)
            << t.password.value_or("(no password)");
    }
}

// The layout read back with OpenSSL: the key block deciphers under the wrapping key
// (KeyPart2, KeyPart3, KeyPart4) to KeyPart1 and KeyPart0 with random bytes 6 and 7,
// and the content deciphers under (KeyPart2, KeyPart1, KeyPart0).
TEST(PackageCipher, ContentDeciphersWithOpenSslUnderTheDataKey) {
    rq::PackageKeys keys;
    std::string error;
    ASSERT_TRUE(rq::loadPackageKeys(keys, &error)) << error;
    TempDir dir;
    const std::string plain = randomText(1003, 11);
    writeFile(dir.file("plain"), plain);
    for (const std::optional<std::string>& pw :
         {std::optional<std::string>(), std::optional<std::string>("0123456789ABCDEFGH")}) {
        rq::PackageKeys k = keys;
        if (pw) { // the overlay of mode 2
            std::memcpy(k.part[1], pw->data(), 8);
            std::memcpy(k.part[0], pw->data() + 8, 8);
        }
        ASSERT_EQ(rq::EncryptPackage(dir.file("plain"), dir.file("pkg"), pw ? 2 : 1, pw), 1);
        const std::string pkg = readFile(dir.file("pkg"));

        uint8_t wrapping[24];
        std::memcpy(wrapping, keys.part[2], 8);
        std::memcpy(wrapping + 8, keys.part[3], 8);
        std::memcpy(wrapping + 16, keys.part[4], 8);
        std::string keyBlock = pkg.substr(16, 16);
        for (int i = 0; i < 8; ++i)
            keyBlock[i] = static_cast<char>(keyBlock[i] ^ keys.part[2][i]);
        const std::string halves = opensslDecrypt(wrapping, keyBlock);
        ASSERT_EQ(halves.size(), 16u);
        EXPECT_EQ(halves.substr(0, 6), std::string(reinterpret_cast<char*>(k.part[1]), 6));
        EXPECT_EQ(halves.substr(8, 6), std::string(reinterpret_cast<char*>(k.part[0]), 6));

        uint8_t data[24];
        std::memcpy(data, keys.part[2], 8);
        std::memcpy(data + 8, halves.data(), 8);
        std::memcpy(data + 16, halves.data() + 8, 8);
        std::string padded = plain;
        padded.resize(1008, '\0');
        EXPECT_TRUE(opensslDecrypt(data, pkg.substr(32)) == padded);
    }
}

TEST(PackageCipher, BadPackagesAreRefusedAndLeaveNoTarget) {
    TempDir dir;
    writeFile(dir.file("plain"), randomText(40, 5));
    ASSERT_EQ(rq::EncryptPackage(dir.file("plain"), dir.file("good"), 1, std::nullopt), 1);
    const std::string good = readFile(dir.file("good"));
    const auto patched = [&](std::size_t at, char value) {
        std::string s = good;
        s[at] = value;
        return s;
    };
    const struct {
        const char* what;
        std::string bytes;
    } cases[] = {
        {"wrong magic", patched(0, 'r')},
        {"byte 3 not zero", patched(3, 1)},
        {"mode 00 03", patched(6, 3)},
        {"mode 01 01", patched(5, 1)},
        {"short header", good.substr(0, 15)},
        {"no key block", good.substr(0, 24)},
        {"content cut short", good.substr(0, good.size() - 8)},
        {"partial block", good + "abc"},
        {"empty file", ""},
    };
    for (const auto& c : cases) {
        writeFile(dir.file("bad"), c.bytes);
        writeFile(dir.file("out"), "old");
        EXPECT_EQ(rq::DecryptPackage(dir.file("bad"), dir.file("out"), std::nullopt), 0) << c.what;
        EXPECT_EQ(readFile(dir.file("out")), "old") << c.what;
    }
    EXPECT_EQ(fileCount(dir), 4u);
    // Surplus whole blocks after the content are ignored.
    writeFile(dir.file("bad"), good + std::string(8, '\x55'));
    EXPECT_EQ(rq::DecryptPackage(dir.file("bad"), dir.file("out"), std::nullopt), 1);
    EXPECT_EQ(readFile(dir.file("out")), readFile(dir.file("plain")));
}

TEST(PackageCipher, FilesThatCannotBeOpenedOrAreTooLarge) {
    TempDir dir;
    writeFile(dir.file("plain"), "content");
    EXPECT_EQ(rq::EncryptPackage(dir.file("missing"), dir.file("pkg"), 1, std::nullopt), 0);
    EXPECT_EQ(rq::EncryptPackage(dir.file("plain"), dir.file("no/such/dir/pkg"), 1, std::nullopt),
              0);
    EXPECT_EQ(rq::EncryptPackage(dir.str(), dir.file("pkg"), 1, std::nullopt), 0);
    EXPECT_EQ(rq::EncryptPackage(dir.file("plain"), dir.file("pkg"), 3, std::nullopt), 0);
    EXPECT_EQ(rq::DecryptPackage(dir.file("missing"), dir.file("out"), std::nullopt), 0);
    // 4 GiB does not fit the header's length; the sparse file costs no disk space.
    {
        std::ofstream(dir.file("huge")).close();
        fs::resize_file(dir.file("huge"), uint64_t{1} << 32);
    }
    std::string error;
    EXPECT_FALSE(rq::wrapPackage(dir.file("huge"), dir.file("pkg"), 1, std::nullopt, &error));
    EXPECT_NE(error.find("too large"), std::string::npos) << error;
    EXPECT_EQ(fileCount(dir), 2u);
}

class KeyFileTest : public ::testing::Test {
protected:
    void TearDown() override { unsetenv("RQP_PACKAGE_KEYS"); }
    TempDir dir;
};

TEST_F(KeyFileTest, ParsesCommentsBlankLinesAndLineEnds) {
    rq::PackageKeys keys;
    std::string error;
    ASSERT_TRUE(rq::parsePackageKeys("# keys\r\n\r\n0102030405060708\r\n  a0b0c0d0e0f00011  \n"
                                     "#\nFFFFFFFFFFFFFFFF\n0000000000000000",
                                     keys, &error))
        << error;
    const uint8_t part0[8] = {0xA1, 0xB2, 0xC3, 0xD4, 0xE5, 0xF6, 0x07, 0x19};
    EXPECT_EQ(0, std::memcmp(keys.part[0], part0, 8));
    EXPECT_EQ(keys.part[1][7], 0x08);
    EXPECT_EQ(keys.part[3][0], 0xFF);
    EXPECT_EQ(keys.part[4][0], 0x00);
}

TEST_F(KeyFileTest, MalformedMissingOrOtherKeys) {
    const char* const bad[] = {
        "0102030405060708\n0102030405060708\n0102030405060708\n",                   // three keys
        "0102030405060708\n0102030405060708\n0102030405060708\n010203040506070\n",  // 15 digits
        "0102030405060708\n0102030405060708\n0102030405060708\n01020304050607G8\n", // not hex
        "0102030405060708\n0102030405060708\n0102030405060708\n0102030405060708\n"
        "0102030405060708\n", // five keys
    };
    writeFile(dir.file("plain"), "content");
    for (const char* text : bad) {
        writeFile(dir.file("keys"), text);
        setenv("RQP_PACKAGE_KEYS", dir.file("keys").c_str(), 1);
        std::string error;
        EXPECT_FALSE(rq::wrapPackage(dir.file("plain"), dir.file("pkg"), 1, std::nullopt, &error));
        EXPECT_NE(error.find("malformed package key file"), std::string::npos) << error;
    }
    setenv("RQP_PACKAGE_KEYS", dir.file("absent").c_str(), 1);
    EXPECT_EQ(rq::EncryptPackage(dir.file("plain"), dir.file("pkg"), 1, std::nullopt), 0);
    EXPECT_FALSE(fs::exists(dir.file("pkg")));
    // A package wrapped under the delivered keys does not unwrap under others.
    unsetenv("RQP_PACKAGE_KEYS");
    ASSERT_EQ(rq::EncryptPackage(dir.file("plain"), dir.file("pkg"), 1, std::nullopt), 1);
    writeFile(dir.file("keys"), "1111111111111111\n2222222222222222\n3333333333333333\n"
                                "4444444444444444\n");
    setenv("RQP_PACKAGE_KEYS", dir.file("keys").c_str(), 1);
    ASSERT_EQ(rq::DecryptPackage(dir.file("pkg"), dir.file("out"), std::nullopt), 1);
    EXPECT_NE(readFile(dir.file("out")), readFile(dir.file("plain")));
}

} // namespace
