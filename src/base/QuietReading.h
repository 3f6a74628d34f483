#pragma once

/// Looking at files must change nothing: neither their dates of access, by which people and this program tell
/// what is in use, nor where they are. What a cloud service keeps elsewhere shows on this machine as a
/// placeholder, a file or folder without its content, which the system fetches when somebody reads it. The
/// platform layer implements this.
namespace vesko {

/// From now on reading leaves no access dates where the system can do that for a whole process, and has no
/// placeholder fetched: who reads one is refused (EDEADLK), as with anything that can't be read. Counts for
/// all threads and for the tools that are started. Called once, at the program's start. Does nothing on
/// Linux, where there are no placeholders and an access date is a matter of each handle.
void readQuietly() noexcept;

/// While one of these lives, its thread lets the system fetch placeholders again. For removing alone: a
/// folder has to be looked into before it can go. Ends on the thread that made it.
class PlaceholderFetching {
public:
    PlaceholderFetching() noexcept;
    ~PlaceholderFetching();
    PlaceholderFetching(const PlaceholderFetching&) = delete;
    PlaceholderFetching& operator=(const PlaceholderFetching&) = delete;

private:
    [[maybe_unused]] int before_ = 0; ///< what the thread did until now
};

} // namespace vesko
