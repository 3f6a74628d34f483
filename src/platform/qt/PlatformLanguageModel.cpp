#include "enrichment/PlatformLanguageModel.h"
#include "enrichment/UnavailableLanguageModel.h"

namespace vesko {

std::shared_ptr<LanguageModel> platformLanguageModel() {
    return std::make_shared<UnavailableLanguageModel>();
}

} // namespace vesko
