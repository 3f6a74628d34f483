#pragma once

namespace vesko {

/// Opens the place where access to the person's files is given: the privacy settings on macOS, the home
/// folder in the file manager on Linux. Does nothing when that fails. Main thread.
void openDiskAccessSettings();

} // namespace vesko
