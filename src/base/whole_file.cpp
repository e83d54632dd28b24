#include "src/base/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace snmpmain {
namespace {

constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

// An open file, closed at the end of its scope with errno as it was.
class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        const int error = errno;
        if (number_ >= 0) {
            ::close(number_);
        }
        errno = error;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int operator*() const {
        return number_;
    }

  private:
    int number_;
};

std::string WithoutLinks(const std::string& path) {
    char* real = ::realpath(path.c_str(), nullptr);
    std::string result = real == nullptr ? path : real;
    std::free(real);
    return result;
}

int WriteAll(int file, std::string_view text) {
    off_t at = 0;
    while (!text.empty()) {
        const ssize_t written = ::pwrite(file, text.data(), text.size(), at);
        if (written < 0 && errno != EINTR) {
            return -1;
        }
        const std::size_t count = written > 0 ? static_cast<std::size_t>(written) : 0;
        text.remove_prefix(count);
        at += static_cast<off_t>(count);
    }
    return 0;
}

// A file of that name is left over from a write that was cut short.
int OpenNew(const std::string& path) {
    const auto open = [&] {
        return ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW,
                      kOwnerOnly);
    };
    const int file = open();
    return file < 0 && errno == EEXIST && ::unlink(path.c_str()) == 0 ? open() : file;
}

// Gives a new file the owner of the one that it replaces. Returns 0, or -1 when that is not
// allowed.
int TakeOverOwner(int file, const std::string& replaced) {
    struct stat old {};
    struct stat now {};
    if (::stat(replaced.c_str(), &old) != 0 || ::fstat(file, &now) != 0 ||
        (old.st_uid == now.st_uid && old.st_gid == now.st_gid)) {
        return 0;
    }
    return ::fchown(file, old.st_uid, old.st_gid);
}

// The name of the file is on the disk only when its folder is.
void FlushFolderOf(const std::string& path) {
    const std::size_t end = path.rfind('/');
    const std::string folder = end == path.npos ? "." : path.substr(0, end + 1);
    const Descriptor file(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (*file >= 0) {
        ::fsync(*file);
    }
}

int FillNew(int file, const std::string& path, std::string_view text) {
    return ::fchmod(file, kOwnerOnly) == 0 && WriteAll(file, text) == 0 && ::fsync(file) == 0 &&
                   TakeOverOwner(file, path) == 0
               ? 0
               : -1;
}

FileResult PutNewInPlace(int file, const std::string& fresh, const std::string& path,
                         std::string_view text) {
    if (FillNew(file, path, text) != 0 || ::rename(fresh.c_str(), path.c_str()) != 0) {
        const int error = errno;
        ::unlink(fresh.c_str());
        errno = error;
        return FileResult::kCannotWrite;
    }
    FlushFolderOf(path);
    return FileResult::kReplaced;
}

// Blank lines take the place of what a longer text has left, until the file is cut: one write
// changes all that a reader sees.
FileResult Overwrite(const std::string& path, std::string_view text) {
    const Descriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
    struct stat old {};
    if (*file < 0 || ::fchmod(*file, kOwnerOnly) != 0 || ::fstat(*file, &old) != 0) {
        return FileResult::kCannotOpen;
    }
    const auto length = static_cast<off_t>(text.size());
    if (::fallocate(*file, FALLOC_FL_KEEP_SIZE, 0, length) != 0 && errno != EOPNOTSUPP &&
        errno != ENOSYS) {
        return FileResult::kCannotWrite;
    }
    std::string padded(text);
    if (old.st_size > length) {
        padded.append(static_cast<std::size_t>(old.st_size - length), '\n');
    }
    return WriteAll(*file, padded) == 0 && ::ftruncate(*file, length) == 0 && ::fsync(*file) == 0
               ? FileResult::kReplaced
               : FileResult::kCannotWrite;
}

bool IsForbidden(int error) {
    return error == EACCES || error == EPERM || error == EROFS;
}

}  // namespace

FileResult ReplaceFile(const std::string& path, std::string_view text) {
    const std::string target = WithoutLinks(path);
    const std::string fresh = target + ".new";
    const Descriptor file(OpenNew(fresh));
    if (*file < 0) {
        return IsForbidden(errno) ? Overwrite(target, text)
               : errno == ENOENT  ? FileResult::kCannotOpen
                                  : FileResult::kCannotWrite;
    }
    const FileResult result = PutNewInPlace(*file, fresh, target, text);
    return result == FileResult::kCannotWrite && IsForbidden(errno) ? Overwrite(target, text)
                                                                    : result;
}

}  // namespace snmpmain
