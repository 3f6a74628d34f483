#pragma once

namespace vesko {

/// Whether this process runs for a development tool instead of a person: XCODE_RUNNING_FOR_PLAYGROUNDS is "1"
/// or XCTestConfigurationFilePath is set at all. Such a process reads no caches at construction, keeps the
/// demoted-paths file, starts no scan by itself, evaluates no alerts and leaves the language model alone.
/// The environment is read at each call.
bool isDevelopmentHost() noexcept;

} // namespace vesko
