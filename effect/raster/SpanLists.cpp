#include "effect/raster/SpanLists.h"

#include <algorithm>

#include "effect/pixel/Int32.h"

namespace vindrel {
namespace {

void release(Span* node) {
  while (node != nullptr) {
    Span* const next = node->next;
    delete node;
    node = next;
  }
}

/// A node chain that a list has let go of; gives the nodes back whatever happens while the list is joined anew.
struct DetachedChain {
  Span* head;
  explicit DetachedChain(Span* chain) : head(chain) {}
  DetachedChain(const DetachedChain&) = delete;
  DetachedChain& operator=(const DetachedChain&) = delete;
  ~DetachedChain() { release(head); }
};

}  // namespace

void spanAppend(SpanList& list, int32_t start, int32_t end) {
  if (list.head == nullptr) {
    Span* const node = new Span{start, end, nullptr};
    list.head = node;
    list.tail = node;
    return;
  }
  Span* const last = list.tail;
  // A missing node is the allocator's null for an earlier run: with nothing to measure against, this run is lost too.
  if (last == nullptr) return;
  if (wrapAdd(last->end, 1) < start) {
    Span* const node = new Span{start, end, nullptr};
    last->next = node;
    list.tail = node;
  } else if (last->start <= end && last->start <= start && last->end < end) {
    last->end = end;
  }
}

void spanClear(SpanList& list) {
  release(list.head);
  list.head = nullptr;
  list.tail = nullptr;
}

void spanAssign(SpanList& target, const SpanList& source) {
  if (&target == &source) return;
  spanClear(target);
  for (const Span* s = source.head; s != nullptr; s = s->next) spanAppend(target, s->start, s->end);
}

// Both lists are walked once, side by side. p is the run of a in hand, q the run of b that it is held against; all runs
// of a up to `kept` are done, and every run of b before q lies left of p.
void spanIntersect(SpanList& a, const SpanList& b) {
  Span* p = a.head;
  const Span* q = b.head;
  Span* kept = nullptr;
  while (p != nullptr && q != nullptr) {
    if (p->end < q->start) {
      Span* const outside = p;
      p = p->next;
      if (kept == nullptr) {
        a.head = p;
        delete outside;
      } else {
        // Kept as is: a run that falls out behind one that stayed is not released, so the host's book of handles keeps
        // an entry for it (aRunThatFallsOutBehindOneThatStayedIsNotReleased).
        kept->next = p;
      }
    } else if (q->end < p->start) {
      q = q->next;
    } else if (p->end < q->end || (p->start <= q->start && p->end == q->end)) {
      // p ends inside q, or with it: all that the next runs of b could add lies beyond p.
      p->start = std::max(p->start, q->start);
      kept = p;
      p = p->next;
    } else {
      // q ends inside p, or p begins inside q and ends with it.
      const Span* const further = q->next;
      const bool reachesFurther = further != nullptr && p->end >= further->start;
      if (reachesFurther) {
        // Kept as is: the second piece begins at the last column of the next run, not at its first. Rows with several
        // runs in one pixel get fewer solid pixels for it (eachLaterPieceStartsAtTheEndOfTheNextRun).
        Span* const piece = new Span{further->end, p->end, p->next};
        if (piece != nullptr) p->next = piece;
      }
      p->start = std::max(p->start, q->start);
      p->end = q->end;
      kept = p;
      p = p->next;
      q = further;
    }
  }
  // Kept as is: when b is used up before any run found an overlap, what is left of a stays, all of it when b is empty;
  // so an empty sub-row doesn't hinder a pixel from being solid (anEmptyListLeavesAnIntersectionAsItWas).
  if (p != nullptr && kept != nullptr) {
    release(kept->next);
    kept->next = nullptr;
  }
}

void spanUnion(SpanList& a, const SpanList& b) {
  const DetachedChain former(a.head);
  const Span* p = former.head;
  const Span* q = b.head;
  a.head = nullptr;
  while (p != nullptr || q != nullptr) {
    const Span*& next = q == nullptr || (p != nullptr && p->start < q->start) ? p : q;
    spanAppend(a, next->start, next->end);
    next = next->next;
  }
}

CoverageRows::~CoverageRows() {
  for (SpanList& row : rows) spanClear(row);
  spanClear(solid);
  spanClear(any);
}

void addSpan(CoverageRows& coverage, int32_t start, int32_t end, int32_t y) {
  const int32_t slot = y & 7;
  spanAppend(coverage.rows[slot], start, end);
  if (coverage.firstRow == -1) coverage.firstRow = slot;
  coverage.lastRow = slot;
  if (slot != 7 && y != coverage.lastSubRow) return;

  spanAssign(coverage.solid, coverage.rows[coverage.firstRow]);
  for (int32_t r = coverage.firstRow + 1; r <= coverage.lastRow; ++r) {
    spanIntersect(coverage.solid, coverage.rows[r]);
  }
  for (Span* s = coverage.solid.head; s != nullptr; s = s->next) {
    s->start = (s->start >> 3) + 1;
    s->end = (s->end >> 3) - 1;
  }
}

const SpanList& anyCoverage(CoverageRows& coverage) {
  if (coverage.firstRow == -1) {
    spanAssign(coverage.any, SpanList{});
  } else {
    spanAssign(coverage.any, coverage.rows[coverage.firstRow]);
    for (int32_t r = coverage.firstRow + 1; r <= coverage.lastRow; ++r) {
      spanUnion(coverage.any, coverage.rows[r]);
    }
  }
  for (Span* s = coverage.any.head; s != nullptr; s = s->next) {
    s->start = s->start >> 3;
    s->end = wrapAdd(s->end, 7) >> 3;
  }
  return coverage.any;
}

void resetRows(CoverageRows& coverage) {
  for (int32_t slot = 7; slot >= 0; --slot) spanClear(coverage.rows[slot]);
  coverage.lastSubRow = -1;
  coverage.firstRow = -1;
  coverage.lastRow = -1;
}

}  // namespace vindrel
