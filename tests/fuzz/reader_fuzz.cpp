// Arbitrary bytes as a script. Whatever they are, reading them ends, and the only exception that
// may come of it is ScriptError: any other one leaves the entry point and counts as a crash, as do
// failed assertions and what the sanitizers find. The engine is a stub, so that the reader has the
// time.
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <span>
#include <string>

#include "tests/smt2/session.h"

namespace vorn::smt2 {
namespace {

/// Beyond this size inputs find nothing that smaller ones would not.
constexpr std::size_t kMaxSize = std::size_t{1} << 16;

/// Both answers without a source of chance, so that an input does the same each time.
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
    answer = (assertions.size() + given.size()) % 4 == 3 ? Answer::unknown : Answer::sat;
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

}  // namespace
}  // namespace vorn::smt2

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size <= vorn::smt2::kMaxSize) vorn::smt2::run(std::string(data, data + size));
  return 0;
}
