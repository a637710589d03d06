/// Answers for services that this host does not have: each names itself in the books and in the log.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "ae/Constants.h"

namespace standin {

/// A text as an argument of a template.
template <size_t size>
struct ServiceName {
  // NOLINTNEXTLINE(google-explicit-constructor): a literal is to be one without further words
  constexpr ServiceName(const char (&text)[size]) { std::copy_n(text, size, letters); }
  constexpr std::string_view view() const { return {letters, size - 1}; }
  char letters[size]{};
};

/// Writes the refusal down for the current host.
void noteRefusal(std::string_view service);

/// The place of a service in a table, whatever its arguments: refused<"checkout_layer_audio">.
/// @return PF_Err_INVALID_CALLBACK
template <ServiceName name, class... Arguments>
PF_Err refused(Arguments...) {
  noteRefusal(name.view());
  return PF_Err_INVALID_CALLBACK;
}

}  // namespace standin
