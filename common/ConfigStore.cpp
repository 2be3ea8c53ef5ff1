#include "common/ConfigStore.h"

#include <openssl/evp.h>

#include <cstdint>
#include <memory>
#include <stdexcept>

#include "config/ConfigKey.h"

namespace common {

namespace {

constexpr size_t kBlockSize = 16;

std::string withLengthAndFiller(std::string_view json) {
    const auto length = static_cast<uint32_t>(json.size());
    std::string plain;
    for (unsigned shift = 0; shift < 32; shift += 8) {
        plain.push_back(static_cast<char>((length >> shift) & 0xffU));
    }
    plain += json;
    plain.resize((plain.size() + kBlockSize - 1) / kBlockSize * kBlockSize, '\0');
    return plain;
}

}  // namespace

std::string encryptConfig(std::string_view json) {
    const std::string plain = withLengthAndFiller(json);
    std::string cipher(plain.size() + kBlockSize, '\0');
    auto* const out = reinterpret_cast<unsigned char*>(cipher.data());
    const auto* const in = reinterpret_cast<const unsigned char*>(plain.data());
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(
            EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    int size = 0;
    int last = 0;
    if (!context ||
        EVP_EncryptInit_ex(context.get(), EVP_aes_128_cbc(), nullptr, kelvo::kConfigKey,
                           kelvo::kConfigIv) != 1 ||
        EVP_CIPHER_CTX_set_padding(context.get(), 0) != 1 ||
        EVP_EncryptUpdate(context.get(), out, &size, in, static_cast<int>(plain.size())) != 1 ||
        EVP_EncryptFinal_ex(context.get(), out + size, &last) != 1) {
        throw std::runtime_error("cannot encrypt the configuration");
    }
    cipher.resize(static_cast<size_t>(size) + static_cast<size_t>(last));
    return cipher;
}

}  // namespace common
