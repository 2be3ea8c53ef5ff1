#pragma once

#include <binder/IInterface.h>

namespace kelvo {

/** The daemon's binder interface; clients send it numbered transactions. */
class IKelvoService : public android::IInterface {
  public:
    DECLARE_META_INTERFACE(KelvoService)
};

/** A client's side of it; clients build their own parcels, so it adds no methods. */
class BpKelvoService : public android::BpInterface<IKelvoService> {
  public:
    explicit BpKelvoService(const android::sp<android::IBinder>& remote)
          : android::BpInterface<IKelvoService>(remote) {}
};

/** The service's side, with the dump that dumpsys asks for; always 0. */
class BnKelvoService : public android::BnInterface<IKelvoService> {
  public:
    android::status_t dump(int fd, const android::Vector<android::String16>& arguments) override;
};

}  // namespace kelvo
