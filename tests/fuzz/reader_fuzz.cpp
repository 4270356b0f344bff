// Arbitrary bytes as a script. Whatever they are, reading them ends, and the only exception that
// may come of it is ScriptError: any other one leaves the entry point and counts as a crash, as do
// failed assertions and what the sanitizers find. The engine is a stub, so that the reader has the
// time.
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <span>
#include <sstream>
#include <string>

#include "tests/smt2/session.h"

namespace vorn::smt2 {
namespace {

/// Beyond this size inputs find nothing that smaller ones would not.
constexpr std::size_t kMaxSize = std::size_t{1} << 16;

/// All answers without a source of chance, so that an input does the same each time.
class FuzzEngine : public FakeEngine {
 public:
  using FakeEngine::FakeEngine;

  void push() override {
    FakeEngine::push();
    calls.clear();  // a few commands may open a million levels, over and over
  }
  void pop() override {
    FakeEngine::pop();
    calls.clear();
  }
  Answer check_sat(std::span<const Term* const> given) override {
    constexpr Answer kAnswers[] = {Answer::sat, Answer::sat, Answer::unsat, Answer::unknown};
    answer = kAnswers[(assertions.size() + given.size()) % 4];
    failed.clear();
    if (!given.empty()) failed.push_back(given.size() - 1);
    return FakeEngine::check_sat(given);
  }
};

void run(const std::string& text) {
  TermManager mgr;
  FuzzEngine engine(mgr);
  std::ostream nowhere(nullptr);
  Interpreter interpreter(mgr, engine, nowhere);
  try {
    interpreter.run(text, "fuzz.smt2");
  } catch (const ScriptError&) {
    // The script is wrong, and the reader has said so.
  }
}

/// As it comes through a pipe: errors end their command only, so more of the text is executed.
void run_interactive(const std::string& text) {
  TermManager mgr;
  FuzzEngine engine(mgr);
  std::ostream nowhere(nullptr);
  std::istringstream in(text);
  Interpreter interpreter(mgr, engine, nowhere);
  interpreter.run_interactive(in, "fuzz.smt2");
}

}  // namespace
}  // namespace vorn::smt2

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > vorn::smt2::kMaxSize) return 0;
  const std::string text(data, data + size);
  vorn::smt2::run(text);
  vorn::smt2::run_interactive(text);
  return 0;
}
