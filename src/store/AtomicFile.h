#pragma once

#include "FileOps.h"
#include "FileWriter.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

namespace store {

// Replaces `path` with `bytes` so that a crash at any moment leaves either the
// old or the new file: temporary file in the same folder, fsync, rename over
// the target, fsync of the folder. Throws FileError; before the rename the
// target is untouched and the temporary file removed. A failed fsync of the
// folder after the rename is reported too, although the new contents are then
// already in place. When `path` is a symbolic link, the file it points at is
// replaced (temporary file in that file's folder) and the link stays as it is.
// `beforeReplacing`, when given, runs between the fsync of the temporary
// file and the rename; what it throws is thrown on, after the temporary file
// is removed.
void writeFileAtomically(const std::filesystem::path& path, std::span<const std::uint8_t> bytes,
                         FileOps& ops = systemFileOps(), const BeforeReplacing& beforeReplacing = {});

// Gives the file at the end of `path`'s symbolic links the second name
// `name` and syncs the folder of `name`, so that the name outlasts a crash.
// Throws FileError and leaves no name; a file system without hard links
// refuses with EPERM, a name on another file system with EXDEV.
void linkDurably(const std::filesystem::path& path, const std::filesystem::path& name,
                 FileOps& ops = systemFileOps());

// The path a chain of symbolic links ends at (`path` itself when it is no
// link), whether that file exists or not. Throws FileError (ELOOP) for a
// chain that loops.
std::filesystem::path followLinks(const std::filesystem::path& path);

// True when `candidate` is a temporary file that an atomic write of `target`
// creates (left behind only when a process dies mid-write).
bool isTemporaryFileOf(const std::filesystem::path& target, const std::filesystem::path& candidate);

// True when `candidate` is a temporary file of an atomic write whose process
// has ended, so that nobody will finish or remove it.
bool isOrphanedTemporaryFile(const std::filesystem::path& candidate);

} // namespace store
