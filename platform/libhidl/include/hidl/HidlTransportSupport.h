#pragma once

#include <android/hidl/base/1.0/IBase.h>

#include <cstddef>

namespace android::hardware {

/**
 * How many threads (at least 1) serve the calls to this process. `callerWillJoin`: one of them is
 * the caller, by joining the pool of binder; the others start now or when they are needed. Before
 * the first call comes in. The pool is the one of all binders of the process.
 */
void configureRpcThreadpool(size_t maxThreads, bool callerWillJoin);

/** Whether both are the same object: two proxies of one object are. */
bool interfacesEqual(const sp<hidl::base::V1_0::IBase>& left,
                     const sp<hidl::base::V1_0::IBase>& right);

}  // namespace android::hardware
