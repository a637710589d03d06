/// The utilities: the table that gathers the callbacks, the C library as the host lends it, and the host's paths.
#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "host/HostState.h"
#include "host/Refusals.h"

namespace standin {

namespace {

std::string modulePath(const HostState& host) {
  if (host.settings.modulePath) return *host.settings.modulePath;
  return host.module == nullptr ? std::string() : host.module->path();
}

// The text with its zero, cut so that both fit into the place that the interface promises.
template <class Character>
void writePath(const std::string& path, void* data) {
  const size_t length = std::min<size_t>(path.size(), static_cast<size_t>(AEFX_MAX_PATH) - 1);
  auto* to = static_cast<Character*>(data);
  for (size_t i = 0; i < length; ++i) to[i] = static_cast<Character>(static_cast<unsigned char>(path[i]));
  to[length] = 0;
}

PF_Err getPlatformData(PF_ProgPtr ref, PF_PlatDataID which, void* data) {
  HostState* host = HostState::current();
  if (host == nullptr || data == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  host->checkRef(ref, "get_platform_data");
  const std::string text = "selector " + std::to_string(which);
  if (const auto fault = host->fault("get_platform_data")) return host->note("get_platform_data", text, *fault);
  PF_Err result = PF_Err_NONE;
  switch (which) {
    case PF_PlatData_MAIN_WND:
      std::memcpy(data, &host->settings.mainWindow, sizeof(void*));
      break;
    case PF_PlatData_EXE_FILE_PATH_DEPRECATED:
    case PF_PlatData_RES_FILE_PATH_DEPRECATED:
      writePath<A_char>(modulePath(*host), data);
      break;
    case PF_PlatData_EXE_FILE_PATH_W:
    case PF_PlatData_RES_FILE_PATH_W:
      writePath<A_UTF16Char>(modulePath(*host), data);
      break;
    case PF_PlatData_RES_DLLINSTANCE: {
      void* handle = host->module == nullptr ? nullptr : host->module->systemHandle();
      std::memcpy(data, &handle, sizeof handle);
      break;
    }
    default:
      host->complain(Matter::kWrongArgument, "get_platform_data of " + text);
      result = PF_Err_BAD_CALLBACK_PARAM;
  }
  return host->note("get_platform_data", text, result);
}

PF_Err applicationCall(PF_ProgPtr, A_long, ...) {
  noteRefusal("app");
  return PF_Err_INVALID_CALLBACK;
}

// The format is the effect's, at run time; whoever calls this by its name is checked.
[[gnu::format(printf, 2, 3)]] int formatted(A_char* buffer, const A_char* format, ...) {
  // The interface's own form has no size: the caller answers for the room.
  va_list arguments;
  va_start(arguments, format);
  const int length = std::vsprintf(buffer, format, arguments);
  va_end(arguments);
  return length;
}

PF_ANSICallbacks ansiTable() {
  PF_ANSICallbacks table{};
  table.atan = [](double x) { return std::atan(x); };
  table.atan2 = [](double y, double x) { return std::atan2(y, x); };
  table.ceil = [](double x) { return std::ceil(x); };
  table.cos = [](double x) { return std::cos(x); };
  table.exp = [](double x) { return std::exp(x); };
  table.fabs = [](double x) { return std::fabs(x); };
  table.floor = [](double x) { return std::floor(x); };
  table.fmod = [](double x, double y) { return std::fmod(x, y); };
  table.hypot = [](double x, double y) { return std::hypot(x, y); };
  table.log = [](double x) { return std::log(x); };
  table.log10 = [](double x) { return std::log10(x); };
  table.pow = [](double x, double y) { return std::pow(x, y); };
  table.sin = [](double x) { return std::sin(x); };
  table.sqrt = [](double x) { return std::sqrt(x); };
  table.tan = [](double x) { return std::tan(x); };
  table.sprintf = formatted;
  table.strcpy = [](A_char* to, const A_char* from) { return std::strcpy(to, from); };
  table.asin = [](double x) { return std::asin(x); };
  table.acos = [](double x) { return std::acos(x); };
  return table;
}

PF_UtilCallbacks makeUtilTable() {
  PF_UtilCallbacks table{};
  table.begin_sampling = beginOrEndSampling;
  table.subpixel_sample = sampling8Suite()->subpixel_sample;
  table.area_sample = sampling8Suite()->area_sample;
  table.end_sampling = beginOrEndSampling;
  table.composite_rect = compositeRect;
  table.blend = blend;
  table.convolve = convolve;
  table.copy = copy;
  table.fill = fill8;
  table.gaussian_kernel = refused<"gaussian_kernel">;
  table.iterate = iterate8Suite()->iterate;
  table.premultiply = premultiply;
  table.premultiply_color = premultiplyColor8;
  table.new_world = newWorld1;
  table.dispose_world = disposeWorld1;
  table.iterate_origin = iterate8Suite()->iterate_origin;
  table.iterate_lut = iterate8Suite()->iterate_lut;
  table.transfer_rect = transfer;
  table.transform_world = transformWorld;
  table.host_new_handle = newHandle;
  table.host_lock_handle = lockHandle;
  table.host_unlock_handle = unlockHandle;
  table.host_dispose_handle = disposeHandle;
  table.get_callback_addr = refused<"get_callback_addr">;
  table.app = applicationCall;
  table.ansi = ansiTable();
  table.colorCB = colorCallbacks();
  table.get_platform_data = getPlatformData;
  table.host_get_handle_size = handleSize;
  table.iterate_origin_non_clip_src = iterate8Suite()->iterate_origin_non_clip_src;
  table.iterate_generic = iterate8Suite()->iterate_generic;
  table.host_resize_handle = resizeHandle;
  table.subpixel_sample16 = sampling16Suite()->subpixel_sample16;
  table.area_sample16 = sampling16Suite()->area_sample16;
  table.fill16 = fill16;
  table.premultiply_color16 = premultiplyColor16;
  table.iterate16 = iterate16Suite()->iterate;
  table.iterate_origin16 = iterate16Suite()->iterate_origin;
  table.iterate_origin_non_clip_src16 = iterate16Suite()->iterate_origin_non_clip_src;
  table.get_pixel_data8 = pixelDataSuite()->get_pixel_data8;
  table.get_pixel_data16 = pixelDataSuite()->get_pixel_data16;
  return table;
}

}  // namespace

PF_UtilCallbacks* utilTable() {
  static PF_UtilCallbacks table = makeUtilTable();
  return &table;
}

}  // namespace standin
