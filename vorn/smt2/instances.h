// What applications of defined functions have become, so that an application that comes again is
// not worked out again, and no body is searched for its parameters twice.
//
// Functions are known here by their first parameter, a constant of their own. Terms that a manager
// drops may come back as others, so everything is forgotten when it has dropped some; and when
// there is too much, since what is forgotten is found again.
#ifndef VORN_SMT2_INSTANCES_H
#define VORN_SMT2_INSTANCES_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/export.h"

namespace vorn::smt2 {

class VORN_EXPORT InstanceCache {
 public:
  /// The first parameter of a function and the arguments of an application.
  using Application = std::vector<const Term*>;

  /// To be called before anything else, whenever terms may have been dropped.
  void renew(const TermManager& manager);

  /// Null when the application is not known.
  const Term* find(const Application& application) const;
  void add(const Application& application, const Term* instance);

  /// The terms of the function's body with parameters in them, arguments first; null when they are
  /// not known. To be used before the next call.
  const std::vector<const Term*>* find_dependents(const Term* first_parameter) const;
  const std::vector<const Term*>& add_dependents(const Term* first_parameter,
                                                 std::vector<const Term*> terms);

 private:
  struct Hash {
    std::size_t operator()(const Application& application) const;
  };

  /// Some tens of megabytes.
  static constexpr std::size_t kMaxPointers = std::size_t{1} << 20;

  void make_room(std::size_t pointers);

  std::unordered_map<Application, const Term*, Hash> instances;
  std::unordered_map<std::uint64_t, std::vector<const Term*>> dependents;  // by identifier
  std::size_t size = 0;                                                    // of both, in pointers
  std::uint64_t collections = 0;
};

}  // namespace vorn::smt2

#endif
