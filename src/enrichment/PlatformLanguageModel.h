#pragma once
#include "enrichment/LanguageModel.h"
#include <memory>

namespace vesko {

/// The language model of this system, one that is unavailable where there is none. The platform layer
/// implements it. Made before it is known whether there is a model at all: nothing is opened or loaded until
/// somebody asks. Main thread, with the loop's application object alive for as long as the model is.
std::shared_ptr<LanguageModel> platformLanguageModel();

} // namespace vesko
