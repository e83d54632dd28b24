// Replacing a file's content so that a reader finds the old one or the new one, whatever
// happens meanwhile: a full disk, a kill, a power cut. Any thread, one at a time for a file.
#pragma once

#include <string>
#include <string_view>

namespace snmpmain {

enum class FileResult {
    kReplaced,
    kCannotOpen,  // or not be made its owner's alone
    kCannotWrite  // no room, or an error of the disk; the old content is still there
};

// Replaces the content of a file that is for its owner alone (mode 0600): with a new file beside it
// that takes its place, or, where the process may not make files in that folder, within the file
// itself, once the disk has the room. A link is followed; the file's owner stays. errno tells why
// it failed. Any thread; not two of one file at a time.
FileResult ReplaceFile(const std::string& path, std::string_view text);

}  // namespace snmpmain
