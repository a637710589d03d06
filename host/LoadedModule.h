/// An effect module in this process: the shared library, its entry point and, on Windows, its property list.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "ae/InOutData.h"
#include "host/Pipl.h"

namespace standin {

/// Loads at construction, unloads at destruction. Can be moved, not copied.
class LoadedModule {
 public:
  /// Loads the module. Its entry is the export that the property list names (Windows: resource "PIPL" 16000, of an
  /// effect); else the one that the module names when its PluginDataEntryFunction2 or PluginDataEntryFunction is
  /// called; else the first export of EffectMain, EntryPointFunc, entryPointFunc, main, xMain and PluginMain.
  /// @param path  UTF-8; relative paths are taken from the current folder
  /// @throws std::runtime_error  with one line that names the file and the reason: not there, not a module, no such
  /// entry
  explicit LoadedModule(const std::string& path);
  ~LoadedModule();
  LoadedModule(LoadedModule&& other) noexcept;
  LoadedModule& operator=(LoadedModule&& other) noexcept;
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;

  PF_EffectEntryPoint entry() const { return entry_; }
  const std::string& entryName() const { return entryName_; }
  const std::string& path() const { return path_; }               ///< absolute
  const std::optional<PiplFacts>& pipl() const { return pipl_; }  ///< nothing on Linux or without the resource
  void* systemHandle() const { return handle_; }                  ///< of the library, as the system gave it

 private:
  void unload() noexcept;
  void* handle_ = nullptr;
  PF_EffectEntryPoint entry_ = nullptr;
  std::string entryName_;
  std::string path_;
  std::optional<PiplFacts> pipl_;
};

}  // namespace standin
