#include "sha256.h"

#include <array>
#include <stdexcept>

#include <windows.h>
#include <bcrypt.h>

namespace {

using Digest = std::array<UCHAR, 32>;

bool compute(std::string_view bytes, Digest& digest) {
    BCRYPT_ALG_HANDLE algorithm = nullptr;
    if (BCryptOpenAlgorithmProvider(&algorithm, BCRYPT_SHA256_ALGORITHM, nullptr, 0) < 0) {
        return false;
    }
    BCRYPT_HASH_HANDLE hash = nullptr;
    bool is_done = false;
    if (BCryptCreateHash(algorithm, &hash, nullptr, 0, nullptr, 0, 0) >= 0) {
        // The call takes bytes that it does not change by a pointer that would let it.
        auto* const data = reinterpret_cast<PUCHAR>(const_cast<char*>(bytes.data()));
        is_done = BCryptHashData(hash, data, static_cast<ULONG>(bytes.size()), 0) >= 0 &&
                  BCryptFinishHash(hash, digest.data(), static_cast<ULONG>(digest.size()), 0) >= 0;
        BCryptDestroyHash(hash);
    }
    BCryptCloseAlgorithmProvider(algorithm, 0);
    return is_done;
}

} // namespace

std::string sha256(std::string_view bytes) {
    Digest digest = {};
    if (!compute(bytes, digest)) {
        throw std::runtime_error("Windows cannot compute SHA-256");
    }
    std::string text;
    for (const UCHAR byte : digest) {
        constexpr std::string_view digits = "0123456789abcdef";
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}
