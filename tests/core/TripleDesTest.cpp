// The triple-DES block operation against OpenSSL's des-ede3 in ECB mode.

#include "core/TripleDes.h"

#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <cstdint>
#include <random>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

Bytes openssl(const Bytes& key, const Bytes& in, bool encrypt) {
    EVP_CIPHER_CTX* ctx = EVP_CIPHER_CTX_new();
    Bytes out(in.size() + 8);
    int n = 0, tail = 0;
    EXPECT_EQ(EVP_CipherInit_ex(ctx, EVP_des_ede3_ecb(), nullptr, key.data(), nullptr, encrypt), 1);
    EVP_CIPHER_CTX_set_padding(ctx, 0);
    EXPECT_EQ(EVP_CipherUpdate(ctx, out.data(), &n, in.data(), static_cast<int>(in.size())), 1);
    EXPECT_EQ(EVP_CipherFinal_ex(ctx, out.data() + n, &tail), 1);
    EVP_CIPHER_CTX_free(ctx);
    out.resize(static_cast<std::size_t>(n + tail));
    return out;
}

Bytes randomBytes(std::mt19937& gen, std::size_t n) {
    Bytes b(n);
    for (auto& x : b)
        x = static_cast<uint8_t>(gen());
    return b;
}

TEST(TripleDes, SingleBlocksAgreeWithOpenSsl) {
    std::mt19937 gen(4711);
    for (int i = 0; i < 500; ++i) {
        const Bytes key = randomBytes(gen, 24);
        const Bytes block = randomBytes(gen, 8);
        rq::TripleDesContext ctx(key.data());
        uint8_t out[8];
        ctx.encryptBlock(block.data(), out);
        ASSERT_EQ(Bytes(out, out + 8), openssl(key, block, true)) << "key set " << i;
        ctx.decryptBlock(block.data(), out);
        ASSERT_EQ(Bytes(out, out + 8), openssl(key, block, false)) << "key set " << i;
    }
}

TEST(TripleDes, RunsOfBlocksAgreeWithOpenSslAndWorkInPlace) {
    std::mt19937 gen(1234);
    // Odd and even counts: blocks are processed in pairs with a single one left over.
    for (std::size_t count : {1u, 2u, 3u, 8u, 33u, 1000u}) {
        const Bytes key = randomBytes(gen, 24);
        const Bytes data = randomBytes(gen, 8 * count);
        const rq::TripleDesContext ctx(key.data() + 0, key.data() + 8, key.data() + 16);

        Bytes enc(data.size());
        ctx.encryptBlocks(data.data(), enc.data(), count);
        EXPECT_EQ(enc, openssl(key, data, true)) << count << " blocks";

        Bytes inPlace = data;
        ctx.decryptBlocks(inPlace.data(), inPlace.data(), count);
        EXPECT_EQ(inPlace, openssl(key, data, false)) << count << " blocks";

        ctx.decryptBlocks(enc.data(), enc.data(), count);
        EXPECT_EQ(enc, data) << count << " blocks";
    }
}

} // namespace
