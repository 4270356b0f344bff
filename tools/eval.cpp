// Operations are evaluated by the very circuits that a formula gets: the operands are literals, so
// the encoding folds into a literal. Lines share one term manager and one encoder, which are
// replaced now and then, so that the memory in use does not grow with the number of lines.
#include "tools/eval.h"

#include <fmt/format.h>

#include <exception>
#include <memory>
#include <new>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/defect.h"
#include "tools/operation.h"
#include "tools/solve.h"
#include "vorn/fp/fp_bv_encoder.h"
#include "vorn/terms/engine.h"
#include "vorn/terms/term_manager.h"

namespace vorn::tools {
namespace {

constexpr std::uint64_t kTermsOfASession = 1U << 16U;

/// A term manager with an encoder over it.
class Session {
 public:
  explicit Session(solver::EncoderKind kind) : encoder(solver::make_encoder(kind, terms)) {}

  bool is_full() const { return terms.get_term_count() > kTermsOfASession; }

  std::string answer(const std::vector<std::string>& words) {
    const Term* encoding = encode(read_operation(terms, words));
    if (terms.is_bool_type(encoding->get_type())) {
      return encoding == terms.make_true() ? "1" : "0";
    }
    QNumber bits;
    // Operands are literals: what does not fold is what the theory leaves open.
    if (!terms.is_number(encoding, &bits)) return "unspecified";
    const std::string digits = bits.to_string(16);
    const std::size_t length = (encoding->get_type()->get_width() + 3) / 4;
    return std::string(length - digits.size(), '0') + digits;
  }

 private:
  const Term* encode(const Term* t) {
    if (!encoder->supports(t->get_tag())) {
      throw std::invalid_argument("not supported by this encoder");
    }
    for (const Term* arg : t->get_args()) {
      // Left to itself, the encoder would put a fresh constant for a bit-vector.
      const bool bits = terms.is_bv_type(arg->get_type(), nullptr);
      if (bits && encoder->get_cached(arg) == nullptr) encoder->define_encoding(arg, arg);
    }
    try {
      return encoder->get_bv_encoding(t, &constraints);
    } catch (const std::invalid_argument& error) {
      throw std::invalid_argument(fmt::format("not supported by this encoder: {}", error.what()));
    }
  }

  TermManager terms;
  std::unique_ptr<fp::FpBvEncoder> encoder;
  std::vector<const Term*> constraints;
};

std::vector<std::string> split_line(const std::string& line) {
  std::vector<std::string> words;
  std::istringstream split(line);
  for (std::string word; split >> word;)
    words.push_back(word);
  if (words.empty()) throw std::invalid_argument("an empty line");
  return words;
}

bool is_out_of_memory(const std::exception& error) {
  return dynamic_cast<const std::bad_alloc*>(&error) != nullptr;
}

bool is_limit(const std::exception& error) {
  return is_out_of_memory(error) || dynamic_cast<const std::length_error*>(&error) != nullptr;
}

std::string describe_refusal(const std::exception& error) {
  return is_out_of_memory(error) ? "out of memory" : error.what();
}

}  // namespace

int evaluate_lines(std::istream& in, std::ostream& out, solver::EncoderKind encoder) {
  auto session = std::make_unique<Session>(encoder);
  int status = kDone;
  std::string line;
  while (std::getline(in, line)) {
    if (session->is_full()) session = std::make_unique<Session>(encoder);
    std::string answer;
    try {
      answer = session->answer(split_line(line));
    } catch (const std::exception& error) {
      if (is_internal(error)) return report_defect(error, "with the line: " + line);
      session.reset();  // what it holds may be all the memory there is
      session = std::make_unique<Session>(encoder);
      answer = fmt::format("error: {}", describe_refusal(error));
      if (is_limit(error)) status = kLimitReached;
    }
    out << answer << '\n' << std::flush;  // whoever waits for the answer has to get it
  }
  return status;
}

}  // namespace vorn::tools
