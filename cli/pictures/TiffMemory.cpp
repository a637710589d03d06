#include "cli/pictures/TiffMemory.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <new>

namespace cli {
namespace {

TiffMemory& memoryOf(thandle_t handle) {
  return *static_cast<TiffMemory*>(handle);
}

tmsize_t readBytes(thandle_t handle, void* to, tmsize_t count) {
  TiffMemory& memory = memoryOf(handle);
  if (memory.at >= memory.size() || count <= 0) return 0;
  const uint64_t got = std::min<uint64_t>(static_cast<uint64_t>(count), memory.size() - memory.at);
  const uint8_t* const from = memory.writing ? memory.out.data() : memory.in.data();
  std::memcpy(to, from + memory.at, got);
  memory.at += got;
  return static_cast<tmsize_t>(got);
}

tmsize_t writeBytes(thandle_t handle, void* from, tmsize_t count) {
  TiffMemory& memory = memoryOf(handle);
  if (!memory.writing || count <= 0) return 0;
  const uint64_t end = memory.at + static_cast<uint64_t>(count);
  try {
    if (memory.out.size() < end) memory.out.resize(end);
  } catch (const std::bad_alloc&) {
    return 0;  // the library takes it for a full disk; no exception may cross it
  }
  std::memcpy(memory.out.data() + memory.at, from, static_cast<std::size_t>(count));
  memory.at = end;
  return count;
}

toff_t seekTo(thandle_t handle, toff_t offset, int from) {
  TiffMemory& memory = memoryOf(handle);
  memory.at = offset + (from == SEEK_CUR ? memory.at : from == SEEK_END ? memory.size() : 0);
  return memory.at;
}

int closeNothing(thandle_t) {
  return 0;
}

toff_t sizeOf(thandle_t handle) {
  return memoryOf(handle).size();
}

// The format is the library's own.
[[gnu::format(printf, 4, 0)]] int keepComplaint(TIFF*, void* to, const char*, const char* format, va_list arguments) {
  auto& complaint = static_cast<TiffMemory*>(to)->complaint;
  std::vsnprintf(complaint.data(), complaint.size(), format, arguments);
  return 1;
}

int ignoreWarning(TIFF*, void*, const char*, const char*, va_list) {
  return 1;
}

}  // namespace

Tiff openTiffMemory(TiffMemory& memory, const char* mode) {
  TIFFOpenOptions* const options = TIFFOpenOptionsAlloc();
  if (options == nullptr) throw std::bad_alloc();
  TIFFOpenOptionsSetErrorHandlerExtR(options, keepComplaint, &memory);
  TIFFOpenOptionsSetWarningHandlerExtR(options, ignoreWarning, &memory);
  // Nothing is mapped: the library asks for that by neither function where both are missing.
  Tiff tiff(TIFFClientOpenExt("the file", mode, &memory, readBytes, writeBytes, seekTo, closeNothing, sizeOf, nullptr,
                              nullptr, options));
  TIFFOpenOptionsFree(options);
  return tiff;
}

std::string tiffComplaint(const TiffMemory& memory) {
  std::string text = memory.complaint.data();
  std::replace(text.begin(), text.end(), '\n', ' ');
  while (!text.empty() && (text.back() == ' ' || text.back() == '.')) text.pop_back();
  return text.empty() ? "the file makes no sense" : text;
}

}  // namespace cli
