#pragma once

namespace vesko {

/// Which of a file's dates tells its age.
enum class AgeMetric { modification, lastAccess };

} // namespace vesko
