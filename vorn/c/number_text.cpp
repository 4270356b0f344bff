#include "vorn/c/number_text.h"

#include <stdexcept>
#include <string>

namespace vorn::c {
namespace {

[[noreturn]] void fail(std::string_view text, std::string_view wanted) {
  throw std::invalid_argument("\"" + std::string(text) + "\" is no " + std::string(wanted));
}

bool is_made_of(std::string_view text, std::string_view letters) {
  return !text.empty() && text.find_first_not_of(letters) == std::string_view::npos;
}

}  // namespace

QNumber read_integer(std::string_view text) {
  const bool is_negative = text.starts_with('-');
  const std::string_view digits = text.substr(is_negative || text.starts_with('+') ? 1 : 0);
  if (!is_made_of(digits, "0123456789")) fail(text, "integer");
  const QNumber value = QNumber::from_string(digits);
  return is_negative ? value.neg() : value;
}

QNumber read_binary(std::string_view text) {
  if (!is_made_of(text, "01")) fail(text, "text of 0 and 1");
  return QNumber::from_string(text, 2);
}

}  // namespace vorn::c
