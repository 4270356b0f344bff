// Arbitrary lines of `vorn eval`, by both encoders. Each line has to get one answer, and what the
// exact circuits answer has to be what software floats make of the same operation.
#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <span>
#include <sstream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "tests/fuzz/limits.h"
#include "tools/eval.h"
#include "tools/operation.h"
#include "tools/solve.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/terms/ieee_float.h"
#include "vorn/terms/term_manager.h"

namespace vorn::fuzz {
namespace {

/// Widths of operands, where a line asks for circuits that a machine can build in no time.
constexpr std::size_t kMaxWidth = 70;
constexpr std::size_t kMaxLines = 40;
/// Widths come within that many words.
constexpr std::size_t kHead = 6;

std::vector<std::string> split(const std::string& line) {
  std::istringstream in(line);
  std::vector<std::string> words;
  for (std::string word; in >> word;)
    words.push_back(word);
  return words;
}

/// Whether the word may be taken for a width beyond the limit.
bool is_wide(const std::string& word) {
  std::size_t value = 0;
  const char* end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, value);
  return error == std::errc() && stop == end && value > kMaxWidth && value < TermManager::kMaxWidth;
}

/// Whether no width of the line is.
bool is_narrow(std::span<const std::string> words) {
  return std::ranges::none_of(words.first(std::min(words.size(), kHead)), is_wide);
}

std::vector<std::string> answer(const std::vector<std::string>& lines,
                                solver::EncoderKind encoder) {
  std::string text;
  for (const std::string& line : lines)
    text += line + '\n';
  std::istringstream in(text);
  std::ostringstream out;
  if (tools::evaluate_lines(in, out, encoder) != tools::kDone)
    report("the program is wrong itself");
  std::istringstream printed(out.str());
  std::vector<std::string> answers;
  for (std::string line; std::getline(printed, line);)
    answers.push_back(line);
  if (answers.size() != lines.size()) report("lines and answers are not as many");
  return answers;
}

bool is_nan(const DataType* type, const QNumber& bits) {
  return type->get_kind() == DataType::Kind::floating_point &&
         IEEEFloat::from_bits(type->get_format(), bits).is_nan();
}

/// Compares what the circuits answered with exact arithmetic. Circuits that only choose among
/// patterns, such as that of the absolute value, leave a NaN its own.
void check(const std::string& line, const std::string& by_circuits) {
  if (by_circuits.starts_with("error: ")) return;
  TermManager terms;
  const Term* t = tools::read_operation(terms, split(line));
  bool is_open = false;
  semantics::Evaluator evaluator(
      terms, [](const Term*) -> QNumber { throw std::logic_error("a constant in a line"); },
      [&is_open](const Term*, std::span<const QNumber>) {
        is_open = true;
        return QNumber(0);
      });
  const QNumber value = evaluator.evaluate(t);
  const bool unspecified = by_circuits == "unspecified";
  if (is_open != unspecified)
    report(line + ": " + by_circuits + ", which is wrong about open values");
  if (unspecified) return;
  const QNumber answered = QNumber::from_string(by_circuits, 16);
  const DataType* type = t->get_type();
  if (answered != value && !(is_nan(type, answered) && is_nan(type, value))) {
    report(line + ": " + by_circuits + ", but it is " + value.to_string(16));
  }
}

}  // namespace
}  // namespace vorn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vorn;
  if (size > fuzz::kMaxSize) return 0;
  std::istringstream in(std::string(data, data + size));
  std::vector<std::string> lines;
  for (std::string line; lines.size() < fuzz::kMaxLines && std::getline(in, line);) {
    if (fuzz::is_narrow(fuzz::split(line))) lines.push_back(line);
  }
  const std::vector<std::string> answers = fuzz::answer(lines, solver::EncoderKind::ieee);
  for (std::size_t i = 0; i < lines.size(); ++i)
    fuzz::check(lines[i], answers[i]);
  fuzz::answer(lines, solver::EncoderKind::base);
  return 0;
}
