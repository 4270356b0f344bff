// Values of circuits as text: bits with their fields set apart, and what they stand for.
#ifndef TOOLS_READING_H
#define TOOLS_READING_H

#include <cstddef>
#include <string>

#include "vorn/fp/labels.h"
#include "vorn/solver/explanation.h"
#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"

namespace vorn::tools {

/// The digits of a value in base 2 or 16, with leading zeros up to the width in bits.
std::string digits_text(const QNumber& value, std::size_t width, int base);

/// The bits of a value of that sort: sign, exponent and fraction of a float.
std::string bits_text(const DataType* type, const QNumber& value, std::size_t width);
/// What a value of that sort stands for; `is_signed` is about bit-vectors.
std::string value_text(const DataType* type, const QNumber& value, bool is_signed);

/// Reads the intermediate values of one operation.
class IntermediateReader {
 public:
  explicit IntermediateReader(const solver::Explanation& of) : explanation(of) {}

  std::string bits(std::size_t i) const;
  std::string reading(std::size_t i) const;

 private:
  const solver::Intermediate* find(const std::string& label, std::size_t occurrence) const;
  const DataType* source() const;
  IEEEFloat::format target_format() const;
  const DataType* float_type(fp::Reading reading, std::size_t width) const;
  std::string significand(const solver::Intermediate& value, const fp::Label& label) const;
  std::string magnitude(const solver::Intermediate& value, const fp::Label& label) const;
  std::string exponent_field(const solver::Intermediate& value) const;
  std::string result(const solver::Intermediate& value) const;

  const solver::Explanation& explanation;
};

}  // namespace vorn::tools

#endif
