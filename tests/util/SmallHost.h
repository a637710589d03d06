// A host of a few calls: memory, suites and worlds, just enough to try the host utility layer on the ordinary heap.
//
// Every call is written down as one line. One host at a time; it lends the global suite record for its life.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "ae/InOutData.h"
#include "ae/Suites.h"
#include "effect/share/util/Errors.h"
#include "effect/share/util/SuiteCache.h"

namespace smallhost {

class SmallHost {
 public:
  /// @param opensGlobalRecord  makes the module's global suite record point here, until the host goes
  explicit SmallHost(bool opensGlobalRecord = true);
  ~SmallHost();
  SmallHost(const SmallHost&) = delete;
  SmallHost& operator=(const SmallHost&) = delete;

  SPBasicSuite* basic() { return &basic_; }

  /// How often a line stands in the log.
  int32_t count(const std::string& line) const;

  std::vector<std::string> log;
  std::set<std::string> withheld;        ///< suites that give an error and no pointer: "PF World Suite 2"
  std::set<std::string> givenAsNull;     ///< suites that give success and a null pointer
  std::set<std::string> givenWithError;  ///< suites that give both a pointer and an error
  bool outOfMemory = false;              ///< host_new_handle gives null
  bool locksFail = false;                ///< host_lock_handle gives null
  SPErr releaseError = 0;                ///< what ReleaseSuite answers
  PF_Err newWorldError = 0;
  PF_Err pixelFormatError = 0;
  PF_PixelFormat pixelFormat = 0;  ///< what PF_GetPixelFormat tells
  A_HandleSize lastHandleSize = 0;
  std::map<PF_Handle, std::vector<unsigned char>> handles;  ///< those that are not disposed of, with their blocks
  AEUtil::PendingErrors pending;

 private:
  friend struct Services;
  SPBasicSuite basic_;
};

}  // namespace smallhost
