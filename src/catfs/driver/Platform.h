// The operating-system layer of the driver on Linux: path normalising,
// case-insensitive path resolution, locked opens, errno mapping, forcing to
// disk, atomic file replacement and file times.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace catfs {

// An owned file descriptor.
class UniqueFd
{
public:
    UniqueFd() = default;
    explicit UniqueFd(int fd) : m_fd(fd) {}
    ~UniqueFd() { reset(); }
    UniqueFd(UniqueFd&& other) noexcept : m_fd(other.release()) {}
    UniqueFd& operator=(UniqueFd&& other) noexcept
    {
        if (this != &other)
            reset(other.release());
        return *this;
    }
    UniqueFd(const UniqueFd&) = delete;
    UniqueFd& operator=(const UniqueFd&) = delete;

    int get() const { return m_fd; }
    bool valid() const { return m_fd >= 0; }
    int release()
    {
        const int fd = m_fd;
        m_fd = -1;
        return fd;
    }
    void reset(int fd = -1);

private:
    int m_fd = -1;
};

// ASCII case folding, as the game's own tools compare names.
inline char FoldCase(char c)
{
    return (c >= 'A' && c <= 'Z') ? char(c + ('a' - 'A')) : c;
}
bool EqualNoCase(std::string_view a, std::string_view b);

// The canonical form of a path: absolute, "." and ".." resolved, components
// joined by backslashes, starting with a backslash. Forward slashes and
// backslashes both separate components on input. False for an empty path or
// when the current directory cannot be had.
bool NormalisePath(const char* path, std::string& canonical);

// The operating-system path (forward slashes) of a canonical path. When the
// exact path does not exist, every component is looked up without regard to
// case; a component that matches nothing is kept as given, so a file to be
// created keeps the caller's spelling inside resolved directories.
std::string ResolveOnDisk(const std::string& canonical);

// Directory part and file name of an operating-system path.
std::string DirectoryOf(const std::string& osPath);

// The driver code of an errno value from opening or reading a file.
uint32_t ErrnoToCode(int error);

enum class Sharing
{
    Shared,
    Exclusive
};

// Opens a file and takes an open-file-description lock on all of it: shared
// for readers, exclusive for writers and catalogs. Another process that holds
// a conflicting lock makes the open fail with "access denied". On failure the
// result is invalid and `code` holds the driver code.
UniqueFd OpenLocked(const std::string& osPath, int flags, Sharing sharing, uint32_t& code);

// True when another open file description holds a lock on the file.
bool IsLockedByOther(const std::string& osPath);

// Writes all bytes at `offset`; false with errno set on failure.
bool WriteAllAt(int fd, const uint8_t* data, size_t count, uint64_t offset);
// Reads exactly `count` bytes at `offset`; false on failure or short read.
bool ReadAllAt(int fd, uint8_t* data, size_t count, uint64_t offset);

// Forces a directory's entries (a rename, a new or removed file) to disk.
void SyncDirectory(const std::string& directory);

// Replaces `osPath` with a file holding `data`: the bytes go to a temporary
// file beside it, which is forced to disk and renamed over the target, so the
// target holds either its old or its new content at every moment. The new
// file is locked exclusively and gets `mode`; the open descriptor is handed
// back in `replacement` when the caller wants to keep the lock. A
// `totalLength` beyond `count` extends the file with zeros (sparse, so it
// costs no writing).
uint32_t ReplaceFile(const std::string& osPath, const uint8_t* data, size_t count, mode_t mode,
                     UniqueFd* replacement, size_t totalLength = 0);

// Sets access and modification time of an open file; failures are ignored.
void SetFileTime(int fd, int64_t time);

} // namespace catfs
