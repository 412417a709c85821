#pragma once
// DES with the standard tables, used as three-key triple DES in EDE order on
// single 8-byte blocks (ECB, no chaining). Parity bits are ignored.

#include <cstddef>
#include <cstdint>

namespace rq {

class TripleDesContext {
public:
    // Keys 1, 2, 3 are bytes 0-7, 8-15, 16-23.
    explicit TripleDesContext(const uint8_t key[24]);
    TripleDesContext(const uint8_t key1[8], const uint8_t key2[8], const uint8_t key3[8]);
    // Clears the subkeys.
    ~TripleDesContext();

    // E(k1) D(k2) E(k3); in and out may be the same buffer.
    void encryptBlock(const uint8_t in[8], uint8_t out[8]) const;
    // D(k3) E(k2) D(k1).
    void decryptBlock(const uint8_t in[8], uint8_t out[8]) const;
    // Many blocks, block by block; `count` is a number of 8-byte blocks.
    void encryptBlocks(const uint8_t* in, uint8_t* out, std::size_t count) const;
    void decryptBlocks(const uint8_t* in, uint8_t* out, std::size_t count) const;

private:
    uint32_t enc_[3][32]; // subkeys of the three DES passes in encryption order
    uint32_t dec_[3][32]; // the same in decryption order
};

} // namespace rq
