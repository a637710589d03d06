/* A module in plain C that knows of the interface only what it needs, by places in the records: it copies its layer by
 * the host's copy and swaps red and blue on its own. */
#include <stddef.h>
#include <stdint.h>
#include <string.h>

typedef int32_t (*CopyFunction)(void* effect_ref, void* source, void* target, void* source_rect, void* target_rect);

enum { kGlobalSetup = 1, kParamsSetup = 4, kRender = 11 };
enum {
  kInUtils = 176,
  kInEffectRef = 184,
  kOutNumParams = 48,
  kUtilsCopy = 64,
  kParamUnion = 56,
  kWorldData = 24,
  kWorldRowBytes = 32,
  kWorldWidth = 36,
  kWorldHeight = 40
};

#ifdef _WIN32
#define EXPORTED __declspec(dllexport)
#else
#define EXPORTED __attribute__((visibility("default")))
#endif

static void* pointerAt(const void* record, int place) {
  void* value;
  memcpy(&value, (const char*)record + place, sizeof value);
  return value;
}

static int32_t numberAt(const void* record, int place) {
  int32_t value;
  memcpy(&value, (const char*)record + place, sizeof value);
  return value;
}

static int32_t render(void* in_data, void* layer, void* output) {
  CopyFunction copy;
  void* address = pointerAt(pointerAt(in_data, kInUtils), kUtilsCopy);
  memcpy(&copy, &address, sizeof copy);
  int32_t err = copy(pointerAt(in_data, kInEffectRef), layer, output, 0, 0);
  if (err != 0) return err;
  for (int32_t y = 0; y < numberAt(output, kWorldHeight); ++y) {
    unsigned char* row =
        (unsigned char*)pointerAt(output, kWorldData) + (ptrdiff_t)y * numberAt(output, kWorldRowBytes);
    for (int32_t x = 0; x < numberAt(output, kWorldWidth); ++x) {
      unsigned char red = row[4 * x + 1];
      row[4 * x + 1] = row[4 * x + 3];
      row[4 * x + 3] = red;
    }
  }
  return 0;
}

EXPORTED int32_t xMain(int32_t cmd, void* in_data, void* out_data, void** params, void* output, void* extra);

int32_t xMain(int32_t cmd, void* in_data, void* out_data, void** params, void* output, void* extra) {
  const uint32_t version = 1;
  const int32_t count = 1;
  (void)extra;
  switch (cmd) {
    case kGlobalSetup:
      memcpy(out_data, &version, sizeof version);
      return 0;
    case kParamsSetup:
      memcpy((char*)out_data + kOutNumParams, &count, sizeof count);
      return 0;
    case kRender:
      return render(in_data, (char*)params[0] + kParamUnion, output);
    default:
      return 0;
  }
}
