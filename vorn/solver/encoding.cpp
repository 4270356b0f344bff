#include "vorn/solver/encoding.h"

#include <fmt/format.h>

#include <charconv>
#include <cstdlib>
#include <optional>

#include "vorn/smt2/error.h"
#include "vorn/smt2/sort_parser.h"
#include "vorn/smt2/symbol_table.h"
#include "vorn/smt2/token_stream.h"

namespace vorn::solver {
namespace {

constexpr std::uint32_t kVersion = 1;

bool is_control(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
}

std::string bits_text(const std::vector<int>& bits) {
  std::string text;
  for (const int bit : bits) {
    text += ' ';
    if (bit == kTrueBit || bit == kFalseBit) {
      text += bit == kTrueBit ? 'T' : 'F';
    } else {
      text += std::to_string(bit);
    }
  }
  return text;
}

/// One line of a map behind "c vorn"; everything throws at a place in it.
class LineReader {
 public:
  LineReader(TermManager& manager, std::string_view rest, const std::string& file_name,
             smt2::Position place)
      : mgr(manager), text(rest), file(file_name), position(place) {}

  [[noreturn]] void fail(const std::string& message) const {
    throw smt2::ScriptError(file, position, message);
  }

  std::string_view take_word() {
    skip(text.find_first_not_of(' '));
    const std::string_view word = text.substr(0, text.find(' '));
    skip(word.size());
    return word;
  }

  std::uint64_t take_number(std::uint64_t limit) {
    const std::string_view word = take_word();
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc() || end != word.data() + word.size() || value > limit) {
      fail(fmt::format("symbol map: '{}' is no number from 0 to {}", word, limit));
    }
    return value;
  }

  std::string take_name() {
    skip(text.find_first_not_of(' '));
    const std::size_t end =
        text.empty() || text[0] != '|' ? std::string_view::npos : text.find('|', 1);
    if (end == std::string_view::npos) fail("symbol map: expected a name between bars");
    std::string name;
    for (std::size_t i = 1; i < end; ++i) {
      if (text[i] != '\\') {
        name += text[i];
        continue;
      }
      unsigned code = 0;
      const char* digits = text.data() + i + 2;
      if (i + 4 > end || text[i + 1] != 'x' ||
          std::from_chars(digits, digits + 2, code, 16).ptr != digits + 2) {
        fail("symbol map: a backslash in a name begins \\xHH, a byte in hexadecimal");
      }
      name += static_cast<char>(code);
      i += 3;
    }
    // A backslash may come out of an escape; a bar is in no symbol.
    if (name.find('|') != std::string::npos) fail("symbol map: a name cannot hold a bar");
    skip(end + 1);
    return name;
  }

  const DataType* take_sort() {
    smt2::TokenStream tokens(text, file, position);
    const smt2::Token first = tokens.peek();
    const smt2::SymbolTable no_names;
    const DataType* type = smt2::SortParser(mgr, no_names, tokens).parse().type;
    skip(static_cast<std::size_t>(first.raw.data() - text.data()) + tokens.text_from(first).size());
    return type;
  }

  std::vector<int> take_bits(std::uint64_t variables) {
    std::vector<int> bits;
    for (std::string_view word = take_word(); !word.empty(); word = take_word()) {
      int literal = word == "T" ? kTrueBit : kFalseBit;
      if (word != "T" && word != "F") {
        const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), literal);
        if (error != std::errc() || end != word.data() + word.size() || literal == 0 ||
            literal < kFalseBit || static_cast<std::uint64_t>(std::abs(literal)) > variables) {
          fail(fmt::format("symbol map: '{}' is no bit: T, F, or a literal of {} variables", word,
                           variables));
        }
      }
      bits.push_back(literal);
    }
    return bits;
  }

 private:
  void skip(std::size_t length) {
    length = std::min(length, text.size());
    for (std::size_t i = 0; i < length; ++i)
      position.advance(text[i]);
    text.remove_prefix(length);
  }

  TermManager& mgr;
  std::string_view text;
  const std::string& file;
  smt2::Position position;
};

MappedTerm read_constant(LineReader& line, std::uint64_t variables) {
  MappedTerm term;
  term.name = line.take_name();
  term.type = line.take_sort();
  term.bits = line.take_bits(variables);
  const std::size_t width = term.type->get_value_width();
  const bool is_mode = term.type->get_kind() == DataType::Kind::rounding_mode;
  if (term.bits.size() != width && !(is_mode && term.bits.size() + 1 == width)) {
    line.fail(fmt::format("symbol map: {} has {} bits, got {}", term.type->to_string(), width,
                          term.bits.size()));
  }
  return term;
}

MappedTerm read_choice(TermManager& manager, LineReader& line, std::uint64_t variables) {
  MappedTerm term;
  const std::uint64_t width = line.take_number(TermManager::kMaxWidth);
  term.bits = line.take_bits(variables);
  if (term.bits.size() != width) {
    line.fail(fmt::format("symbol map: a choice of {} bits, got {}", width, term.bits.size()));
  }
  if (width != 0) term.type = manager.get_bv_type(width);
  return term;
}

}  // namespace

std::string line_symbol(std::string_view name) {
  std::string text = "|";
  for (const char c : name) {
    if (is_control(c) || c == '\\') {
      text += fmt::format("\\x{:02x}", static_cast<unsigned char>(c));
    } else {
      text += c;
    }
  }
  return text + "|";
}

std::vector<std::string> write_symbol_map(const SymbolMap& map) {
  std::vector<std::string> lines = {fmt::format("vorn map {} {}", kVersion, map.variables)};
  for (const MappedTerm& term : map.constants) {
    lines.push_back(fmt::format("vorn constant {} {}{}", line_symbol(term.name),
                                term.type->to_string(), bits_text(term.bits)));
  }
  for (const MappedTerm& term : map.choices) {
    lines.push_back(fmt::format("vorn choice {}{}", term.bits.size(), bits_text(term.bits)));
  }
  return lines;
}

SymbolMap read_symbol_map(TermManager& manager, std::istream& in, const std::string& file) {
  static constexpr std::string_view kStart = "c vorn ";
  SymbolMap map;
  bool has_head = false;
  smt2::Position place;
  for (std::string text; std::getline(in, text); ++place.line) {
    if (text.ends_with('\r')) text.pop_back();
    if (!text.empty() && text[0] != 'c') break;
    if (!text.starts_with(kStart)) continue;
    smt2::Position start = place;
    start.column = kStart.size() + 1;
    LineReader line(manager, std::string_view(text).substr(kStart.size()), file, start);
    const std::string_view kind = line.take_word();
    if (kind == "map") {
      if (has_head) line.fail("symbol map: a second head");
      if (line.take_number(~std::uint32_t{0}) != kVersion) {
        line.fail(fmt::format("symbol map: only version {} is known", kVersion));
      }
      map.variables = line.take_number(kTrueBit - 1);
      has_head = true;
    } else if (!has_head) {
      line.fail("symbol map: its head, 'vorn map', must come first");
    } else if (kind == "constant") {
      map.constants.push_back(read_constant(line, map.variables));
    } else if (kind == "choice") {
      map.choices.push_back(read_choice(manager, line, map.variables));
    } else {
      line.fail(fmt::format("symbol map: unknown entry '{}'", kind));
    }
  }
  if (!has_head) {
    throw smt2::ScriptError(file, place, "there is no symbol map, whose head is 'c vorn map'");
  }
  return map;
}

QNumber read_value(const MappedTerm& term, const bv::Solution& solution) {
  mpz_class value;
  for (std::size_t i = 0; i < term.bits.size(); ++i) {
    const int bit = term.bits[i];
    const bool holds = bit == kTrueBit || (bit != kFalseBit && solution.value(bit));
    if (holds) mpz_setbit(value.get_mpz_t(), term.bits.size() - 1 - i);
  }
  return QNumber::from_mpz(value);
}

}  // namespace vorn::solver
