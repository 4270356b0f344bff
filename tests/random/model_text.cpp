#include "tests/random/model_text.h"

#include <fmt/format.h>

#include <cctype>
#include <stdexcept>

namespace vorn::random {
namespace {

[[noreturn]] void fail(std::string_view text) {
  throw std::runtime_error(fmt::format("this is no list as expected: {}", text));
}

/// The position behind the expression that starts at `at`.
std::size_t end_of(std::string_view text, std::size_t at) {
  std::size_t depth = 0;
  do {
    if (at >= text.size()) fail(text);
    const char c = text[at];
    if (c == '|') {
      at = text.find('|', at + 1);
      if (at == std::string_view::npos) fail(text);
    }
    if (c == '(') ++depth;
    if (c == ')') {
      if (depth == 0) fail(text);
      --depth;
    }
    ++at;
    if (depth > 0 || c == ')' || c == '|') continue;
    const std::size_t end = text.find_first_of("() \n", at);
    at = end == std::string_view::npos ? text.size() : end;
  } while (depth > 0);
  return at;
}

}  // namespace

std::vector<std::string> split_list(std::string_view text) {
  while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())) != 0) {
    text.remove_suffix(1);
  }
  if (text.size() < 2 || text.front() != '(' || text.back() != ')') fail(text);
  std::vector<std::string> items;
  std::size_t at = 1;
  while (at < text.size() - 1) {
    if (std::isspace(static_cast<unsigned char>(text[at])) != 0) {
      ++at;
      continue;
    }
    const std::size_t end = end_of(text, at);
    if (end > text.size() - 1) fail(text);
    items.emplace_back(text.substr(at, end - at));
    at = end;
  }
  return items;
}

std::vector<std::string> read_model(std::string_view text,
                                    const std::vector<std::string>& declared) {
  std::vector<std::string> equations;
  std::vector<std::string> defined;
  for (const std::string& item : split_list(text)) {
    const std::vector<std::string> parts = split_list(item);
    if (parts.size() != 5 || parts[0] != "define-fun") fail(item);
    defined.push_back(parts[1]);
    if (parts[2] == "()") equations.push_back(fmt::format("(= {} {})", parts[1], parts[4]));
  }
  if (defined != declared) {
    throw std::runtime_error(fmt::format("the model does not define what is declared: {}", text));
  }
  return equations;
}

std::map<std::string, std::string> read_functions(std::string_view text) {
  std::map<std::string, std::string> definitions;
  for (const std::string& item : split_list(text)) {
    const std::vector<std::string> parts = split_list(item);
    if (parts.size() == 5 && parts[2] != "()") definitions.emplace(parts[1], item);
  }
  return definitions;
}

std::vector<std::string> read_values(std::string_view text) {
  std::vector<std::string> equations;
  for (const std::string& pair : split_list(text)) {
    const std::vector<std::string> parts = split_list(pair);
    if (parts.size() != 2) fail(pair);
    equations.push_back(fmt::format("(= {} {})", parts[0], parts[1]));
  }
  return equations;
}

}  // namespace vorn::random
