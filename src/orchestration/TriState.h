#pragma once

namespace vesko {

/// How much of a list of items is selected.
enum class TriState { off, mixed, on };

} // namespace vesko
