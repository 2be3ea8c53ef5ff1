#include "sim/ConfigStore.h"

#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <memory>

#include "config/ConfigKey.h"

namespace {

std::string decrypt(const std::string& cipher) {
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(
            EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    std::string plain(cipher.size() + 16, '\0');
    int size = 0;
    EVP_DecryptInit_ex(context.get(), EVP_aes_128_cbc(), nullptr, kelvo::kConfigKey,
                       kelvo::kConfigIv);
    EVP_CIPHER_CTX_set_padding(context.get(), 0);
    EVP_DecryptUpdate(context.get(), reinterpret_cast<unsigned char*>(plain.data()), &size,
                      reinterpret_cast<const unsigned char*>(cipher.data()),
                      static_cast<int>(cipher.size()));
    plain.resize(static_cast<size_t>(size));
    return plain;
}

TEST(ConfigStore, storesLengthTextAndLeastFiller) {
    for (const size_t size : {size_t{0}, size_t{11}, size_t{12}, size_t{13}, size_t{300}}) {
        const std::string text(size, 'x');
        const std::string cipher = kelvo::encryptConfig(text);
        EXPECT_EQ(cipher.size(), (size + 4 + 15) / 16 * 16) << size;
        const std::string plain = decrypt(cipher);
        ASSERT_GE(plain.size(), size + 4);
        EXPECT_EQ(static_cast<uint8_t>(plain[0]), size % 256);
        EXPECT_EQ(static_cast<uint8_t>(plain[1]), size / 256);
        EXPECT_EQ(plain.substr(2, 2), std::string(2, '\0'));
        EXPECT_EQ(plain.substr(4, size), text);
    }
}

}  // namespace
