// Operations are evaluated by the very circuits that a formula gets: the operands are literals, so
// the encoding folds into a literal. Lines share one term manager and one encoder, which are
// replaced now and then, so that the memory in use does not grow with the number of lines.
#include "tools/eval.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tools/solve.h"
#include "vorn/fp/fp_bv_encoder.h"
#include "vorn/terms/bv_number.h"
#include "vorn/terms/term_manager.h"

namespace vorn::tools {
namespace {

constexpr std::uint64_t kTermsOfASession = 1U << 16U;

/// The words of a line, read as its operation asks for them.
struct Request {
  const Term* rm = nullptr;
  std::size_t width = 0;
  std::vector<IEEEFloat::format> formats;
  std::vector<const Term*> operands;
};

struct Operation {
  std::string_view name;
  /// The arguments: r a rounding mode, o one that may be left out since it makes no difference, f a
  /// format "E M", w a width, a an operand of the first format, v one of the width.
  std::string_view arguments;
  const Term* (*build)(TermManager& t, const Request& q);
};

using T = TermManager;
using Q = Request;

constexpr Operation kOperations[] = {
    {"add", "rfaa",
     [](T& t, const Q& q) { return t.make_fp_add(q.rm, q.operands[0], q.operands[1]); }},
    {"sub", "rfaa",
     [](T& t, const Q& q) { return t.make_fp_sub(q.rm, q.operands[0], q.operands[1]); }},
    {"mul", "rfaa",
     [](T& t, const Q& q) { return t.make_fp_mul(q.rm, q.operands[0], q.operands[1]); }},
    {"div", "rfaa",
     [](T& t, const Q& q) { return t.make_fp_div(q.rm, q.operands[0], q.operands[1]); }},
    {"fma", "rfaaa",
     [](T& t, const Q& q) {
       return t.make_fp_fma(q.rm, q.operands[0], q.operands[1], q.operands[2]);
     }},
    {"sqrt", "rfa", [](T& t, const Q& q) { return t.make_fp_sqrt(q.rm, q.operands[0]); }},
    {"rti", "rfa",
     [](T& t, const Q& q) { return t.make_fp_round_to_integral(q.rm, q.operands[0]); }},
    {"rem", "ofaa", [](T& t, const Q& q) { return t.make_fp_rem(q.operands[0], q.operands[1]); }},
    {"min", "ofaa", [](T& t, const Q& q) { return t.make_fp_min(q.operands[0], q.operands[1]); }},
    {"max", "ofaa", [](T& t, const Q& q) { return t.make_fp_max(q.operands[0], q.operands[1]); }},
    {"cast", "rffa",
     [](T& t, const Q& q) {
       return t.make_fp_cast(q.formats[1].e, q.formats[1].m, q.rm, q.operands[0]);
     }},
    {"from_sbv", "rwfv",
     [](T& t, const Q& q) {
       return t.make_fp_from_sbv(q.formats[0].e, q.formats[0].m, q.rm, q.operands[0]);
     }},
    {"from_ubv", "rwfv",
     [](T& t, const Q& q) {
       return t.make_fp_from_ubv(q.formats[0].e, q.formats[0].m, q.rm, q.operands[0]);
     }},
    {"to_sbv", "rfwa",
     [](T& t, const Q& q) { return t.make_fp_to_sbv(q.width, q.rm, q.operands[0]); }},
    {"to_ubv", "rfwa",
     [](T& t, const Q& q) { return t.make_fp_to_ubv(q.width, q.rm, q.operands[0]); }},
    {"neg", "fa", [](T& t, const Q& q) { return t.make_fp_neg(q.operands[0]); }},
    {"abs", "fa", [](T& t, const Q& q) { return t.make_fp_abs(q.operands[0]); }},
    {"isnan", "fa", [](T& t, const Q& q) { return t.make_fp_isnan(q.operands[0]); }},
    {"isinf", "fa", [](T& t, const Q& q) { return t.make_fp_isinf(q.operands[0]); }},
    {"iszero", "fa", [](T& t, const Q& q) { return t.make_fp_iszero(q.operands[0]); }},
    {"isnormal", "fa", [](T& t, const Q& q) { return t.make_fp_isnormal(q.operands[0]); }},
    {"issubnormal", "fa", [](T& t, const Q& q) { return t.make_fp_issubnormal(q.operands[0]); }},
    {"isnegative", "fa", [](T& t, const Q& q) { return t.make_fp_isnegative(q.operands[0]); }},
    {"ispositive", "fa", [](T& t, const Q& q) { return t.make_fp_ispositive(q.operands[0]); }},
    {"eq", "faa", [](T& t, const Q& q) { return t.make_fp_equal(q.operands[0], q.operands[1]); }},
    {"lt", "faa", [](T& t, const Q& q) { return t.make_fp_lt(q.operands[0], q.operands[1]); }},
    {"le", "faa", [](T& t, const Q& q) { return t.make_fp_le(q.operands[0], q.operands[1]); }},
};

const Operation* find_operation(std::string_view name) {
  for (const Operation& operation : kOperations) {
    if (operation.name == name) return &operation;
  }
  return nullptr;
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

/// A term manager with an encoder over it.
class Session {
 public:
  explicit Session(solver::EncoderKind kind) : encoder(solver::make_encoder(kind, terms)) {}

  bool is_full() const { return terms.get_term_count() > kTermsOfASession; }

  std::string answer(const std::vector<std::string>& words) {
    const Operation* operation = find_operation(words.front());
    if (operation == nullptr) {
      throw std::invalid_argument(fmt::format("unknown operation '{}'", words.front()));
    }
    const Request request = read(*operation, words);
    const Term* encoding = encode(operation->build(terms, request));
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
  Request read(const Operation& operation, const std::vector<std::string>& words) {
    std::string_view arguments = operation.arguments;
    std::size_t expected = 0;
    for (const char argument : arguments)
      expected += argument == 'f' ? 2 : 1;
    if (arguments.front() == 'o' && words.size() == expected) {
      arguments.remove_prefix(1);
      --expected;
    }
    if (words.size() != expected + 1) {
      const bool optional = arguments.front() == 'o';
      const std::string wanted =
          optional ? fmt::format("{} or {}", expected - 1, expected) : std::to_string(expected);
      throw std::invalid_argument(
          fmt::format("{} takes {} arguments, got {}", operation.name, wanted, words.size() - 1));
    }
    Request request;
    std::size_t bits = 0;
    const std::string* word = &words[1];
    for (const char argument : arguments) {
      switch (argument) {
        case 'r':
        case 'o':
          request.rm = rounding_mode(terms, *word++);
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
          request.operands.push_back(terms.make_fp_number(pattern(*word++, f.width()), f.e, f.m));
          break;
        }
        default:
          request.operands.push_back(terms.make_bv_number(pattern(*word++, bits), bits));
          break;
      }
    }
    return request;
  }

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

}  // namespace

int evaluate_lines(std::istream& in, std::ostream& out, solver::EncoderKind encoder) {
  auto session = std::make_unique<Session>(encoder);
  std::string line;
  std::vector<std::string> words;
  while (std::getline(in, line)) {
    words.clear();
    std::istringstream split(line);
    for (std::string word; split >> word;)
      words.push_back(word);
    if (session->is_full()) session = std::make_unique<Session>(encoder);
    try {
      if (words.empty()) throw std::invalid_argument("an empty line");
      out << session->answer(words) << '\n';
    } catch (const std::exception& error) {
      out << "error: " << error.what() << '\n';
      session = std::make_unique<Session>(encoder);
    }
    // A generator that waits for the answer must get it; one that writes ahead is not slowed down.
    if (in.rdbuf()->in_avail() <= 0) out.flush();
  }
  out.flush();
  return kDone;
}

}  // namespace vorn::tools
