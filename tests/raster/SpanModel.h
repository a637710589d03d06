// Span lists as what they stand for: sets of columns. Slow, and without a pointer in it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <ostream>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace vindrel::model {

struct Run {
  int32_t start, end;
  friend bool operator==(const Run&, const Run&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Run& r) {
    return out << '(' << r.start << ' ' << r.end << ')';
  }
};
using Runs = std::vector<Run>;
using Columns = std::set<int32_t>;

inline std::string text(const Runs& runs) {
  std::ostringstream out;
  for (const Run& r : runs) out << r;
  return out.str();
}

inline void cover(Columns& columns, Run run) {
  for (int32_t c = run.start; c <= run.end; ++c) columns.insert(c);
}

/// The runs of neighbouring columns, as long as they can be.
inline Runs maximalRuns(const Columns& columns) {
  Runs runs;
  for (const int32_t c : columns) {
    if (!runs.empty() && runs.back().end == c - 1) {
      runs.back().end = c;
    } else {
      runs.push_back({c, c});
    }
  }
  return runs;
}

inline int pick(std::mt19937& random, int from, int to) {
  // In unsigned numbers, since the distance may not fit a signed one.
  const unsigned first = static_cast<unsigned>(from), count = static_cast<unsigned>(to) - first + 1;
  return static_cast<int>(first + static_cast<unsigned>(random() % count));
}

/// Up to nine runs on a narrow stretch, so that every way for two lists to meet comes up; sometimes none at all.
inline Columns randomColumns(std::mt19937& random) {
  Columns columns;
  const int runs = pick(random, 0, 9);
  const int longest = pick(random, 0, 2) == 0 ? 40 : 8;
  for (int n = 0; n < runs; ++n) {
    const int32_t start = pick(random, -10, 90);
    cover(columns, {start, start + pick(random, 0, longest)});
  }
  return columns;
}

struct Intersection {
  Runs runs;
  int unreachable;  ///< runs that were unlinked without being released
};

/// What intersecting gives, told by columns:
/// - Without a common column, the runs of a with no run of b right of them stay, and all others go.
/// - Otherwise a run of a keeps what it shares with the first run of b that it meets. Of each further run that it meets
///   it keeps the last column; where that lies beyond the run of a, an empty reversed run stands for it.
/// - A run of a that meets none goes. It stays unreachable if a run before it has met one and a run of b is to come.
inline Intersection intersection(const Columns& a, const Columns& b) {
  const Runs as = maximalRuns(a), bs = maximalRuns(b);
  const bool anyCommon = std::any_of(a.begin(), a.end(), [&](int32_t c) { return b.contains(c); });
  const auto comesBeforeSomeOfB = [&](const Run& run) { return !bs.empty() && run.end < bs.back().start; };
  Intersection result{{}, 0};
  for (const Run& run : as) {
    if (!anyCommon) {
      if (!comesBeforeSomeOfB(run)) result.runs.push_back(run);
      continue;
    }
    bool first = true;
    for (const Run& other : bs) {
      if (other.end < run.start || other.start > run.end) continue;
      if (first) {
        result.runs.push_back({std::max(run.start, other.start), std::min(run.end, other.end)});
      } else {
        result.runs.push_back({other.end, std::min(run.end, other.end)});
      }
      first = false;
    }
    if (first && !result.runs.empty() && comesBeforeSomeOfB(run)) ++result.unreachable;
  }
  return result;
}

}  // namespace vindrel::model
