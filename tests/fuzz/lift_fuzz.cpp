// Arbitrary bytes as the files of `vorn lift`: the map, a line %%, the solution, and after another
// such line, if there is one, the script to check the model with. Whatever they are, the program
// has to end with an answer or an error of the input, not one of its own.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <ostream>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "tests/fuzz/limits.h"
#include "tools/lift.h"
#include "tools/solve.h"
#include "vorn/smt2/error.h"
#include "vorn/smt2/interpreter.h"
#include "vorn/terms/engine.h"
#include "vorn/terms/term_manager.h"

namespace vorn::fuzz {
namespace {

/// Reads the script as `vorn lift` will, which ends at the first check, but builds no circuit.
class Measure final : public Engine {
 public:
  void assert_formula(const Term* f) override { size.admit(std::span(&f, 1)); }
  void push() override {}
  void pop() override {}
  Answer check_sat(std::span<const Term* const> assumed) override {
    size.admit(assumed);
    throw Checked();
  }
  std::vector<std::size_t> get_unsat_assumptions() override { return {}; }
  const Term* get_value(const Term* t) override { return t; }
  FunctionValue get_function(const Symbol* /*function*/) override { return {}; }
  std::string get_reason_unknown() const override { return ""; }
  void reset_assertions() override {}
  void collect_garbage(std::span<const Term* const> /*kept*/) override {}
  void set_seed(std::uint32_t /*number*/) override {}

  struct Checked {};

 private:
  SizeLimit size;
};

/// Whether the script has a check, before which there is nothing large.
bool is_small(const std::string& script) {
  TermManager mgr;
  Measure engine;
  std::ostream nowhere(nullptr);
  smt2::Interpreter interpreter(mgr, engine, nowhere);
  try {
    interpreter.run(script, "fuzz.smt2");
  } catch (const Measure::Checked&) {
    return true;
  } catch (const smt2::ScriptError&) {
    return false;
  }
  return false;
}

/// Parts of the input, cut at lines that say %%.
std::vector<std::string> cut(const std::string& text) {
  const std::string mark = "\n%%\n";
  std::vector<std::string> parts;
  std::size_t start = 0;
  for (std::size_t end = text.find(mark); end != std::string::npos; end = text.find(mark, start)) {
    parts.push_back(text.substr(start, end - start) + "\n");
    start = end + mark.size();
  }
  parts.push_back(text.substr(start));
  return parts;
}

/// Catches what goes to a standard stream.
class Capture {
 public:
  explicit Capture(std::ostream& of) : stream(of), saved(of.rdbuf(text.rdbuf())) {}
  Capture(const Capture&) = delete;
  Capture& operator=(const Capture&) = delete;
  ~Capture() { stream.rdbuf(saved); }
  std::string get_text() const { return text.str(); }

 private:
  std::ostringstream text;
  std::ostream& stream;
  std::streambuf* saved;
};

/// A folder of this process.
class Folder {
 public:
  Folder()
      : path(std::filesystem::temp_directory_path() /
             ("vorn-lift-fuzz-" + std::to_string(::getpid()))) {
    std::filesystem::create_directories(path);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() { std::filesystem::remove_all(path); }

  std::string write(const char* name, const std::string& text) const {
    const std::filesystem::path file = path / name;
    std::ofstream(file, std::ios::binary) << text;
    return file.string();
  }

 private:
  std::filesystem::path path;
};

void lift(const std::vector<std::string>& parts) {
  static const Folder folder;
  tools::LiftOptions options;
  options.map = folder.write("map", parts[0]);
  options.solution = folder.write("solution", parts[1]);
  if (parts.size() > 2) options.script = folder.write("script", parts[2]);
  int status = tools::kDone;
  std::string errors;
  {
    const Capture out(std::cout);
    const Capture err(std::cerr);
    status = tools::lift(options);
    errors = err.get_text();
  }
  if (status != tools::kDone && status != tools::kInputError) report(errors);
}

}  // namespace
}  // namespace vorn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vorn;
  if (size > fuzz::kMaxSize) return 0;
  const std::vector<std::string> parts = fuzz::cut(std::string(data, data + size));
  if (parts.size() != 2 && parts.size() != 3) return 0;
  if (parts.size() == 3 && !fuzz::is_small(parts[2])) return 0;
  fuzz::lift(parts);
  return 0;
}
