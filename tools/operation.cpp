// What can be asked for, and the words that it takes, follow from the table of operations: a
// rounding mode, the widths of operands and result, then the operands.
#include "tools/operation.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <cstddef>
#include <stdexcept>
#include <vector>

#include "vorn/terms/bv_number.h"
#include "vorn/terms/operations.h"

namespace vorn::tools {
namespace {

/// The words of an operation: r a rounding mode, o one that may be left out since it makes no
/// difference, f a format "E M", w a width, a an operand of the first format, v one of the width.
/// Generators may write all operations of two floats alike, hence the o.
std::string list_words(const Operation& operation) {
  const std::string_view letters = operation.signature.get_letters();
  const bool is_selection = operation.signature.get_text() == "F:FF";
  std::string head = operation.is_rounded() ? "r" : is_selection ? "o" : "";
  std::string operands;
  for (const char letter : letters) {
    if (letter == 'R') continue;
    const bool is_float = letter == 'F' || letter == 'G';
    if (operands.empty()) head += is_float ? 'f' : 'w';
    operands += is_float ? 'a' : 'v';
  }
  if (operation.indexing == Indexing::format) head += 'f';
  if (operation.indexing == Indexing::width) head += 'w';
  return head + operands;
}

/// The words of a line, read as its operation asks for them.
struct Request {
  const Term* rm = nullptr;
  std::size_t width = 0;
  std::vector<IEEEFloat::format> formats;
  std::vector<const Term*> operands;
};

const Operation* find_by_short_name(std::string_view name) {
  for (const Operation& operation : get_operations()) {
    if (!name.empty() && operation.short_name == name) return &operation;
  }
  return nullptr;
}

const Term* build(TermManager& terms, const Operation& operation, const Request& request) {
  std::vector<std::size_t> indices;
  if (operation.indexing == Indexing::width) indices = {request.width};
  if (operation.indexing == Indexing::format) {
    indices = {request.formats.back().e, request.formats.back().m};
  }
  std::vector<const Term*> args = request.operands;
  if (operation.is_rounded()) args.insert(args.begin(), request.rm);
  return terms.make(operation.tag, indices, args);
}

const Term* rounding_mode(const TermManager& terms, std::string_view name) {
  constexpr std::array<std::string_view, 5> kNames = {"rne", "rtz", "rtp", "rtn", "rna"};
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    if (name == kNames[i]) return terms.make_fprounding(static_cast<IEEEFloat::rounding_mode>(i));
  }
  throw std::invalid_argument(
      fmt::format("'{}' is no rounding mode: rne, rtz, rtp, rtn, rna", name));
}

std::size_t width(std::string_view word, std::size_t least, std::string_view what) {
  std::size_t value = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
  if (error != std::errc() || end != word.data() + word.size() || value < least ||
      value >= TermManager::kMaxWidth) {
    throw std::invalid_argument(fmt::format("'{}' is no {}: a decimal number from {} to {}", word,
                                            what, least, TermManager::kMaxWidth - 1));
  }
  return value;
}

QNumber pattern(std::string_view word, std::size_t bits) {
  if (word.find_first_not_of("0123456789abcdefABCDEF") != std::string_view::npos) {
    throw std::invalid_argument(fmt::format("'{}' is no hexadecimal number", word));
  }
  QNumber value = QNumber::from_string(word, 16);
  if (BVNumber::bit_length(value) > bits) {
    throw std::invalid_argument(fmt::format("'{}' has more than {} bits", word, bits));
  }
  return value;
}

constexpr std::string_view kFree = "_";

/// A constant in the place of an operand.
const Term* free_constant(TermManager& terms, const char* name, const DataType* type) {
  return terms.make_constant(terms.make_unique_symbol(name, type));
}

/// Those of `all` that the words give: without the optional rounding mode and without operands
/// where these are left out. Throws std::invalid_argument where the number of words fits none.
std::string_view given_arguments(const Operation& operation, std::string_view all,
                                 std::size_t words, Operands operands) {
  std::size_t most = 0;
  std::size_t inputs = 0;
  for (const char argument : all) {
    most += argument == 'f' ? 2 : 1;
    if (argument == 'a' || argument == 'v') ++inputs;
  }
  const std::string_view head = all.substr(0, all.size() - inputs);
  const bool free = operands == Operands::free;
  if (words == most) return all;
  if (free && words == most - inputs) return head;
  std::string wanted = std::to_string(most);
  if (all.front() == 'o') {
    if (words == most - 1) return all.substr(1);
    if (free && words == most - 1 - inputs) return head.substr(1);
    wanted = fmt::format("{} or {}", most - 1, most);
  }
  throw std::invalid_argument(
      fmt::format("{} takes {} arguments, got {}", operation.short_name, wanted, words));
}

Request read(TermManager& terms, const Operation& operation, std::span<const std::string> words,
             Operands mode) {
  constexpr const char* kNames[] = {"x", "y", "z"};
  const std::string all = list_words(operation);
  const std::string_view arguments = given_arguments(operation, all, words.size(), mode);
  const auto is_free = [&](const std::string& word) {
    return mode == Operands::free && word == kFree;
  };
  Request request;
  std::size_t bits = 0;
  const std::string* word = words.data();
  const auto operand = [&](const DataType* type, const auto& literal) {
    const bool given = word != words.data() + words.size();
    request.operands.push_back(!given || is_free(*word)
                                   ? free_constant(terms, kNames[request.operands.size()], type)
                                   : literal(*word));
    if (given) ++word;
  };
  for (const char argument : all) {
    switch (argument) {
      case 'o':
        if (arguments.front() != 'o') break;
        [[fallthrough]];
      case 'r':
        request.rm = is_free(*word) ? free_constant(terms, "rm", terms.get_fprounding_type())
                                    : rounding_mode(terms, *word);
        ++word;
        break;
      case 'w':
        bits = request.width = width(*word++, 1, "bit-vector width");
        break;
      case 'f': {
        const std::size_t e = width(*word++, 2, "exponent width");
        const std::size_t m = width(*word++, 1, "significand width");
        request.formats.push_back({e, m});
        break;
      }
      case 'a': {
        const IEEEFloat::format& f = request.formats.front();
        operand(terms.get_fp_type(f.e, f.m), [&](const std::string& text) {
          return terms.make_fp_number(pattern(text, f.width()), f.e, f.m);
        });
        break;
      }
      default:
        operand(terms.get_bv_type(bits), [&](const std::string& text) {
          return terms.make_bv_number(pattern(text, bits), bits);
        });
        break;
    }
  }
  return request;
}

}  // namespace

bool is_operation(std::string_view name) {
  return find_by_short_name(name) != nullptr;
}

const Term* read_operation(TermManager& terms, std::span<const std::string> words,
                           Operands operands) {
  if (words.empty()) throw std::invalid_argument("no operation is given");
  const Operation* operation = find_by_short_name(words.front());
  if (operation == nullptr) {
    throw std::invalid_argument(fmt::format("unknown operation '{}'", words.front()));
  }
  return build(terms, *operation, read(terms, *operation, words.subspan(1), operands));
}

}  // namespace vorn::tools
