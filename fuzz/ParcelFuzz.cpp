// Parcels of other processes: bytes and a list of objects as the driver hands them over, read and
// then changed in every way that the input asks for.

#include <binder/Binder.h>
#include <binder/Parcel.h>
#include <binder/Status.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "BinderProtocol.h"
#include "Input.h"

namespace {

using namespace android;

using Release = void (*)(Parcel*, const uint8_t*, size_t, const binder_size_t*, size_t, void*);
using SetReference = void (Parcel::*)(const uint8_t*, size_t, const binder_size_t*, size_t, Release,
                                      void*);

// The way that received data takes into a parcel is private; naming it here is allowed.
void lend(Parcel& parcel, std::span<const uint8_t> data, std::span<const binder_size_t> objects,
          Release release, void* cookie);
template <SetReference kSet>
struct Access {
    friend void lend(Parcel& parcel, std::span<const uint8_t> data,
                     std::span<const binder_size_t> objects, Release release, void* cookie) {
        (parcel.*kSet)(data.data(), data.size(), objects.data(), objects.size(), release, cookie);
    }
};
template struct Access<&Parcel::ipcSetDataReference>;

template <typename T, status_t (Parcel::*kRead)(T*) const>
void readValue(Parcel& parcel) {
    T value{};
    (parcel.*kRead)(&value);
}

/** A vector has at most one element for each byte, whatever its count says. */
template <typename T, status_t (Parcel::*kRead)(std::vector<T>*) const>
void readVector(Parcel& parcel) {
    std::vector<T> values;
    const size_t position = parcel.dataPosition();
    if ((parcel.*kRead)(&values) == OK && values.size() > parcel.dataSize()) {
        std::abort();
    }
    parcel.setDataPosition(position);
}

void readTexts(Parcel& parcel) {
    const size_t position = parcel.dataPosition();
    size_t length = 0;
    const char16_t* const text = parcel.readString16Inplace(&length);
    if (text != nullptr && text[length] != 0) {
        std::abort();
    }
    parcel.setDataPosition(position);
    readValue<String16, &Parcel::readString16>(parcel);
    parcel.setDataPosition(position);
    readValue<std::string, &Parcel::readUtf8FromUtf16>(parcel);
    parcel.setDataPosition(position);
    readValue<std::unique_ptr<std::string>, &Parcel::readUtf8FromUtf16>(parcel);
}

void readInplace(Parcel& parcel) {
    const auto size = static_cast<size_t>(parcel.readInt32());
    const auto* const bytes = static_cast<const uint8_t*>(parcel.readInplace(size));
    if (bytes != nullptr && size > 0 && bytes[size - 1] == 0) {  // touches the last one
        parcel.errorCheck();
    }
}

void readObject(Parcel& parcel) {
    const flat_binder_object* const object = parcel.readObject(true);
    flat_binder_object copy;
    if (object != nullptr) {
        memcpy(&copy, object, sizeof(copy));
    }
}

void copyPart(Parcel& parcel) {
    Parcel copy;
    copy.writeInt32(1);
    const auto start = static_cast<size_t>(parcel.readUint32());
    copy.appendFrom(&parcel, start, static_cast<size_t>(parcel.readUint32()));
    copy.setDataPosition(0);
    copy.readStrongBinder();
    copy.hasFileDescriptors();
}

void writeObjects(Parcel& parcel) {
    parcel.writeStrongBinder(new BBinder);
    parcel.writeFileDescriptor(0);
    parcel.writeInt32(7);
}

using Operation = void (*)(Parcel&);
const Operation kOperations[] = {
        readValue<int32_t, &Parcel::readInt32>,
        readValue<int64_t, &Parcel::readInt64>,
        readValue<double, &Parcel::readDouble>,
        readValue<float, &Parcel::readFloat>,
        readValue<bool, &Parcel::readBool>,
        readValue<char16_t, &Parcel::readChar>,
        readValue<int8_t, &Parcel::readByte>,
        readValue<String8, &Parcel::readString8>,
        readValue<sp<IBinder>, &Parcel::readStrongBinder>,
        readValue<sp<IBinder>, &Parcel::readNullableStrongBinder>,
        readValue<base::unique_fd, &Parcel::readUniqueFileDescriptor>,
        readVector<int8_t, &Parcel::readByteVector>,
        readVector<uint8_t, &Parcel::readByteVector>,
        readVector<int32_t, &Parcel::readInt32Vector>,
        readVector<int64_t, &Parcel::readInt64Vector>,
        readVector<bool, &Parcel::readBoolVector>,
        readVector<String16, &Parcel::readString16Vector>,
        readVector<std::string, &Parcel::readUtf8VectorFromUtf16Vector>,
        readVector<sp<IBinder>, &Parcel::readStrongBinderVector>,
        readTexts,
        readInplace,
        readObject,
        copyPart,
        writeObjects,
        [](Parcel& parcel) { parcel.readCString(); },
        [](Parcel& parcel) { parcel.readFileDescriptor(); },
        [](Parcel& parcel) { parcel.readExceptionCode(); },
        [](Parcel& parcel) { binder::Status().readFromParcel(parcel); },
        [](Parcel& parcel) { parcel.enforceInterface(String16("kelvo")); },
        [](Parcel& parcel) { parcel.hasFileDescriptors(); },
        [](Parcel& parcel) { parcel.closeFileDescriptors(); },
        [](Parcel& parcel) { parcel.writeInt64(-1); },
        [](Parcel& parcel) { parcel.writeByteVector(std::vector<int8_t>(3)); },
        [](Parcel& parcel) { parcel.setDataSize(parcel.dataPosition()); },
        [](Parcel& parcel) { parcel.setDataPosition(parcel.dataPosition() + 4); },
        // A position is the reader's own doing; one near the end of memory would be written to.
        [](Parcel& parcel) {
            parcel.setDataPosition(std::max(parcel.dataPosition(), size_t{4}) - 4);
        },
        [](Parcel& parcel) { parcel.setDataPosition(0); },
};

/**
 * A driver lets nobody choose what stands in an object: where one can be, there is a binder of this
 * process, none, or a descriptor that is closed. Handles would need a driver.
 */
void makeGenuine(std::vector<uint8_t>& data, size_t offset, const sp<BBinder>& binder) {
    flat_binder_object object;
    if (offset > data.size() || data.size() - offset < sizeof(object)) {
        return;
    }
    memcpy(&object, data.data() + offset, sizeof(object));
    const bool present = (object.flags & 1) != 0;
    const bool descriptor = (object.flags & 2) != 0;
    object.hdr.type = descriptor ? BINDER_TYPE_FD : BINDER_TYPE_BINDER;
    object.binder = present ? reinterpret_cast<uintptr_t>(binder->getWeakRefs()) : 0;
    object.cookie = present ? reinterpret_cast<uintptr_t>(binder.get()) : 0;
    if (descriptor) {
        object.handle = UINT32_MAX;
    }
    memcpy(data.data() + offset, &object, sizeof(object));
}

void noteRelease(Parcel*, const uint8_t*, size_t, const binder_size_t*, size_t, void* cookie) {
    ++*static_cast<int*>(cookie);
}

/** Nothing that is lent, memory or binder, may be kept or given back twice. */
void drive(std::span<const uint8_t> operations, std::vector<uint8_t> data,
           const std::vector<binder_size_t>& objects) {
    const sp<BBinder> binder = new BBinder;
    int releases = 0;
    for (const binder_size_t offset : objects) {
        makeGenuine(data, offset, binder);
    }
    {
        Parcel parcel;
        lend(parcel, data, objects, noteRelease, &releases);
        for (const uint8_t operation : operations) {
            kOperations[operation % std::size(kOperations)](parcel);
        }
    }
    if (releases != 1 || binder->getStrongCount() != 1) {
        std::abort();
    }
}

}  // namespace

void fuzzParcel(Bytes data) {
    Input input(data);
    const std::span<const uint8_t> operations = input.take(input.byte());
    std::vector<binder_size_t> objects(input.byte() % 8);
    for (binder_size_t& offset : objects) {
        offset = input.byte() * 2;
    }
    drive(operations, {input.rest().begin(), input.rest().end()}, objects);
}
