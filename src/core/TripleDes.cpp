// DES with the standard tables, three-key EDE.
//
// Layout of the fast path: the eight S-boxes and the P permutation are folded into
// eight 32-bit "SP" tables computed at compile time from the standard tables. The
// two halves of the block are kept rotated left by one bit during the rounds so
// that every expansion group of six bits is a plain byte field of either the half
// itself or the half rotated right by four; the subkeys are stored in the same
// byte layout. The initial and final permutations are done by bit-group swaps,
// once per triple-DES block: between two DES passes they cancel out.

#include "core/TripleDes.h"

#include <array>
#include <bit>
#include <cstring>

namespace rq {
namespace {

// The standard tables, bit numbers counted from 1 at the most significant bit.
constexpr uint8_t kPc1[56] = {57, 49, 41, 33, 25, 17, 9,  1,  58, 50, 42, 34, 26, 18,
                              10, 2,  59, 51, 43, 35, 27, 19, 11, 3,  60, 52, 44, 36,
                              63, 55, 47, 39, 31, 23, 15, 7,  62, 54, 46, 38, 30, 22,
                              14, 6,  61, 53, 45, 37, 29, 21, 13, 5,  28, 20, 12, 4};

constexpr uint8_t kPc2[48] = {14, 17, 11, 24, 1,  5,  3,  28, 15, 6,  21, 10, 23, 19, 12, 4,
                              26, 8,  16, 7,  27, 20, 13, 2,  41, 52, 31, 37, 47, 55, 30, 40,
                              51, 45, 33, 48, 44, 49, 39, 56, 34, 53, 46, 42, 50, 36, 29, 32};

constexpr uint8_t kShifts[16] = {1, 1, 2, 2, 2, 2, 2, 2, 1, 2, 2, 2, 2, 2, 2, 1};

constexpr uint8_t kP[32] = {16, 7, 20, 21, 29, 12, 28, 17, 1,  15, 23, 26, 5,  18, 31, 10,
                            2,  8, 24, 14, 32, 27, 3,  9,  19, 13, 30, 6,  22, 11, 4,  25};

constexpr uint8_t kS[8][4][16] = {{{14, 4, 13, 1, 2, 15, 11, 8, 3, 10, 6, 12, 5, 9, 0, 7},
                                   {0, 15, 7, 4, 14, 2, 13, 1, 10, 6, 12, 11, 9, 5, 3, 8},
                                   {4, 1, 14, 8, 13, 6, 2, 11, 15, 12, 9, 7, 3, 10, 5, 0},
                                   {15, 12, 8, 2, 4, 9, 1, 7, 5, 11, 3, 14, 10, 0, 6, 13}},
                                  {{15, 1, 8, 14, 6, 11, 3, 4, 9, 7, 2, 13, 12, 0, 5, 10},
                                   {3, 13, 4, 7, 15, 2, 8, 14, 12, 0, 1, 10, 6, 9, 11, 5},
                                   {0, 14, 7, 11, 10, 4, 13, 1, 5, 8, 12, 6, 9, 3, 2, 15},
                                   {13, 8, 10, 1, 3, 15, 4, 2, 11, 6, 7, 12, 0, 5, 14, 9}},
                                  {{10, 0, 9, 14, 6, 3, 15, 5, 1, 13, 12, 7, 11, 4, 2, 8},
                                   {13, 7, 0, 9, 3, 4, 6, 10, 2, 8, 5, 14, 12, 11, 15, 1},
                                   {13, 6, 4, 9, 8, 15, 3, 0, 11, 1, 2, 12, 5, 10, 14, 7},
                                   {1, 10, 13, 0, 6, 9, 8, 7, 4, 15, 14, 3, 11, 5, 2, 12}},
                                  {{7, 13, 14, 3, 0, 6, 9, 10, 1, 2, 8, 5, 11, 12, 4, 15},
                                   {13, 8, 11, 5, 6, 15, 0, 3, 4, 7, 2, 12, 1, 10, 14, 9},
                                   {10, 6, 9, 0, 12, 11, 7, 13, 15, 1, 3, 14, 5, 2, 8, 4},
                                   {3, 15, 0, 6, 10, 1, 13, 8, 9, 4, 5, 11, 12, 7, 2, 14}},
                                  {{2, 12, 4, 1, 7, 10, 11, 6, 8, 5, 3, 15, 13, 0, 14, 9},
                                   {14, 11, 2, 12, 4, 7, 13, 1, 5, 0, 15, 10, 3, 9, 8, 6},
                                   {4, 2, 1, 11, 10, 13, 7, 8, 15, 9, 12, 5, 6, 3, 0, 14},
                                   {11, 8, 12, 7, 1, 14, 2, 13, 6, 15, 0, 9, 10, 4, 5, 3}},
                                  {{12, 1, 10, 15, 9, 2, 6, 8, 0, 13, 3, 4, 14, 7, 5, 11},
                                   {10, 15, 4, 2, 7, 12, 9, 5, 6, 1, 13, 14, 0, 11, 3, 8},
                                   {9, 14, 15, 5, 2, 8, 12, 3, 7, 0, 4, 10, 1, 13, 11, 6},
                                   {4, 3, 2, 12, 9, 5, 15, 10, 11, 14, 1, 7, 6, 0, 8, 13}},
                                  {{4, 11, 2, 14, 15, 0, 8, 13, 3, 12, 9, 7, 5, 10, 6, 1},
                                   {13, 0, 11, 7, 4, 9, 1, 10, 14, 3, 5, 12, 2, 15, 8, 6},
                                   {1, 4, 11, 13, 12, 3, 7, 14, 10, 15, 6, 8, 0, 5, 9, 2},
                                   {6, 11, 13, 8, 1, 4, 10, 7, 9, 5, 0, 15, 14, 2, 3, 12}},
                                  {{13, 2, 8, 4, 6, 15, 11, 1, 10, 9, 3, 14, 5, 0, 12, 7},
                                   {1, 15, 13, 8, 10, 3, 7, 4, 12, 5, 6, 11, 0, 14, 9, 2},
                                   {7, 11, 4, 1, 9, 12, 14, 2, 0, 6, 10, 13, 15, 3, 5, 8},
                                   {2, 1, 14, 7, 4, 10, 8, 13, 15, 12, 9, 0, 3, 5, 6, 11}}};

// A typing slip in a table would make a valid-looking but wrong cipher; each
// S-box row and each permutation must be a permutation of its range.
constexpr bool tablesAreConsistent() {
    for (const auto& box : kS)
        for (const auto& row : box) {
            unsigned seen = 0;
            for (uint8_t v : row)
                seen |= 1u << v;
            if (seen != 0xFFFF)
                return false;
        }
    uint64_t seen = 0;
    for (uint8_t v : kP)
        seen |= uint64_t{1} << v;
    if (seen != 0x1FFFFFFFEull)
        return false;
    seen = 0;
    for (uint8_t v : kPc1)
        seen |= uint64_t{1} << (v - 1);
    if (seen != 0x7F7F7F7F7F7F7F7Full) // every bit but the eight parity bits
        return false;
    seen = 0;
    for (uint8_t v : kPc2)
        seen |= uint64_t{1} << (v - 1);
    // 48 of the 56 positions: 9, 18, 22, 25, 35, 38, 43 and 54 are dropped.
    constexpr uint64_t dropped = (1ull << 8) | (1ull << 17) | (1ull << 21) | (1ull << 24) |
                                 (1ull << 34) | (1ull << 37) | (1ull << 42) | (1ull << 53);
    return seen == (((1ull << 56) - 1) ^ dropped);
}
static_assert(tablesAreConsistent(), "DES tables are damaged");

// SP[j][b]: the P-permuted output of S-box j+1 for the six-bit input b & 63 (the
// first expansion bit most significant), rotated left by one. 256 entries so that a
// whole byte can index the table; the top two bits of the byte are ignored.
using SpTables = std::array<std::array<uint32_t, 256>, 8>;

constexpr SpTables makeSpTables() {
    SpTables sp{};
    for (int j = 0; j < 8; ++j)
        for (int b = 0; b < 256; ++b) {
            const int v = b & 63;
            const int row = ((v >> 4) & 2) | (v & 1);
            const int col = (v >> 1) & 15;
            const uint32_t s = uint32_t{kS[j][row][col]} << (28 - 4 * j);
            uint32_t p = 0;
            for (int i = 0; i < 32; ++i)
                if (s & (uint32_t{1} << (32 - kP[i])))
                    p |= uint32_t{1} << (31 - i);
            sp[j][b] = std::rotl(p, 1);
        }
    return sp;
}

alignas(64) constexpr SpTables kSp = makeSpTables();

// The 48-bit subkeys of the sixteen rounds, each as eight six-bit groups packed
// into two words: groups 1, 3, 5, 7 (S-boxes 1, 3, 5, 7) in the bytes of the first
// word from the top, groups 2, 4, 6, 8 in the second.
void makeSchedule(const uint8_t key[8], uint32_t out[32]) {
    uint64_t k = 0;
    for (int i = 0; i < 8; ++i)
        k = (k << 8) | key[i];
    uint32_t c = 0, d = 0;
    for (int i = 0; i < 28; ++i) {
        c = (c << 1) | static_cast<uint32_t>((k >> (64 - kPc1[i])) & 1);
        d = (d << 1) | static_cast<uint32_t>((k >> (64 - kPc1[i + 28])) & 1);
    }
    for (int round = 0; round < 16; ++round) {
        for (int s = 0; s < kShifts[round]; ++s) {
            c = ((c << 1) | (c >> 27)) & 0x0FFFFFFF;
            d = ((d << 1) | (d >> 27)) & 0x0FFFFFFF;
        }
        const uint64_t cd = (uint64_t{c} << 28) | d; // bit 1 of C||D at bit 55
        uint64_t sub = 0;
        for (int i = 0; i < 48; ++i)
            sub = (sub << 1) | ((cd >> (56 - kPc2[i])) & 1);
        uint32_t w0 = 0, w1 = 0;
        for (int g = 0; g < 8; ++g) {
            const uint32_t group = static_cast<uint32_t>((sub >> (42 - 6 * g)) & 63);
            const int shift = 24 - 8 * (g / 2);
            (g % 2 == 0 ? w0 : w1) |= group << shift;
        }
        out[2 * round] = w0;
        out[2 * round + 1] = w1;
    }
}

void reverseRounds(const uint32_t in[32], uint32_t out[32]) {
    for (int round = 0; round < 16; ++round) {
        out[2 * round] = in[2 * (15 - round)];
        out[2 * round + 1] = in[2 * (15 - round) + 1];
    }
}

inline uint32_t load32(const uint8_t* p) {
    return (uint32_t{p[0]} << 24) | (uint32_t{p[1]} << 16) | (uint32_t{p[2]} << 8) | p[3];
}

inline void store32(uint8_t* p, uint32_t v) {
    p[0] = static_cast<uint8_t>(v >> 24);
    p[1] = static_cast<uint8_t>(v >> 16);
    p[2] = static_cast<uint8_t>(v >> 8);
    p[3] = static_cast<uint8_t>(v);
}

// Exchanges the bits of `b` selected by `mask` with the bits of `a` that lie `n`
// places higher.
#define RQ_SWAP_BITS(a, b, n, mask)                                                                \
    do {                                                                                           \
        const uint32_t t_ = (((a) >> (n)) ^ (b)) & (mask);                                         \
        (b) ^= t_;                                                                                 \
        (a) ^= t_ << (n);                                                                          \
    } while (0)

// The initial permutation: block bytes 0-3 in l, 4-7 in r on entry; the halves L0
// and R0, each rotated left by one, on return.
inline void initialPermutation(uint32_t& l, uint32_t& r) {
    RQ_SWAP_BITS(l, r, 4, 0x0F0F0F0Fu);
    RQ_SWAP_BITS(l, r, 16, 0x0000FFFFu);
    RQ_SWAP_BITS(r, l, 2, 0x33333333u);
    RQ_SWAP_BITS(r, l, 8, 0x00FF00FFu);
    r = std::rotl(r, 1);
    const uint32_t t = (l ^ r) & 0xAAAAAAAAu;
    l ^= t;
    r ^= t;
    l = std::rotl(l, 1);
}

// The final permutation of R16 L16 (given as l = L16, r = R16, rotated as in the
// rounds); bytes 0-3 of the output in r, 4-7 in l on return.
inline void finalPermutation(uint32_t& l, uint32_t& r) {
    r = std::rotr(r, 1);
    const uint32_t t = (l ^ r) & 0xAAAAAAAAu;
    l ^= t;
    r ^= t;
    l = std::rotr(l, 1);
    RQ_SWAP_BITS(l, r, 8, 0x00FF00FFu);
    RQ_SWAP_BITS(l, r, 2, 0x33333333u);
    RQ_SWAP_BITS(r, l, 16, 0x0000FFFFu);
    RQ_SWAP_BITS(r, l, 4, 0x0F0F0F0Fu);
}

#undef RQ_SWAP_BITS

// The round function f(R, K), on the rotated half.
inline uint32_t feistel(uint32_t r, const uint32_t* k) {
    const uint32_t a = std::rotr(r, 4) ^ k[0];
    const uint32_t b = r ^ k[1];
    return kSp[0][a >> 24] ^ kSp[2][(a >> 16) & 0xFF] ^ kSp[4][(a >> 8) & 0xFF] ^ kSp[6][a & 0xFF] ^
           kSp[1][b >> 24] ^ kSp[3][(b >> 16) & 0xFF] ^ kSp[5][(b >> 8) & 0xFF] ^ kSp[7][b & 0xFF];
}

// Sixteen rounds on N independent blocks at once: the rounds of one block depend
// on each other, those of different blocks do not, so interleaving them keeps the
// processor busy. `swapped` starts with the right half (the middle pass of EDE,
// which begins on R16 L16 of the pass before).
template <int N, bool swapped>
inline void sixteenRounds(uint32_t (&l)[N], uint32_t (&r)[N], const uint32_t* k) {
    for (int round = 0; round < 32; round += 4) {
        for (int n = 0; n < N; ++n) {
            if constexpr (swapped) {
                r[n] ^= feistel(l[n], k + round);
                l[n] ^= feistel(r[n], k + round + 2);
            } else {
                l[n] ^= feistel(r[n], k + round);
                r[n] ^= feistel(l[n], k + round + 2);
            }
        }
    }
}

template <int N>
inline void cryptBlocks(const uint32_t (&ks)[3][32], const uint8_t* in, uint8_t* out) {
    uint32_t l[N], r[N];
    for (int n = 0; n < N; ++n) {
        l[n] = load32(in + 8 * n);
        r[n] = load32(in + 8 * n + 4);
        initialPermutation(l[n], r[n]);
    }
    sixteenRounds<N, false>(l, r, ks[0]);
    sixteenRounds<N, true>(l, r, ks[1]);
    sixteenRounds<N, false>(l, r, ks[2]);
    for (int n = 0; n < N; ++n) {
        finalPermutation(l[n], r[n]);
        store32(out + 8 * n, r[n]);
        store32(out + 8 * n + 4, l[n]);
    }
}

void cryptMany(const uint32_t (&ks)[3][32], const uint8_t* in, uint8_t* out, std::size_t count) {
    std::size_t i = 0;
    for (; i + 2 <= count; i += 2)
        cryptBlocks<2>(ks, in + 8 * i, out + 8 * i);
    if (i < count)
        cryptBlocks<1>(ks, in + 8 * i, out + 8 * i);
}

} // namespace

TripleDesContext::TripleDesContext(const uint8_t key[24])
    : TripleDesContext(key, key + 8, key + 16) {}

TripleDesContext::TripleDesContext(const uint8_t key1[8], const uint8_t key2[8],
                                   const uint8_t key3[8]) {
    // Encryption: E(k1) D(k2) E(k3), a DES decryption being the rounds with the
    // schedule reversed.
    uint32_t middle[32];
    makeSchedule(key1, enc_[0]);
    makeSchedule(key2, middle);
    makeSchedule(key3, enc_[2]);
    reverseRounds(middle, enc_[1]);
    // Decryption: the same three schedules in reverse key and round order.
    for (int pass = 0; pass < 3; ++pass)
        reverseRounds(enc_[2 - pass], dec_[pass]);
    volatile uint32_t* p = middle;
    for (int i = 0; i < 32; ++i)
        p[i] = 0;
}

TripleDesContext::~TripleDesContext() {
    // Keys derived from the package keys must not linger in freed memory.
    volatile uint32_t* p = &enc_[0][0];
    for (std::size_t i = 0; i < sizeof(enc_) / sizeof(uint32_t); ++i)
        p[i] = 0;
    p = &dec_[0][0];
    for (std::size_t i = 0; i < sizeof(dec_) / sizeof(uint32_t); ++i)
        p[i] = 0;
}

void TripleDesContext::encryptBlock(const uint8_t in[8], uint8_t out[8]) const {
    cryptBlocks<1>(enc_, in, out);
}

void TripleDesContext::decryptBlock(const uint8_t in[8], uint8_t out[8]) const {
    cryptBlocks<1>(dec_, in, out);
}

void TripleDesContext::encryptBlocks(const uint8_t* in, uint8_t* out, std::size_t count) const {
    cryptMany(enc_, in, out, count);
}

void TripleDesContext::decryptBlocks(const uint8_t* in, uint8_t* out, std::size_t count) const {
    cryptMany(dec_, in, out, count);
}

} // namespace rq
