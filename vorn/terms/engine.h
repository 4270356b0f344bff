// What the command interpreter asks of a solver. The interpreter knows no more of it, so that the
// solver may be anything that decides terms, and a test can put a stub in its place.
#ifndef VORN_TERMS_ENGINE_H
#define VORN_TERMS_ENGINE_H

#include <cstddef>
#include <cstdint>
#include <exception>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "vorn/terms/term.h"
#include "vorn/utils/export.h"

namespace vorn {

/// The answer to check-sat.
enum class Answer : std::uint8_t { sat, unsat, unknown };

/// A function by its values, in the form of get_value.
struct FunctionValue {
  /// Values of the arguments, and that of the function there.
  struct Entry {
    /// Literals, one for each argument.
    std::vector<const Term*> arguments;
    /// A literal.
    const Term* value = nullptr;
  };
  /// No two have the same arguments.
  std::vector<Entry> entries;
  /// The value everywhere else.
  const Term* otherwise = nullptr;
};

/// The engine found that it is wrong itself. The session cannot go on.
class VORN_EXPORT InternalError : public std::logic_error {
 public:
  using std::logic_error::logic_error;
};

/// Whether an error is a defect of the program and not of what it was given: an InternalError and
/// every other std::logic_error, whoever threw it, but for std::invalid_argument, which refuses an
/// input, and std::length_error, which says that there is no room.
inline bool is_internal(const std::exception& error) {
  return dynamic_cast<const std::logic_error*>(&error) != nullptr &&
         dynamic_cast<const std::invalid_argument*>(&error) == nullptr &&
         dynamic_cast<const std::length_error*>(&error) == nullptr;
}

/// A stack of assertions and a decision procedure for it. All terms belong to the manager that the
/// interpreter builds terms with. What an engine does not support it refuses with a
/// std::invalid_argument or std::runtime_error whose message names it. An exception for which
/// is_internal holds ends the session.
class VORN_EXPORT Engine {
 public:
  Engine() = default;
  virtual ~Engine() = default;
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  /// Adds a Boolean term to the current level.
  virtual void assert_formula(const Term* f) = 0;
  /// Opens a level.
  virtual void push() = 0;
  /// Drops the current level with its assertions.
  virtual void pop() = 0;
  /// Decides the conjunction of all assertions and of the assumptions, Boolean terms that hold for
  /// this call only.
  virtual Answer check_sat(std::span<const Term* const> assumptions) = 0;
  /// After unsat: positions of assumptions that, together with the assertions, are unsatisfiable.
  virtual std::vector<std::size_t> get_unsat_assumptions() = 0;
  /// After sat: the value of t in the model, as a literal, true, false or a rounding-mode constant,
  /// or an array made of such; also of terms over constants that occur in no assertion.
  virtual const Term* get_value(const Term* t) = 0;
  /// After sat: the value of an uninterpreted function.
  virtual FunctionValue get_function(const Symbol* function) = 0;
  /// After unknown: why.
  virtual std::string get_reason_unknown() const = 0;
  /// Drops all assertions and all levels.
  virtual void reset_assertions() = 0;
  /// Drops the manager's terms that neither the assertions nor `kept` need, and any model with
  /// them.
  virtual void collect_garbage(std::span<const Term* const> kept) = 0;
  /// Where decisions are left to chance, later ones depend on this number. A model may be dropped.
  virtual void set_seed(std::uint32_t seed) = 0;
};

}  // namespace vorn

#endif
