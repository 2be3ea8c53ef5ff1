#include "StoredConfig.h"

#include <fcntl.h>
#include <openssl/evp.h>
#include <stdlib.h>
#include <sys/stat.h>

#include "config/ConfigKey.h"
#include "sim/ConfigStore.h"

sim::DeviceTree phone() {
    return sim::DeviceTree(getenv("KELVO_ROOT"));
}

void setFile(const std::string& path, const std::string& bytes, time_t mtime) {
    sim::DeviceTree tree = phone();
    tree.setNode(path, bytes);
    const timespec times[] = {{mtime, 0}, {mtime, 0}};
    utimensat(AT_FDCWD, tree.hostPath(path).c_str(), times, 0);
}

void storeConfig(const std::string& path, const std::string& json, time_t mtime) {
    setFile(path, kelvo::encryptConfig(json), mtime);
}

std::string encryptBlocks(const std::string& plain) {
    std::string cipher(plain.size() + 16, '\0');
    auto* const out = reinterpret_cast<unsigned char*>(cipher.data());
    int size = 0;
    EVP_CIPHER_CTX* const context = EVP_CIPHER_CTX_new();
    EVP_EncryptInit_ex(context, EVP_aes_128_cbc(), nullptr, kelvo::kConfigKey, kelvo::kConfigIv);
    EVP_CIPHER_CTX_set_padding(context, 0);
    EVP_EncryptUpdate(context, out, &size, reinterpret_cast<const unsigned char*>(plain.data()),
                      static_cast<int>(plain.size()));
    EVP_CIPHER_CTX_free(context);
    cipher.resize(static_cast<size_t>(size));
    return cipher;
}

std::string littleEndian(uint32_t number) {
    std::string bytes;
    for (unsigned shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<char>((number >> shift) & 0xffU));
    }
    return bytes;
}
