#include "enrichment/PlatformLanguageModel.h"
#ifdef VESKO_ON_DEVICE_MODEL
#include "platform/macos/OnDeviceLanguageModel.h"
#else
#include "enrichment/UnavailableLanguageModel.h"
#endif

namespace vesko {

std::shared_ptr<LanguageModel> platformLanguageModel() {
#ifdef VESKO_ON_DEVICE_MODEL
    return std::make_shared<OnDeviceLanguageModel>();
#else
    return std::make_shared<UnavailableLanguageModel>();
#endif
}

} // namespace vesko
