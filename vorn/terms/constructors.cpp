// The constructor of all operations, which checks operands by their row of the table.
#include <array>
#include <stdexcept>
#include <string>

#include "vorn/terms/operations.h"
#include "vorn/terms/term_manager.h"

namespace vorn {
namespace {

using T = SymbolTag;

[[noreturn]] void fail(const Operation& op, const std::string& what) {
  throw std::invalid_argument(std::string(op.name) + ": " + what);
}

std::string sort_of(const Term* t) {
  return t->get_type()->to_string();
}

[[noreturn]] void fail_width(const Operation& op, const std::string& what) {
  fail(op, what + "; widths go up to " + std::to_string(TermManager::kMaxWidth));
}

[[noreturn]] void fail_whole(const Operation& op, std::span<const Term* const> args,
                             std::size_t width) {
  fail_width(op, "operands of " + sort_of(args[0]) + " and " + sort_of(args[1]) + " make " +
                     std::to_string(width) + " bits");
}

/// An index or element, which follows its array.
void check_part(const Operation& op, std::span<const Term* const> args, std::size_t i) {
  const DataType* array = args[0]->get_type();
  const bool is_index = op.signature.get_arguments()[i].letter == 'I';
  const DataType* wanted = is_index ? array->get_index() : array->get_element();
  if (args[i]->get_type() == wanted) return;
  fail(op, std::string("the ") + (is_index ? "index" : "element") + " must be of " +
               wanted->to_string() + ", got a term of " + sort_of(args[i]));
}

/// Says why `args[i]` is no operand of its place, unless it is one that its kind did not tell of.
void check_operand(const Operation& op, std::span<const Term* const> args, std::size_t i) {
  const Signature::Argument& wanted = op.signature.get_arguments()[i];
  if (wanted.letter == 'I' || wanted.letter == 'E') return check_part(op, args, i);
  if (wanted.like != Signature::kNowhere) {
    fail(op,
         "operands of different sorts, " + sort_of(args[wanted.like]) + " and " + sort_of(args[i]));
  }
  std::string sort = "a bit-vector";
  if (wanted.letter == 'B') sort = "a Bool";
  if (wanted.letter == 'R') sort = "a rounding mode";
  if (wanted.letter == 'F' || wanted.letter == 'G') sort = "a floating-point term";
  if (wanted.letter == 'Y') sort = "an array";
  if (wanted.letter == '1') {
    sort = "a bit-vector of width 1";
    const DataType* type = args[i]->get_type();
    if (type->get_kind() == DataType::Kind::bit_vector && type->get_width() == 1) return;
  }
  fail(op, "expected " + sort + ", got a term of " + sort_of(args[i]));
}

std::uint32_t narrow(std::size_t width) {
  return static_cast<std::uint32_t>(width);
}

/// What a symbol keeps of the widths of a float operation; see Symbol::Indices.
Symbol::Indices find_float_indices(const Operation& op, std::span<const std::size_t> indices,
                                   std::span<const Term* const> args) {
  Symbol::Indices result = {};
  std::size_t count = 0;
  if (op.indexing == Indexing::width) result[count++] = narrow(indices[0]);
  const DataType* operand = args[op.is_rounded() ? 1 : 0]->get_type();
  if (operand->get_kind() == DataType::Kind::floating_point) {
    result[count++] = narrow(operand->get_e());
    result[count++] = narrow(operand->get_m());
  } else if (op.is_rounded()) {
    result[count++] = narrow(operand->get_width());
  }
  if (op.indexing == Indexing::format) {
    result[count++] = narrow(indices[0]);
    result[count++] = narrow(indices[1]);
  }
  return result;
}

}  // namespace

// Operands ------------------------------------------------------------------------------------

/// Circuits are made of small operations, for which a loop is dear.
inline bool TermManager::fits(const Operation& op, std::span<const Term* const> args) const {
  const Signature::Argument* wanted = op.signature.get_arguments().data();
  const auto is_own = [this](const Term* t) { return t != nullptr && t->symbol->owner == this; };
  const auto type_of = [&](std::size_t i) { return args[i]->symbol->output_type; };
  if (args.empty() || args.size() > 3 || !is_own(args[0]) || !wanted[0].fits(type_of(0)->kind)) {
    return false;
  }
  for (std::size_t i = 1; i < args.size(); ++i) {
    if (!is_own(args[i])) return false;
    if (wanted[i].like == i - 1
            ? type_of(i) != type_of(i - 1)
            : wanted[i].like != Signature::kNowhere || !wanted[i].fits(type_of(i)->kind)) {
      return false;
    }
  }
  return true;
}

void TermManager::check_operands(const Operation& op, std::span<const Term* const> args) const {
  const std::span<const Signature::Argument> wanted = op.signature.get_arguments();
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == nullptr) fail(op, "an operand is missing");
    if (args[i]->symbol->owner != this) fail(op, "an operand belongs to another term manager");
    const DataType* type = args[i]->get_type();
    const bool is_right = wanted[i].like == Signature::kNowhere
                              ? wanted[i].fits(type->get_kind())
                              : type == args[wanted[i].like]->get_type();
    if (!is_right) check_operand(op, args, i);
  }
}

const DataType* TermManager::find_indexed_result(const Operation& op,
                                                 std::span<const std::size_t> indices,
                                                 std::span<const Term* const> args) {
  switch (op.indexing) {
    case Indexing::none:
    case Indexing::rotation:
    case Indexing::sort:
      break;
    case Indexing::extraction: {
      const auto [msb, lsb] = std::array{indices[0], indices[1]};
      const std::size_t width = args[0]->get_type()->get_width();
      if (msb >= lsb && msb < width) return get_bv_type(msb - lsb + 1);
      fail(op, "bits " + std::to_string(msb) + " down to " + std::to_string(lsb) +
                   " of a bit-vector of width " + std::to_string(width));
    }
    case Indexing::extension: {
      const std::size_t width = args[0]->get_type()->get_width();
      // The number may be a difference that wrapped around: compare without adding to it.
      if (indices[0] <= kMaxWidth - width) return get_bv_type(width + indices[0]);
      fail_width(op, "a bit-vector of width " + std::to_string(width) + " extended by " +
                         std::to_string(indices[0]) + " bits");
    }
    case Indexing::repetition:
      return get_bv_type(indices[0] * args[0]->get_type()->get_width());
    case Indexing::width:
      return get_bv_type(indices[0]);
    case Indexing::format: {
      const DataType* type = get_fp_type(indices[0], indices[1]);
      if (op.signature.get_letters() != "T") return type;
      const std::size_t width = args[0]->get_type()->get_width();
      if (width == 1 + indices[0] + indices[1]) return type;
      fail(op, "a bit-vector of width " + std::to_string(width) + " is no " + type->to_string());
    }
  }
  return find_result(op, args);
}

const DataType* TermManager::find_result(const Operation& op, std::span<const Term* const> args) {
  const std::uint8_t source = op.signature.get_source();
  const char letter = op.signature.get_result();
  if (letter == 'B') return bool_type;
  if (source != Signature::kNowhere) return args[source]->get_type();
  if (letter == '1') return get_bv_type(1);
  const DataType* first = args[0]->get_type();
  if (letter == 'E') return first->get_element();
  if (letter == 'T') return get_bv_type(first->get_value_width());
  // Two parts make a whole.
  const std::size_t width = first->get_width() + args[1]->get_type()->get_width();
  if (width > kMaxWidth) fail_whole(op, args, width);
  return get_bv_type(width);
}

// Construction --------------------------------------------------------------------------------

const Term* TermManager::make(SymbolTag::tag tag, std::span<const std::size_t> indices,
                              std::span<const Term* const> args) {
  const Operation* op = find_operation(tag);
  if (op == nullptr) {
    throw std::invalid_argument("there is no operation of the kind " +
                                std::to_string(static_cast<std::uint32_t>(tag)));
  }
  if (args.size() == op->signature.get_arguments().size() &&
      indices.size() == op->get_index_count()) {
    return apply(*op, indices, args);
  }
  check_counts(*op, indices.size(), args.size());
  return extend(*op, indices, args);
}

const Term* TermManager::apply(const Operation& op, std::span<const std::size_t> indices,
                               std::span<const Term* const> args) {
  if (op.indexing == Indexing::sort) fail(op, "needs the sort of the array");
  if (!fits(op, args)) check_operands(op, args);
  if (op.derive != nullptr) return op.derive(*this, indices, args);
  if (args.empty()) return make_bool(op.tag == T::bool_true);
  const DataType* type = op.indexing == Indexing::none ? find_result(op, args)
                                                       : find_indexed_result(op, indices, args);
  Symbol::Indices kept = {};
  if (op.theory == Theory::floating_point) {
    kept = find_float_indices(op, indices, args);
  } else if (!indices.empty()) {
    kept = {narrow(indices.front()), indices.size() > 1 ? narrow(indices[1]) : 0};
  }
  return build(op, type, args, kept);
}

/// A binary operation on another number of arguments.
const Term* TermManager::extend(const Operation& op, std::span<const std::size_t> indices,
                                std::span<const Term* const> args) {
  const auto pair = [&](const Term* a, const Term* b) {
    const std::array<const Term*, 2> operands = {a, b};
    return apply(op, indices, operands);
  };
  const std::size_t count = args.size();
  // Only conjunction and disjunction take a single argument, and (and a a) is a.
  const Term* result = pair(args[0], args[count > 1 ? 1 : 0]);
  switch (op.arity) {
    case Arity::fixed:
      break;
    case Arity::left:
    case Arity::left_from_one:
      for (std::size_t i = 2; i < count; ++i)
        result = pair(result, args[i]);
      break;
    case Arity::right:
      result = args[count - 1];
      for (std::size_t i = count - 1; i-- > 0;)
        result = pair(args[i], result);
      break;
    case Arity::chainable:
      for (std::size_t i = 2; i < count; ++i)
        result = make_and(result, pair(args[i - 1], args[i]));
      break;
    case Arity::pairwise:
      for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t j = i + 1; j < count; ++j) {
          if (j > 1) result = make_and(result, pair(args[i], args[j]));
        }
      }
      break;
  }
  return result;
}

const Term* TermManager::make_select(const Term* a, const Term* i) {
  return apply(T::array_select, {a, i});
}

const Term* TermManager::make_store(const Term* a, const Term* i, const Term* v) {
  return apply(T::array_store, {a, i, v});
}

const Term* TermManager::make_const_array(const DataType* type, const Term* v) {
  const Operation& op = *find_operation(T::array_const);
  if (type == nullptr || !owns(type) || type->get_kind() != DataType::Kind::array) {
    fail(op, "expected an array sort" + (type == nullptr ? "" : ", got " + type->to_string()));
  }
  if (!owns(v)) fail(op, "an operand is missing or belongs to another term manager");
  if (v->get_type() != type->get_element()) {
    fail(op, "the element must be of " + type->get_element()->to_string() + ", got a term of " +
                 sort_of(v));
  }
  return build(op, type, {&v, 1}, {});
}

const Term* TermManager::rebuild(const Term* t, std::span<const Term* const> args) {
  const Operation* op = find_operation(t->get_tag());
  bool same_sorts = args.size() == t->get_arity() && t->get_symbol()->owner == this;
  for (std::size_t i = 0; same_sorts && i < args.size(); ++i) {
    same_sorts = args[i]->get_type() == t->get_arg(i)->get_type();
  }
  if (!same_sorts) {
    throw std::invalid_argument(std::string(op != nullptr ? op->name : "a constant") +
                                ": can only be rebuilt on arguments of the same sorts");
  }
  if (args.empty()) return t;
  if (t->get_symbol()->is_function()) return intern_term(t->get_symbol(), args);
  return build(*op, t->get_type(), args, t->get_symbol()->get_indices());
}

}  // namespace vorn
