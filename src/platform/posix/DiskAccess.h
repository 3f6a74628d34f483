#pragma once

namespace vesko {

/// Whether this process may read the person's files: on macOS the protected privacy database is readable, the
/// one test that the system offers; on Linux the home folder can be listed and written. Asks the file system
/// a question or two, on the main thread at the start and when the person asks again.
bool hasFullDiskAccess() noexcept;

} // namespace vesko
