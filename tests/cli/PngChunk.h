/// Pieces of a PNG made by hand.
#pragma once

#include <zlib.h>

#include <cstdint>
#include <string>

inline std::string bigEndian(uint32_t number) {
  return {static_cast<char>(number >> 24), static_cast<char>(number >> 16), static_cast<char>(number >> 8),
          static_cast<char>(number)};
}

inline std::string pngChunk(const std::string& kind, const std::string& data) {
  const std::string body = kind + data;
  const uLong sum = crc32(0, reinterpret_cast<const Bytef*>(body.data()), static_cast<uInt>(body.size()));
  return bigEndian(static_cast<uint32_t>(data.size())) + body + bigEndian(static_cast<uint32_t>(sum));
}
