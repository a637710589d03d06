#include "cli/presets/LookFiles.h"

#include <map>
#include <system_error>

#include "cli/NearestName.h"
#include "cli/UserError.h"

namespace cli {

namespace fs = std::filesystem;

std::vector<fs::path> lookFolders(const Surroundings& surroundings, const LookKind& kind) {
  std::vector<fs::path> folders;
  if (!surroundings.userFolder.empty()) folders.push_back(surroundings.userFolder / kind.folder);
  folders.push_back(surroundings.programFolder / kind.folder);
  folders.push_back(surroundings.programFolder.parent_path() / "share" / "vindrel" / kind.folder);
  return folders;
}

bool isPathOfLook(const std::string& given) {
  return given.find('/') != std::string::npos || given.ends_with(".json");
}

fs::path findLook(const std::string& given, const Surroundings& surroundings, const LookKind& kind) {
  if (isPathOfLook(given)) return given;
  std::error_code ignored;
  for (const fs::path& folder : lookFolders(surroundings, kind)) {
    fs::path file = folder / (given + ".json");
    if (!given.empty() && fs::exists(file, ignored)) return file;
  }
  if (!given.empty() && fs::exists(given, ignored) && !fs::is_directory(given, ignored)) return given;
  std::vector<std::string> names;
  for (const fs::path& file : allLooks(surroundings, kind)) names.push_back(file.stem().string());
  const std::string all = names.empty() ? "; there are none by name" : "; there are " + listed(names, "and");
  throw UserError("no " + std::string(kind.one) + " '" + given + "'" + suggestion(given, names, all));
}

std::vector<fs::path> allLooks(const Surroundings& surroundings, const LookKind& kind) {
  std::map<std::string, fs::path> byName;
  for (const fs::path& folder : lookFolders(surroundings, kind)) {
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
      if (entry->path().extension() == ".json") byName.emplace(entry->path().stem().string(), entry->path());
    }
  }
  std::vector<fs::path> files;
  files.reserve(byName.size());
  for (const auto& [name, file] : byName) files.push_back(file);
  return files;
}

}  // namespace cli
