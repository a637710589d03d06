// The sort that decides which of several dots with equal keys lies on top.
//
// No order of equals is promised: both modules take std::sort as GNU's library has it, which the standard leaves free
// and another version of that library could change. In the browser's build, which has another library, introsort takes
// the same steps, so that equals lie there as they do in the modules. The tests compare the two; they fail the day that
// GNU's steps are others.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <iterator>
#include <utility>

namespace vindrel {

namespace introsort_steps {

/// Parts of at most so many are left to the insertion sort at the end.
inline constexpr std::ptrdiff_t smallPart = 16;

/// Lets the hole sink to the bottom along the greater children, and the value rise from there.
template <class It, class Value, class Less>
void sinkAndRise(It first, std::ptrdiff_t hole, std::ptrdiff_t length, Value value, Less less) {
  const std::ptrdiff_t top = hole;
  std::ptrdiff_t child = hole;
  while (child < (length - 1) / 2) {
    child = 2 * (child + 1);
    if (less(first[child], first[child - 1])) --child;
    first[hole] = std::move(first[child]);
    hole = child;
  }
  if (length % 2 == 0 && child == (length - 2) / 2) {
    child = 2 * child + 1;
    first[hole] = std::move(first[child]);
    hole = child;
  }
  for (std::ptrdiff_t parent = (hole - 1) / 2; hole > top && less(first[parent], value); parent = (hole - 1) / 2) {
    first[hole] = std::move(first[parent]);
    hole = parent;
  }
  first[hole] = std::move(value);
}

template <class It, class Less>
void heapSort(It first, It last, Less less) {
  const std::ptrdiff_t length = last - first;
  for (std::ptrdiff_t parent = (length - 2) / 2; parent >= 0; --parent) {
    sinkAndRise(first, parent, length, std::move(first[parent]), less);
  }
  for (std::ptrdiff_t end = length - 1; end > 0; --end) {
    auto value = std::move(first[end]);
    first[end] = std::move(first[0]);
    sinkAndRise(first, 0, end, std::move(value), less);
  }
}

/// Swaps the median of the three with what stands at result.
template <class It, class Less>
void medianTo(It result, It a, It b, It c, Less less) {
  if (less(*a, *b)) {
    std::iter_swap(result, less(*b, *c) ? b : less(*a, *c) ? c : a);
  } else {
    std::iter_swap(result, less(*a, *c) ? a : less(*b, *c) ? c : b);
  }
}

/// Splits all but the first by the first, which is a median of three, so that either walk ends inside.
template <class It, class Less>
It split(It first, It last, Less less) {
  medianTo(first, first + 1, first + (last - first) / 2, last - 1, less);
  It left = first + 1;
  It right = last;
  while (true) {
    while (less(*left, *first)) ++left;
    --right;
    while (less(*first, *right)) --right;
    if (!(left < right)) return left;
    std::iter_swap(left, right);
    ++left;
  }
}

template <class It, class Less>
void sortRoughly(It first, It last, int depth, Less less) {
  while (last - first > smallPart) {
    if (depth == 0) {
      heapSort(first, last, less);
      return;
    }
    --depth;
    const It cut = split(first, last, less);
    sortRoughly(cut, last, depth, less);
    last = cut;
  }
}

template <class It, class Less>
void insertionSort(It first, It last, Less less) {
  if (first == last) return;
  for (It i = first + 1; i != last; ++i) {
    auto value = std::move(*i);
    It place = i;
    for (; place != first && less(value, *(place - 1)); --place) *place = std::move(*(place - 1));
    *place = std::move(value);
  }
}

}  // namespace introsort_steps

/// GNU's std::sort, step by step. less is a strict weak order.
template <class It, class Less>
void introsort(It first, It last, Less less) {
  const auto length = static_cast<std::size_t>(last - first);
  if (length > 0) introsort_steps::sortRoughly(first, last, 2 * (static_cast<int>(std::bit_width(length)) - 1), less);
  introsort_steps::insertionSort(first, last, less);
}

/// Sorts [first, last) by less, a strict weak order; how equals come to lie is told above.
template <class It, class Less>
void sortInOrder(It first, It last, Less less) {
#ifdef __GLIBCXX__
  std::sort(first, last, less);
#else
  introsort(first, last, less);
#endif
}

}  // namespace vindrel
