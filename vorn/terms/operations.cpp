#include "vorn/terms/operations.h"

#include <stdexcept>
#include <string>

#include "vorn/terms/derived.h"

// The switch below has no default: what is missing there is an error.
#pragma GCC diagnostic error "-Wswitch"

namespace vorn {
namespace {

using T = SymbolTag;
using enum Arity;
using enum Indexing;

constexpr bool kCommutative = true;

constexpr Operation core(std::string_view name, Signature signature, Arity arity = fixed,
                         bool is_commutative = false) {
  Operation row;
  row.name = name;
  row.signature = signature;
  row.arity = arity;
  row.is_commutative = is_commutative;
  return row;
}

constexpr Operation bits(std::string_view name, Signature signature, Arity arity = fixed,
                         bool is_commutative = false) {
  Operation row = core(name, signature, arity, is_commutative);
  row.theory = Theory::bit_vectors;
  return row;
}

constexpr Operation arrays(std::string_view name, Signature signature) {
  Operation row = core(name, signature);
  row.theory = Theory::arrays;
  return row;
}

/// An operation on floats whose circuit can be explained.
constexpr Operation floats(std::string_view name, Signature signature, std::string_view short_name,
                           Arity arity = fixed) {
  Operation row = core(name, signature, arity);
  row.theory = Theory::floating_point;
  row.is_explained = true;
  row.short_name = short_name;
  return row;
}

constexpr Operation indexed(Operation row, Indexing indexing) {
  row.indexing = indexing;
  return row;
}

constexpr Operation open(Operation row) {
  row.is_open = true;
  return row;
}

constexpr Operation unexplained(Operation row) {
  row.is_explained = false;
  return row;
}

constexpr Operation printed_only(Operation row) {
  row.is_printed_only = true;
  return row;
}

constexpr Operation derived(Operation row, Operation::Derive derive) {
  row.derive = derive;
  row.is_explained = false;
  return row;
}

/// The rows. A name with four kinds, to_fp, is resolved by the reader.
constexpr Operation describe(SymbolTag::tag tag) {
  switch (tag) {
    case T::none:
      break;

    // Core
    case T::bool_true:
      return core("true", "B:");
    case T::bool_false:
      return core("false", "B:");
    case T::bool_not:
      return core("not", "B:B");
    case T::bool_and:
      return core("and", "B:BB", left_from_one, kCommutative);
    case T::bool_or:
      return core("or", "B:BB", left_from_one, kCommutative);
    case T::bool_xor:
      return core("xor", "B:BB", left, kCommutative);
    case T::bool_implies:
      return core("=>", "B:BB", right);
    case T::bool_iff:
      return printed_only(core("=", "B:BB", chainable, kCommutative));
    case T::equal:
      return core("=", "B:AA", chainable, kCommutative);
    case T::distinct:
      return derived(core("distinct", "B:AA", pairwise), derive_distinct);
    case T::ite:
      return core("ite", "A:BAA");

    // Bit-vectors
    case T::bv_extract:
      return indexed(bits("extract", "V:X"), extraction);
    case T::bv_concat:
      return bits("concat", "V:HL", left);
    case T::bv_zero_extend:
      return indexed(bits("zero_extend", "V:N"), extension);
    case T::bv_sign_extend:
      return indexed(bits("sign_extend", "V:N"), extension);
    case T::bv_repeat:
      return derived(indexed(bits("repeat", "V:D"), repetition), derive_repeat);
    case T::bv_rotate_left:
      return derived(indexed(bits("rotate_left", "V:V"), rotation), derive_rotate_left);
    case T::bv_rotate_right:
      return derived(indexed(bits("rotate_right", "V:V"), rotation), derive_rotate_right);
    case T::bv_not:
      return bits("bvnot", "V:V");
    case T::bv_neg:
      return bits("bvneg", "V:V");
    case T::bv_and:
      return bits("bvand", "V:VV", left, kCommutative);
    case T::bv_or:
      return bits("bvor", "V:VV", left, kCommutative);
    case T::bv_xor:
      return bits("bvxor", "V:VV", left, kCommutative);
    case T::bv_nand:
      return derived(bits("bvnand", "V:VV"), derive_bv_nand);
    case T::bv_nor:
      return derived(bits("bvnor", "V:VV"), derive_bv_nor);
    case T::bv_xnor:
      return derived(bits("bvxnor", "V:VV", left), derive_bv_xnor);
    case T::bv_add:
      return bits("bvadd", "V:VV", left, kCommutative);
    case T::bv_sub:
      return bits("bvsub", "V:VV");
    case T::bv_mul:
      return bits("bvmul", "V:VV", left, kCommutative);
    case T::bv_udiv:
      return bits("bvudiv", "V:VV");
    case T::bv_urem:
      return bits("bvurem", "V:VV");
    case T::bv_sdiv:
      return bits("bvsdiv", "V:VV");
    case T::bv_srem:
      return bits("bvsrem", "V:VV");
    case T::bv_smod:
      return bits("bvsmod", "V:VV");
    case T::bv_shl:
      return bits("bvshl", "V:VV");
    case T::bv_lshr:
      return bits("bvlshr", "V:VV");
    case T::bv_ashr:
      return bits("bvashr", "V:VV");
    case T::bv_comp:
      return bits("bvcomp", "1:VV", fixed, kCommutative);
    case T::bv_ult:
      return bits("bvult", "B:VV");
    case T::bv_ule:
      return bits("bvule", "B:VV");
    case T::bv_ugt:
      return derived(bits("bvugt", "B:VV"), derive_bv_ugt);
    case T::bv_uge:
      return derived(bits("bvuge", "B:VV"), derive_bv_uge);
    case T::bv_slt:
      return bits("bvslt", "B:VV");
    case T::bv_sle:
      return bits("bvsle", "B:VV");
    case T::bv_sgt:
      return derived(bits("bvsgt", "B:VV"), derive_bv_sgt);
    case T::bv_sge:
      return derived(bits("bvsge", "B:VV"), derive_bv_sge);
    case T::bv_nego:
      return derived(bits("bvnego", "B:V"), derive_bv_nego);
    case T::bv_uaddo:
      return derived(bits("bvuaddo", "B:VV"), derive_bv_uaddo);
    case T::bv_saddo:
      return derived(bits("bvsaddo", "B:VV"), derive_bv_saddo);
    case T::bv_usubo:
      return derived(bits("bvusubo", "B:VV"), derive_bv_usubo);
    case T::bv_ssubo:
      return derived(bits("bvssubo", "B:VV"), derive_bv_ssubo);
    case T::bv_umulo:
      return derived(bits("bvumulo", "B:VV"), derive_bv_umulo);
    case T::bv_smulo:
      return derived(bits("bvsmulo", "B:VV"), derive_bv_smulo);
    case T::bv_sdivo:
      return derived(bits("bvsdivo", "B:VV"), derive_bv_sdivo);
    case T::bv_redor:
      return derived(bits("bvredor", "1:V"), derive_bv_redor);
    case T::bv_redand:
      return derived(bits("bvredand", "1:V"), derive_bv_redand);
    case T::bv_redxor:
      return derived(bits("bvredxor", "1:V"), derive_bv_redxor);
    case T::bv_ite:
      return derived(bits("bvite", "V:1VV"), derive_bv_ite);

    // Floats
    case T::fp_from_bits:
      return unexplained(indexed(floats("to_fp", "F:T", ""), format));
    case T::fp_equal:
      return floats("fp.eq", "B:FF", "eq", chainable);
    case T::fp_lt:
      return floats("fp.lt", "B:FF", "lt", chainable);
    case T::fp_le:
      return floats("fp.leq", "B:FF", "le", chainable);
    case T::fp_gt:
      return derived(floats("fp.gt", "B:FF", "", chainable), derive_fp_gt);
    case T::fp_ge:
      return derived(floats("fp.geq", "B:FF", "", chainable), derive_fp_ge);
    case T::fp_neg:
      return floats("fp.neg", "F:F", "neg");
    case T::fp_add:
      return floats("fp.add", "F:RFF", "add");
    case T::fp_sub:
      return floats("fp.sub", "F:RFF", "sub");
    case T::fp_mul:
      return floats("fp.mul", "F:RFF", "mul");
    case T::fp_div:
      return floats("fp.div", "F:RFF", "div");
    case T::fp_cast:
      return indexed(floats("to_fp", "F:RG", "cast"), format);
    case T::fp_from_sbv:
      return indexed(floats("to_fp", "F:RW", "from_sbv"), format);
    case T::fp_from_ubv:
      return indexed(floats("to_fp_unsigned", "F:RW", "from_ubv"), format);
    case T::fp_to_sbv:
      return open(indexed(floats("fp.to_sbv", "V:RF", "to_sbv"), width));
    case T::fp_to_ubv:
      return open(indexed(floats("fp.to_ubv", "V:RF", "to_ubv"), width));
    case T::fp_isnan:
      return floats("fp.isNaN", "B:F", "isnan");
    case T::fp_isinf:
      return floats("fp.isInfinite", "B:F", "isinf");
    case T::fp_iszero:
      return floats("fp.isZero", "B:F", "iszero");
    case T::fp_abs:
      return floats("fp.abs", "F:F", "abs");
    case T::fp_min:
      return open(floats("fp.min", "F:FF", "min"));
    case T::fp_max:
      return open(floats("fp.max", "F:FF", "max"));
    case T::fp_sqrt:
      return floats("fp.sqrt", "F:RF", "sqrt");
    case T::fp_fma:
      return floats("fp.fma", "F:RFFF", "fma");
    case T::fp_rem:
      return floats("fp.rem", "F:FF", "rem");
    case T::fp_round_to_integral:
      return floats("fp.roundToIntegral", "F:RF", "rti");
    case T::fp_isnormal:
      return floats("fp.isNormal", "B:F", "isnormal");
    case T::fp_issubnormal:
      return floats("fp.isSubnormal", "B:F", "issubnormal");
    case T::fp_isnegative:
      return floats("fp.isNegative", "B:F", "isnegative");
    case T::fp_ispositive:
      return floats("fp.isPositive", "B:F", "ispositive");
    case T::fp_to_bits:
      return floats("fp.to_ieee_bv", "T:F", "");

    // Arrays
    case T::array_select:
      return arrays("select", "E:YI");
    case T::array_store:
      return arrays("store", "Y:YIE");
    case T::array_const:
      return indexed(arrays("const", "Y:E"), sort);
  }
  return {};
}

constexpr std::size_t count_rows() {
  std::size_t count = 0;
  for (std::uint32_t tag = 0; tag < T::kLimit; ++tag)
    count += describe(static_cast<T::tag>(tag)).name.empty() ? 0 : 1;
  return count;
}

constexpr auto make_rows() {
  std::array<Operation, count_rows()> rows;
  std::size_t next = 0;
  for (std::uint32_t number = 0; number < T::kLimit; ++number) {
    const auto tag = static_cast<T::tag>(number);
    Operation row = describe(tag);
    row.tag = tag;
    if (!row.name.empty()) rows[next++] = row;
  }
  return rows;
}

constexpr auto kRows = make_rows();

constexpr std::array<const Operation*, T::kLimit> kByTag = [] {
  std::array<const Operation*, T::kLimit> index = {};
  for (const Operation& row : kRows)
    index[row.tag] = &row;
  return index;
}();

}  // namespace

const Operation* find_operation(SymbolTag::tag tag) {
  return tag < kByTag.size() ? kByTag[tag] : nullptr;
}

std::span<const Operation> get_operations() {
  return kRows;
}

void check_count(std::string_view name, Noun noun, std::size_t count, std::size_t least,
                 std::size_t most) {
  if (count >= least && count <= most) return;
  std::string wanted = std::to_string(least);
  if (most == 0) {
    wanted = "no";
  } else if (most == kAnyNumber) {
    wanted = "at least " + wanted;
  } else if (least != most) {
    wanted += (most == least + 1 ? " or " : " to ") + std::to_string(most);
  }
  const bool is_one = least == 1 && (most == 1 || most == kAnyNumber);
  throw std::invalid_argument(std::string(name) + " takes " + wanted + " " +
                              std::string(is_one ? noun.one : noun.many) + ", got " +
                              std::to_string(count));
}

void check_counts(const Operation& operation, std::size_t indices, std::size_t arguments) {
  const std::size_t wanted = operation.get_index_count();
  check_count(operation.name, {"index", "indices"}, indices, wanted, wanted);
  check_count(operation.name, {"argument", "arguments"}, arguments, operation.get_least_arguments(),
              operation.get_most_arguments());
}

}  // namespace vorn
