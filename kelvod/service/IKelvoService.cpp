#include "service/IKelvoService.h"

namespace kelvo {

DO_NOT_DIRECTLY_USE_ME_IMPLEMENT_META_INTERFACE(KelvoService, "com.zenta.kelvo.IKelvoService")

}  // namespace kelvo
