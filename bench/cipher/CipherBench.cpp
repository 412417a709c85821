// Triple-DES ECB throughput in memory: this program's block operation beside
// OpenSSL's des-ede3 ECB on the same buffer. run.sh compares whole files.

#include "core/TripleDes.h"

#include <benchmark/benchmark.h>
#include <openssl/evp.h>

#include <vector>

namespace {

constexpr std::size_t kBufferSize = 64 * 1024;
const uint8_t kKey[24] = {0x84, 0xF7, 0x8F, 0x84, 0x86, 0xC7, 0x1E, 0xEA, 0x7D, 0xE3, 0x09, 0x2D,
                          0xE2, 0x19, 0x17, 0x8A, 0x38, 0xAE, 0xD7, 0x57, 0xBE, 0x80, 0x25, 0x85};

void tripleDes(benchmark::State& state, bool encrypt) {
    const rq::TripleDesContext ctx(kKey);
    std::vector<uint8_t> buffer(kBufferSize, 0x5A);
    for (auto _ : state) {
        if (encrypt)
            ctx.encryptBlocks(buffer.data(), buffer.data(), buffer.size() / 8);
        else
            ctx.decryptBlocks(buffer.data(), buffer.data(), buffer.size() / 8);
        benchmark::DoNotOptimize(buffer.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * buffer.size()));
}

void openssl(benchmark::State& state, bool encrypt) {
    EVP_CIPHER_CTX* ctx = EVP_CIPHER_CTX_new();
    EVP_CipherInit_ex(ctx, EVP_des_ede3_ecb(), nullptr, kKey, nullptr, encrypt ? 1 : 0);
    EVP_CIPHER_CTX_set_padding(ctx, 0);
    std::vector<uint8_t> in(kBufferSize, 0x5A), out(kBufferSize + 8);
    for (auto _ : state) {
        int n = 0;
        EVP_CipherUpdate(ctx, out.data(), &n, in.data(), static_cast<int>(in.size()));
        benchmark::DoNotOptimize(out.data());
    }
    EVP_CIPHER_CTX_free(ctx);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * in.size()));
}

void BM_TripleDesEncrypt(benchmark::State& state) {
    tripleDes(state, true);
}
void BM_OpenSslEncrypt(benchmark::State& state) {
    openssl(state, true);
}
void BM_TripleDesDecrypt(benchmark::State& state) {
    tripleDes(state, false);
}
void BM_OpenSslDecrypt(benchmark::State& state) {
    openssl(state, false);
}

BENCHMARK(BM_TripleDesEncrypt);
BENCHMARK(BM_OpenSslEncrypt);
BENCHMARK(BM_TripleDesDecrypt);
BENCHMARK(BM_OpenSslDecrypt);

} // namespace

BENCHMARK_MAIN();
