#include "enrichment/PlatformLanguageModel.h"
#include "platform/qt/ModelServer.h"

namespace vesko {

std::shared_ptr<LanguageModel> platformLanguageModel() {
    return std::make_shared<ModelServer>(VESKO_MODEL_SERVER);
}

} // namespace vesko
