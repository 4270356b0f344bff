// Sets of terms by identifier.
#ifndef VORN_TERMS_TERM_SET_H
#define VORN_TERMS_TERM_SET_H

#include <bitset>
#include <cstddef>
#include <memory>
#include <vector>

#include "vorn/terms/term.h"

namespace vorn {

/// A set of terms of one manager, none of which is dropped meanwhile: a bit for each identifier, in
/// pages that are there once a term of theirs is, so that a few terms with large identifiers cost
/// little.
class TermSet {
 public:
  /// True where `t` is new.
  bool insert(const Term* t) {
    const std::size_t page = t->get_id() / kPageBits;
    if (page >= pages.size()) pages.resize(page + 1);
    if (!pages[page]) pages[page] = std::make_unique<Page>();
    auto bit = (*pages[page])[t->get_id() % kPageBits];
    const bool is_new = !bit;
    bit = true;
    return is_new;
  }
  bool contains(const Term* t) const {
    const std::size_t page = t->get_id() / kPageBits;
    return page < pages.size() && pages[page] && (*pages[page])[t->get_id() % kPageBits];
  }

 private:
  static constexpr std::size_t kPageBits = 4096;
  using Page = std::bitset<kPageBits>;

  std::vector<std::unique_ptr<Page>> pages;
};

}  // namespace vorn

#endif
