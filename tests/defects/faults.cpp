// Faults for the command, to see what it makes of them. The linker sends every call of the encoder
// here (--wrap): the variable FAULT of the environment says what is thrown in its place.
#include <cstdlib>
#include <new>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "vorn/fp/fp_bv_encoder.h"
#include "vorn/terms/engine.h"

namespace vorn {
namespace {

struct Fault {
  std::string_view name;
  void (*raise)();
};

const Fault kFaults[] = {
    {"internal_error", [] { throw InternalError("internal error: planted"); }},
    {"logic_error", [] { throw std::logic_error("planted"); }},
    {"out_of_range", [] { throw std::out_of_range("planted"); }},
    {"domain_error", [] { throw std::domain_error("planted"); }},
    {"invalid_argument", [] { throw std::invalid_argument("planted"); }},
    {"length_error", [] { throw std::length_error("planted"); }},
    {"runtime_error", [] { throw std::runtime_error("planted"); }},
    {"bad_alloc", [] { throw std::bad_alloc(); }},
};

using Constraints = std::vector<const Term*>;

}  // namespace

const Term* encode(fp::FpBvEncoder* encoder, const Term* t, Constraints* out) __asm__(
    "__real__ZN4vorn2fp11FpBvEncoder15get_bv_encodingEPKNS_4TermEPSt6vectorIS4_SaIS4_EE");
const Term* fail_to_encode(fp::FpBvEncoder* encoder, const Term* t, Constraints* out) __asm__(
    "__wrap__ZN4vorn2fp11FpBvEncoder15get_bv_encodingEPKNS_4TermEPSt6vectorIS4_SaIS4_EE");

const Term* fail_to_encode(fp::FpBvEncoder* encoder, const Term* t, Constraints* out) {
  const char* name = std::getenv("FAULT");
  for (const Fault& fault : kFaults) {
    if (name != nullptr && fault.name == name) fault.raise();
  }
  return encode(encoder, t, out);
}

}  // namespace vorn
