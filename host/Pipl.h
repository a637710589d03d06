/// Reads the property list by which a Windows module tells what it is without being run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace standin {

/// What the host needs of a property list; a property that is missing leaves its member as it is here.
struct PiplFacts {
  std::string kind;       ///< four letters as one reads them: "eFKT" for an effect
  std::string name;       ///< of the effect
  std::string category;   ///< the menu that it stands in
  std::string matchName;  ///< by which projects know it
  std::string entryName;  ///< of the exported function for 64-bit Windows
  std::optional<uint32_t> version;
  std::optional<int32_t> outFlags;
  std::optional<int32_t> outFlags2;
  int32_t propertyCount = 0;
};

/// Takes a property list apart.
/// @param bytes  the resource, little-endian, size bytes
/// @return nothing when the header is not one of a property list or a property reaches beyond the end
std::optional<PiplFacts> readPipl(const void* bytes, size_t size);

}  // namespace standin
