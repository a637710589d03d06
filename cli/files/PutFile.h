/// Puts a whole file in its place, or leaves what stood there.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>

namespace cli {

/// Checks, before any work is done, that a file can be written there: its folder, what stands in its place.
/// @throws UserError naming the file and what is in the way
void checkPlace(const std::filesystem::path& file);

/// Writes the file. A plain file is made under another name beside its place, read back and compared, and only then
/// renamed, so that what stood there is lost only to a whole new file; it keeps the mode, and if the system lets us the
/// owner, of what stood there. A symbolic link is followed and stays. What is no plain file (a pipe, a device) is
/// written into.
///
/// The name in the making is ".vindrel-", 13 letters and digits drawn at random, and ".part"; such a file that nobody
/// is writing is a leftover of a crash.
/// While a file is in the making it is locked, so that it can be told from a leftover.
/// @throws UserError naming the file and the reason
void putFile(const std::filesystem::path& file, std::span<const uint8_t> content);

/// Removes what writers that were killed have left in the folder: files with a name of the making that nobody holds.
void removeLeftovers(const std::filesystem::path& folder);

}  // namespace cli
