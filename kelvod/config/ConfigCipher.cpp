#include "config/ConfigCipher.h"

#include <errno.h>
#include <openssl/aes.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <memory>

#include "base/FreeDeleter.h"
#include "base/Log.h"
#include "config/ConfigKey.h"

namespace kelvo {

namespace {

constexpr size_t kLengthSize = 4;  // bytes
constexpr uint32_t kMaxFiller = AES_BLOCK_SIZE;

using Buffer = std::unique_ptr<unsigned char, FreeDeleter>;

uint32_t alignedSize(const std::string& in) {
    return static_cast<uint32_t>((in.size() + AES_BLOCK_SIZE - 1) / AES_BLOCK_SIZE *
                                 AES_BLOCK_SIZE);
}

// Decrypts `size` bytes in place. Files are whole blocks; the last block of any other becomes
// noise, which does no harm when it is all filler.
void decrypt(const AES_KEY& key, unsigned char* data, uint32_t size) {
    unsigned char iv[AES_BLOCK_SIZE];
    std::copy(std::begin(kConfigIv), std::end(kConfigIv), iv);
    AES_cbc_encrypt(data, data, size, &key, iv, AES_DECRYPT);
}

uint32_t textLength(const unsigned char* plain) {
    return static_cast<uint32_t>(plain[0]) | static_cast<uint32_t>(plain[1]) << 8 |
           static_cast<uint32_t>(plain[2]) << 16 | static_cast<uint32_t>(plain[3]) << 24;
}

// The filler is computed modulo 2^32, where the length of a broken file can wrap; the second
// condition keeps such a length inside the buffer.
bool isValid(const unsigned char* plain, uint32_t size, uint32_t length) {
    const uint32_t filler = size - length - static_cast<uint32_t>(kLengthSize);
    return filler <= kMaxFiller && length <= size - kLengthSize && plain[kLengthSize] == '{';
}

}  // namespace

int decryptConfig(const std::string& in, std::string& out) {
    AES_KEY key;
    if (AES_set_decrypt_key(kConfigKey, 8 * sizeof(kConfigKey), &key) != 0) {
        KLOGE("Unable to set encryption key in AES...");
        return -1;
    }
    const uint32_t size = alignedSize(in);
    KLOGD("in size:%u, alligned to %d bytes", static_cast<uint32_t>(in.size()),
          static_cast<int>(size));
    if (size < 1) {
        KLOGE("%s, Invalid blkLen:%d", "decryptConfig", static_cast<int>(size));
        return -1;
    }
    const Buffer plain(static_cast<unsigned char*>(calloc(size, 1)));
    if (!plain) {
        KLOGE("malloc %d bytes faield(%s)", static_cast<int>(size), strerror(errno));
        return -1;
    }
    std::copy_n(in.begin(), std::min<size_t>(in.size(), size), plain.get());
    decrypt(key, plain.get(), size);
    const uint32_t length = textLength(plain.get());
    KLOGD("size is %d\n", static_cast<int>(length));
    if (!isValid(plain.get(), size, length)) {
        KLOGE("size in file is %d while block size is %d\n", static_cast<int>(length),
              static_cast<int>(size));
        return -1;
    }
    out.assign(reinterpret_cast<const char*>(plain.get()) + kLengthSize, length);
    return 0;
}

}  // namespace kelvo
