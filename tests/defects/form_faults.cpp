// Faults of forms, for random scripts to find.
#include <map>

#include "tests/defects/wrap.h"
#include "vorn/reals/forms.h"

namespace vorn::reals {

using defects::is_wanted;

VORN_WRAP(real_find, wrong_find, "_ZNK4vorn5reals5Forms4findEj", const Form*, const Forms* self,
          Forms::Slot slot);
VORN_WRAP(real_interval, wrong_interval, "_ZN4vorn5reals11interval_ofERKNS_6ranges11PropagationEj",
          Interval, const ranges::Propagation& propagation, Forms::Slot slot);
VORN_WRAP(real_period, wrong_period, "_ZN4vorn5reals11find_periodERKNS0_8IntervalEm",
          std::optional<QNumber>, const Interval& interval, std::uint64_t width);

/// Nothing is rounded.
const Form* wrong_find(const Forms* self, Forms::Slot slot) {
  const Form* form = real_find(self, slot);
  if (!is_wanted("form_exact") || form == nullptr) return form;
  static std::map<Forms::Slot, Form> exact;  // two of them are looked at together
  return &exact.insert_or_assign(slot, Form{form->value, QNumber(), form->quantum}).first->second;
}

/// The end is not reached.
Interval wrong_interval(const ranges::Propagation& propagation, Forms::Slot slot) {
  Interval interval = real_interval(propagation, slot);
  if (is_wanted("form_interval_short")) interval.greatest = interval.least;
  return interval;
}

/// No sum of bit-vectors wraps, and no product.
std::optional<QNumber> wrong_period(const Interval& interval, std::uint64_t width) {
  return is_wanted("integers_unbounded") ? QNumber() : real_period(interval, width);
}

}  // namespace vorn::reals
