#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "dxf/file_identity.h"

namespace torva::dxf {

/// Whether the file that is replaced stays beside the new one, with ".bak" for its extension.
enum class Backup { none, keep };

/// What is done when no file can be made beside the one that is replaced: nothing, or that one is overwritten, which may
/// leave it half written when the device fails.
enum class ClosedFolder { refuse, writeInPlace };

/// A path with all links at its end followed, also when the file does not exist yet.
std::string resolvedPath(const std::string& path);

/// Writes a file from pieces: beside `path`, synced, then renamed there, so that at every moment the whole old or the whole
/// new file is at `path`. Permissions of a replaced file are kept, its owner as far as the system allows. A device or pipe
/// is written directly.
/// @return identity of the new file; fileNotWritable, diskFull, isDirectory, with nothing changed or left behind
Result<FileIdentity> replaceFile(const std::string& path, const std::vector<std::string_view>& pieces, Backup backup,
                                 ClosedFolder closedFolder = ClosedFolder::refuse);

}  // namespace torva::dxf
