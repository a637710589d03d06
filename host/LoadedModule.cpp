#include "host/LoadedModule.h"

#include <filesystem>
#include <stdexcept>
#include <utility>

#include "host/HostState.h"

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#else
#include <dlfcn.h>
#endif

#if defined(__SANITIZE_ADDRESS__) && !defined(_WIN32)
// Whoever loads modules must not let the address sanitizer follow their thread-local blocks: it takes a block that
// begins 16 bytes behind a page for one of an old C library, reads a made-up size before it, and the leak check at the
// end of the process dies while reading that much (see manyModulesWithThreadLocalsLeaveTheLeakCheckWhole). Which
// block lies so is a matter of luck. The leak check itself stays on, and misses nothing: it knows these blocks' sizes
// only by that guess.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the name is the sanitizer's choice
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options();
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" const char* __asan_default_options() {
  return "intercept_tls_get_addr=0";
}
#endif

namespace standin {

namespace {

// Newer modules, older ones, and the rare forms behind them.
constexpr const char* kUsualEntryNames[] = {"EffectMain", "EntryPointFunc", "entryPointFunc",
                                            "main",       "xMain",          "PluginMain"};

#ifdef _WIN32

std::string systemReason() {
  const DWORD code = GetLastError();
  char text[512] = {};
  const DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0,
                                      text, static_cast<DWORD>(sizeof text), nullptr);
  std::string reason(text, length);
  while (!reason.empty() && (reason.back() == '\n' || reason.back() == '\r' || reason.back() == ' ')) reason.pop_back();
  return reason.empty() ? "system error " + std::to_string(code) : reason;
}

void* openLibrary(const std::filesystem::path& path) {
  void* handle = static_cast<void*>(LoadLibraryW(path.wstring().c_str()));
  if (handle == nullptr) throw std::runtime_error("cannot load the module " + path.string() + ": " + systemReason());
  return handle;
}

void closeLibrary(void* handle) {
  FreeLibrary(static_cast<HMODULE>(handle));
}

void* findExport(void* handle, const std::string& name) {
  // Through an object pointer, because a conversion between function types is what compilers warn of.
  const FARPROC found = GetProcAddress(static_cast<HMODULE>(handle), name.c_str());
  return reinterpret_cast<void*>(found);
}

std::optional<PiplFacts> findPipl(void* handle) {
  const auto module = static_cast<HMODULE>(handle);
  const HRSRC found = FindResourceA(module, MAKEINTRESOURCEA(16000), "PIPL");
  if (found == nullptr) return std::nullopt;
  const HGLOBAL loaded = LoadResource(module, found);
  if (loaded == nullptr) return std::nullopt;
  return readPipl(LockResource(loaded), SizeofResource(module, found));
}

#else

void* openLibrary(const std::filesystem::path& path) {
  void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) throw std::runtime_error("cannot load the module " + path.string() + ": " + dlerror());
  return handle;
}

void closeLibrary(void* handle) {
  dlclose(handle);
}

void* findExport(void* handle, const std::string& name) {
  return dlsym(handle, name.c_str());
}

std::optional<PiplFacts> findPipl(void*) {
  return std::nullopt;
}

#endif

// A module without a resource tells of its effects by a function that calls back once for each. The first that is one
// counts: the token is the text that takes its entry's name.
constexpr A_long kEffectKind = 0x65464B54;  // 'eFKT'

A_Err takeEntryName(std::string& name, const A_u_char* entryName, A_long kind) {
  if (kind == kEffectKind && name.empty() && entryName != nullptr) name = reinterpret_cast<const char*>(entryName);
  return PF_Err_NONE;
}
A_Err takeEffect(void* token, const A_u_char*, const A_u_char*, const A_u_char*, const A_u_char* entryName, A_long kind,
                 A_long, A_long, A_long) {
  return takeEntryName(*static_cast<std::string*>(token), entryName, kind);
}
A_Err takeEffect2(void* token, const A_u_char*, const A_u_char*, const A_u_char*, const A_u_char* entryName,
                  A_long kind, A_long, A_long, A_long, const A_u_char*) {
  return takeEntryName(*static_cast<std::string*>(token), entryName, kind);
}

constexpr const char* kHostName = "Adobe After Effects";
constexpr const char* kHostVersion = "13.0";

std::string entryNameByRegistration(void* handle) {
  using Register = PF_Err (*)(void*, decltype(&takeEffect), SPBasicSuite*, const char*, const char*);
  using Register2 = PF_Err (*)(void*, decltype(&takeEffect2), SPBasicSuite*, const char*, const char*);
  std::string name;
  if (void* newer = findExport(handle, "PluginDataEntryFunction2")) {
    const PF_Err err = reinterpret_cast<Register2>(newer)(&name, takeEffect2, basicTable(), kHostName, kHostVersion);
    if (err == PF_Err_NONE && !name.empty()) return name;
    name.clear();
  }
  if (void* older = findExport(handle, "PluginDataEntryFunction")) {
    const PF_Err err = reinterpret_cast<Register>(older)(&name, takeEffect, basicTable(), kHostName, kHostVersion);
    if (err != PF_Err_NONE) name.clear();
  }
  return name;
}

// The entry's name, or nothing; told is what the property list says.
std::string findEntryName(void* handle, const std::string& told) {
  if (!told.empty() && findExport(handle, told) != nullptr) return told;
  std::string registered = entryNameByRegistration(handle);
  if (!registered.empty() && findExport(handle, registered) != nullptr) return registered;
  for (const char* usual : kUsualEntryNames) {
    if (findExport(handle, usual) != nullptr) return usual;
  }
  return {};
}

}  // namespace

LoadedModule::LoadedModule(const std::string& path) {
  const auto* utf8 = reinterpret_cast<const char8_t*>(path.c_str());
  std::filesystem::path file = std::filesystem::absolute(std::filesystem::path(utf8)).lexically_normal();
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(file, ignored)) {
    throw std::runtime_error("there is no module " + file.string());
  }
  file.make_preferred();
  path_ = file.string();
  handle_ = openLibrary(file);
  pipl_ = findPipl(handle_);
  const bool isEffect = pipl_ && (pipl_->kind.empty() || pipl_->kind == "eFKT");
  const std::string told = isEffect ? pipl_->entryName : std::string();
  entryName_ = findEntryName(handle_, told);
  if (entryName_.empty()) {
    unload();
    throw std::runtime_error("the module " + path_ + " has no entry " + (told.empty() ? "EntryPointFunc" : told) +
                             ", nor one of another usual name");
  }
  entry_ = reinterpret_cast<PF_EffectEntryPoint>(findExport(handle_, entryName_));
}

LoadedModule::~LoadedModule() {
  unload();
}

LoadedModule::LoadedModule(LoadedModule&& other) noexcept
    : handle_(std::exchange(other.handle_, nullptr)),
      entry_(std::exchange(other.entry_, nullptr)),
      entryName_(std::move(other.entryName_)),
      path_(std::move(other.path_)),
      pipl_(std::move(other.pipl_)) {}

LoadedModule& LoadedModule::operator=(LoadedModule&& other) noexcept {
  if (this != &other) {
    unload();
    handle_ = std::exchange(other.handle_, nullptr);
    entry_ = std::exchange(other.entry_, nullptr);
    entryName_ = std::move(other.entryName_);
    path_ = std::move(other.path_);
    pipl_ = std::move(other.pipl_);
  }
  return *this;
}

void LoadedModule::unload() noexcept {
  if (handle_ != nullptr) closeLibrary(handle_);
  handle_ = nullptr;
  entry_ = nullptr;
}

}  // namespace standin
