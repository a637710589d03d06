/// What the host tells of itself, the C library as it lends it, and the table that gathers the callbacks.
#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "host/HostState.h"

namespace standin {

namespace {

PF_Err isRenderEngine(PF_Boolean* answer) {
  HostState* host = HostState::current();
  if (host == nullptr || answer == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  if (const auto fault = host->fault("PF_IsRenderEngine")) return host->note("PF_IsRenderEngine", "", *fault);
  *answer = host->settings.renderEngine ? 1 : 0;
  return host->note("PF_IsRenderEngine", host->settings.renderEngine ? "yes" : "no", PF_Err_NONE);
}

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
  complainOfUnknownService();
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
  table.begin_sampling = refused;
  table.subpixel_sample = refused;
  table.area_sample = refused;
  table.end_sampling = refused;
  table.composite_rect = refused;
  table.blend = refused;
  table.convolve = refused;
  table.copy = copy;
  table.fill = fill8;
  table.gaussian_kernel = refused;
  table.iterate = refused;
  table.premultiply = refused;
  table.premultiply_color = refused;
  table.new_world = newWorld1;
  table.dispose_world = disposeWorld1;
  table.iterate_origin = refused;
  table.iterate_lut = refused;
  table.transfer_rect = transfer;
  table.transform_world = refused;
  table.host_new_handle = newHandle;
  table.host_lock_handle = lockHandle;
  table.host_unlock_handle = unlockHandle;
  table.host_dispose_handle = disposeHandle;
  table.get_callback_addr = refused;
  table.app = applicationCall;
  table.ansi = ansiTable();
  table.colorCB = {refused, refused, refused, refused, refused, refused, refused, refused};
  table.get_platform_data = getPlatformData;
  table.host_get_handle_size = handleSize;
  table.iterate_origin_non_clip_src = refused;
  table.iterate_generic = refused;
  table.host_resize_handle = resizeHandle;
  table.subpixel_sample16 = refused;
  table.area_sample16 = refused;
  table.fill16 = fill16;
  table.premultiply_color16 = refused;
  table.iterate16 = refused;
  table.iterate_origin16 = refused;
  table.iterate_origin_non_clip_src16 = refused;
  table.get_pixel_data8 = refused;
  table.get_pixel_data16 = refused;
  return table;
}

}  // namespace

PF_UtilCallbacks* utilTable() {
  static PF_UtilCallbacks table = makeUtilTable();
  return &table;
}

const PFAppSuite4* appSuite() {
  static const PFAppSuite4 suite = {refused, refused, refused, refused, refused, isRenderEngine,
                                    refused, refused, refused, refused, refused};
  return &suite;
}

}  // namespace standin
