/// A whole file in memory.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace cli {

/// "'shot/in.png'", for messages.
std::string quoted(const std::filesystem::path& file);

/// The names of the plain files in the file's folder, in order; for proposals where a name was misspelt.
std::vector<std::string> namesBeside(const std::filesystem::path& file);

/// Reads a plain file, following links. Pipes, devices and sockets are refused unread: they may never end.
/// @param what  what the file should be, for messages: "picture", "preset"
/// @param most  bytes; a longer file is refused before any memory is taken
/// @throws UserError naming the file: missing (with the nearest name beside it), a folder, no plain file, no
///         permission, too long, an error while reading
std::vector<uint8_t> readFile(const std::filesystem::path& file, const std::string& what, uint64_t most);

}  // namespace cli
