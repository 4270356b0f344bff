// What an expression of a script stands for while it is read.
//
// Besides terms there are real numbers: literals and what is computed from them. No term has the
// sort Real; such a value lives only until `to_fp` rounds it to a format.
#ifndef VORN_SMT2_VALUE_H
#define VORN_SMT2_VALUE_H

#include <memory>

#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"

namespace vorn::smt2 {

/// A term or a real number: exactly one pointer is set.
struct Value {
  const Term* term = nullptr;
  std::shared_ptr<const QNumber> real = nullptr;

  static Value of(const Term* t) { return {t, nullptr}; }
  static Value of(const QNumber& number) {
    return {nullptr, std::make_shared<const QNumber>(number)};
  }
};

}  // namespace vorn::smt2

#endif
