#include "catfs/driver/Platform.h"

#include "catfs/CatDriver.h"
#include "catfs/driver/CatalogText.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace catfs {

void UniqueFd::reset(int fd)
{
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = fd;
}

bool EqualNoCase(std::string_view a, std::string_view b)
{
    if (a.size() != b.size())
        return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (FoldCase(a[i]) != FoldCase(b[i]))
            return false;
    }
    return true;
}

namespace {

bool IsSeparator(char c)
{
    return c == '/' || c == '\\';
}

void SplitComponents(std::string_view path, std::vector<std::string_view>& components)
{
    size_t i = 0;
    while (i < path.size()) {
        while (i < path.size() && IsSeparator(path[i]))
            ++i;
        const size_t start = i;
        while (i < path.size() && !IsSeparator(path[i]))
            ++i;
        if (i > start)
            components.push_back(path.substr(start, i - start));
    }
}

bool Exists(const std::string& osPath)
{
    struct stat st;
    return ::lstat(osPath.c_str(), &st) == 0;
}

// The entry of `directory` whose name equals `name` without regard to case;
// the smallest such name when several differ only in case. Empty if none.
std::string FindNoCase(const std::string& directory, std::string_view name)
{
    DIR* dir = ::opendir(directory.empty() ? "/" : directory.c_str());
    if (!dir)
        return {};
    std::string best;
    while (const dirent* entry = ::readdir(dir)) {
        const std::string_view candidate(entry->d_name);
        if (EqualNoCase(candidate, name) && (best.empty() || candidate < best))
            best = candidate;
    }
    ::closedir(dir);
    return best;
}

// A disk path, or the catalog part of an entry path.
bool NormaliseFilePath(std::string_view path, std::string& canonical)
{
    canonical.clear();
    if (path.empty())
        return false;
    std::vector<std::string_view> parts;
    std::string base;
    if (!IsSeparator(path[0])) {
        char cwd[4096];
        if (!::getcwd(cwd, sizeof(cwd)))
            return false;
        base = cwd;
        SplitComponents(base, parts);
    }
    std::vector<std::string_view> given;
    SplitComponents(path, given);
    for (std::string_view part : given) {
        if (part == ".")
            continue;
        if (part == "..") {
            if (!parts.empty())
                parts.pop_back();
            continue;
        }
        parts.push_back(part);
    }
    if (parts.empty()) {
        canonical = "\\";
        return true;
    }
    for (std::string_view part : parts) {
        canonical += '\\';
        canonical += part;
    }
    return true;
}

} // namespace

bool NormalisePath(const char* path, std::string& canonical)
{
    canonical.clear();
    if (!path)
        return false;
    // The entry part behind "::" is normalised on its own, the way catalog
    // names are, so that "." and ".." never reach across the "::" into the
    // file system and every spelling of an entry is the name it is listed by.
    const std::string_view whole(path);
    const size_t separator = whole.find("::");
    if (!NormaliseFilePath(whole.substr(0, separator), canonical))
        return false;
    if (separator != std::string_view::npos) {
        std::string entry(whole.substr(separator + 2));
        entry.resize(CanonicaliseEntryName(entry.data(), entry.size()));
        canonical += "::";
        canonical += entry;
    }
    return true;
}

std::string ResolveOnDisk(const std::string& canonical)
{
    std::string exact = canonical;
    for (char& c : exact) {
        if (c == '\\')
            c = '/';
    }
    if (exact.empty() || Exists(exact))
        return exact;

    std::vector<std::string_view> parts;
    SplitComponents(exact, parts);
    std::string resolved;
    bool searching = true;
    for (std::string_view part : parts) {
        std::string next = resolved + "/" + std::string(part);
        if (searching && !Exists(next)) {
            const std::string match = FindNoCase(resolved, part);
            if (!match.empty())
                next = resolved + "/" + match;
            else
                searching = false; // nothing below a missing directory exists
        }
        resolved = std::move(next);
    }
    return resolved.empty() ? std::string("/") : resolved;
}

std::string DirectoryOf(const std::string& osPath)
{
    const size_t slash = osPath.rfind('/');
    if (slash == std::string::npos)
        return ".";
    if (slash == 0)
        return "/";
    return osPath.substr(0, slash);
}

uint32_t ErrnoToCode(int error)
{
    switch (error) {
    case EACCES:
    case EPERM:
    case EROFS:
    case EAGAIN:
        return CatErrAccessDenied;
    case EEXIST:
        return CatErrFileExists;
    case ENOENT:
    case ENOTDIR:
        return CatErrFileNotFound;
    case ENOMEM:
        return CatErrNoMemory;
    default:
        return CatErrOpenUnknown;
    }
}

UniqueFd OpenLocked(const std::string& osPath, int flags, Sharing sharing, uint32_t& code)
{
    code = CatErrNone;
    UniqueFd fd(::open(osPath.c_str(), flags | O_CLOEXEC, 0600));
    if (!fd.valid()) {
        code = ErrnoToCode(errno);
        return fd;
    }
    struct stat st;
    if (::fstat(fd.get(), &st) != 0) {
        code = ErrnoToCode(errno);
        return UniqueFd();
    }
    if (S_ISDIR(st.st_mode)) {
        // A directory is no file to open, as on systems that refuse it.
        code = CatErrAccessDenied;
        return UniqueFd();
    }
    struct flock lock
    {
    };
    lock.l_type = sharing == Sharing::Exclusive ? F_WRLCK : F_RDLCK;
    lock.l_whence = SEEK_SET;
    if (::fcntl(fd.get(), F_OFD_SETLK, &lock) != 0) {
        code = CatErrAccessDenied;
        return UniqueFd();
    }
    return fd;
}

bool IsLockedByOther(const std::string& osPath)
{
    UniqueFd fd(::open(osPath.c_str(), O_RDONLY | O_CLOEXEC));
    if (!fd.valid())
        return false;
    struct flock lock
    {
    };
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    if (::fcntl(fd.get(), F_OFD_GETLK, &lock) != 0)
        return false;
    return lock.l_type != F_UNLCK;
}

bool WriteAllAt(int fd, const uint8_t* data, size_t count, uint64_t offset)
{
    while (count > 0) {
        const ssize_t written = ::pwrite(fd, data, count, off_t(offset));
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        if (written == 0) {
            errno = ENOSPC;
            return false;
        }
        data += written;
        count -= size_t(written);
        offset += uint64_t(written);
    }
    return true;
}

bool ReadAllAt(int fd, uint8_t* data, size_t count, uint64_t offset)
{
    while (count > 0) {
        const ssize_t got = ::pread(fd, data, count, off_t(offset));
        if (got < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        if (got == 0)
            return false;
        data += got;
        count -= size_t(got);
        offset += uint64_t(got);
    }
    return true;
}

void SyncDirectory(const std::string& directory)
{
    UniqueFd dir(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (dir.valid())
        ::fsync(dir.get());
}

uint32_t ReplaceFile(const std::string& osPath, const uint8_t* data, size_t count, mode_t mode,
                     UniqueFd* replacement, size_t totalLength)
{
    const std::string temporary = osPath + ".new";
    uint32_t code = CatErrNone;
    UniqueFd fd = OpenLocked(temporary, O_RDWR | O_CREAT, Sharing::Exclusive, code);
    if (!fd.valid())
        return code;
    if (::ftruncate(fd.get(), 0) != 0 || !WriteAllAt(fd.get(), data, count, 0) ||
        (totalLength > count && ::ftruncate(fd.get(), off_t(totalLength)) != 0) || ::fsync(fd.get()) != 0) {
        code = ErrnoToCode(errno);
        ::unlink(temporary.c_str());
        return code;
    }
    ::fchmod(fd.get(), mode & 07777);
    if (::rename(temporary.c_str(), osPath.c_str()) != 0) {
        code = ErrnoToCode(errno);
        ::unlink(temporary.c_str());
        return code;
    }
    SyncDirectory(DirectoryOf(osPath));
    if (replacement)
        *replacement = std::move(fd);
    return CatErrNone;
}

void SetFileTime(int fd, int64_t time)
{
    struct timespec times[2];
    times[0].tv_sec = time_t(time);
    times[0].tv_nsec = 0;
    times[1] = times[0];
    ::futimens(fd, times);
}

} // namespace catfs
