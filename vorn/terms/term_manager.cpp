// Tables of the term manager: sorts, symbols, literals and terms.
//
// Terms live in chunks and are shared through an open-addressing table of pointers with their
// hashes beside them, so that looking for a term touches few others. The table costs 15 to 30 bytes
// a term; a binary operation is 32 bytes. Symbols are few and carry everything else.
//
// Hashes are made of identifiers, never of addresses: where the tables have their entries, and what
// follows from it, is the same in every process.
#include "vorn/terms/term_manager.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <new>
#include <stdexcept>

#include "vorn/terms/bv_number.h"
#include "vorn/terms/operations.h"
#include "vorn/terms/rewriter.h"

namespace vorn {
namespace {

// The largest term fits.
constexpr std::size_t kChunkBytes = std::size_t{1} << 18;
static_assert(sizeof(Term) + TermManager::kMaxArguments * sizeof(void*) <= kChunkBytes);
constexpr std::size_t kInitialTable = 1024;

// A step is an operation, or another of these many bits of a wide one; thousands of them take about
// a millisecond.
constexpr std::size_t kStepBits = 64;
constexpr std::size_t kStepsBetweenTests = 1U << 12U;

std::size_t mix(std::size_t h, std::uint64_t word) {
  h = (h ^ word) * 0x9E3779B97F4A7C15U;
  return h ^ (h >> 32);
}

std::size_t hash_term(std::uint32_t symbol, std::span<const Term* const> args) {
  std::size_t h = mix(0, symbol);
  for (const Term* arg : args)
    h = mix(h, arg->get_id());
  return h;
}

/// Few arguments are compared faster one by one than by a call.
bool has_args(const Term* term, std::span<const Term* const> args) {
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (term->get_arg(i) != args[i]) return false;
  }
  return true;
}

}  // namespace

std::size_t TermManager::SymbolKeyHash::operator()(const SymbolKey& key) const noexcept {
  // Side by side, since an exclusive or of two small numbers is often that of two others.
  std::size_t h = mix(0, (std::uint64_t{key.tag} << 32) | key.type->id);
  const std::uint64_t low = (std::uint64_t{key.indices[0]} << 32) | key.indices[1];
  const std::uint64_t high = (std::uint64_t{key.indices[2]} << 32) | key.indices[3];
  return mix(h, low + std::rotl(high, 17));
}

std::size_t TermManager::NumberKeyHash::operator()(const NumberKey& key) const noexcept {
  return mix(key.value.hash(), key.type->id);
}

TermManager::TermManager(bool rewrite)
    : rewriting(rewrite),
      bool_type(intern_type(DataType::Kind::boolean, 0, 0)),
      rounding_type(intern_type(DataType::Kind::rounding_mode, 0, 0)),
      term_table(kInitialTable, nullptr),
      term_hashes(kInitialTable) {
  true_term = make_constant(new_symbol(SymbolTag::bool_true, 0, bool_type, {}));
  false_term = make_constant(new_symbol(SymbolTag::bool_false, 0, bool_type, {}));
  static constexpr const char* kNames[] = {"roundNearestTiesToEven", "roundTowardZero",
                                           "roundTowardPositive", "roundTowardNegative",
                                           "roundNearestTiesToAway"};
  for (std::size_t i = 0; i < rounding_terms.size(); ++i) {
    rounding_terms[i] = make_constant(make_unique_symbol(kNames[i], rounding_type));
  }
}

TermManager::~TermManager() = default;

// Sorts ---------------------------------------------------------------------------------------

std::uint64_t TermManager::type_key(DataType::Kind kind, std::size_t w0, std::size_t w1) {
  return (static_cast<std::uint64_t>(kind) << 60) | (static_cast<std::uint64_t>(w0) << 30) |
         static_cast<std::uint64_t>(w1);
}

bool TermManager::owns(const DataType* type) const {
  const auto entry = type_table.find(type_key(type->kind, type->widths[0], type->widths[1]));
  return entry != type_table.end() && entry->second == type;
}

DataType* TermManager::intern_type(DataType::Kind kind, std::size_t w0, std::size_t w1) {
  DataType*& entry = type_table[type_key(kind, w0, w1)];
  if (entry == nullptr) {
    types.push_back(DataType(static_cast<std::uint32_t>(types.size()), kind,
                             static_cast<std::uint32_t>(w0), static_cast<std::uint32_t>(w1)));
    entry = &types.back();
  }
  return entry;
}

const DataType* TermManager::get_bv_type(std::size_t width) {
  if (width < 1 || width > kMaxWidth) {
    throw std::invalid_argument("a bit-vector sort of width " + std::to_string(width) +
                                ": widths go from 1 to " + std::to_string(kMaxWidth));
  }
  if (width >= kCommonWidths) return intern_type(DataType::Kind::bit_vector, width, 0);
  const DataType*& common = common_bv_types[width];
  if (common == nullptr) common = intern_type(DataType::Kind::bit_vector, width, 0);
  return common;
}

const DataType* TermManager::get_fp_type(std::size_t e, std::size_t m) {
  if (e < 2 || m < 1 || e > kMaxWidth || m > kMaxWidth || 1 + e + m > kMaxWidth) {
    throw std::invalid_argument("a floating-point sort with exponent width " + std::to_string(e) +
                                " and significand width " + std::to_string(m) +
                                " (hidden bit not counted): they must be at least 2 and 1, and no "
                                "more than " +
                                std::to_string(kMaxWidth) + " bits with the sign");
  }
  return intern_type(DataType::Kind::floating_point, e, m);
}

/// The number of sorts that a sort applied to others names.
std::uint32_t TermManager::count_parts(std::span<const DataType* const> arguments) const {
  std::uint32_t parts = 1;
  for (const DataType* argument : arguments) {
    if (argument == nullptr || !owns(argument)) {
      throw std::invalid_argument("a sort within a sort is not one of this manager's");
    }
    parts += argument->parts;
    if (parts > kMaxParts) {
      throw std::invalid_argument("a sort that names more than " + std::to_string(kMaxParts) +
                                  " sorts");
    }
  }
  return parts;
}

const DataType* TermManager::get_array_type(const DataType* index, const DataType* element) {
  const std::uint32_t parts = count_parts(std::array{index, element});
  DataType* type = intern_type(DataType::Kind::array, index->id, element->id);
  type->index = index;
  type->element = element;
  type->parts = parts;
  return type;
}

const DataType* TermManager::get_uninterpreted_type(const std::string& name,
                                                    std::span<const DataType* const> arguments) {
  const std::uint32_t parts = count_parts(arguments);
  if (name.find_first_of("|\\") != std::string::npos) {
    throw std::invalid_argument("a symbol cannot hold a bar or a backslash: " + name);
  }
  // By identifiers, since texts of sorts may be alike: names are taken as they come.
  std::string key = name;
  for (const DataType* argument : arguments)
    key += "|" + std::to_string(argument->id);
  const DataType*& entry = named_types[key];
  if (entry == nullptr) {
    DataType* type = intern_type(DataType::Kind::uninterpreted, types.size(), 0);
    type->name = name;
    type->arguments.assign(arguments.begin(), arguments.end());
    type->parts = parts;
    entry = type;
  }
  return entry;
}

bool TermManager::is_array_type(const DataType* type, const DataType** index,
                                const DataType** element) const {
  if (type->get_kind() != DataType::Kind::array) return false;
  if (index != nullptr) *index = type->get_index();
  if (element != nullptr) *element = type->get_element();
  return true;
}

bool TermManager::is_bv_type(const DataType* type, std::size_t* width) const {
  if (type->get_kind() != DataType::Kind::bit_vector) return false;
  if (width != nullptr) *width = type->get_width();
  return true;
}

bool TermManager::is_fp_type(const DataType* type, std::size_t* e, std::size_t* m) const {
  if (type->get_kind() != DataType::Kind::floating_point) return false;
  if (e != nullptr) *e = type->get_e();
  if (m != nullptr) *m = type->get_m();
  return true;
}

// Symbols -------------------------------------------------------------------------------------

Symbol* TermManager::new_symbol(SymbolTag::tag tag, std::size_t arity, const DataType* type,
                                const Symbol::Indices& indices) {
  const auto arguments = static_cast<std::uint32_t>(arity);
  if (free_symbols.empty()) {
    const auto id = static_cast<std::uint32_t>(symbols.size());
    symbols.push_back(Symbol(this, id, tag, arguments, type, indices));
    return &symbols.back();
  }
  Symbol* reused = free_symbols.back();
  free_symbols.pop_back();
  *reused = Symbol(this, reused->id, tag, arguments, type, indices);
  return reused;
}

const Symbol* TermManager::intern_symbol(SymbolTag::tag tag, std::size_t arity,
                                         const DataType* type, const Symbol::Indices& indices) {
  const SymbolKey key{tag, type, indices};
  const std::size_t hash = SymbolKeyHash()(key);
  const Symbol*& recent = recent_symbols[hash % recent_symbols.size()];
  if (recent != nullptr && recent->tag == tag && recent->output_type == type &&
      recent->indices == indices) {
    return recent;
  }
  const Symbol*& entry = symbol_table[key];
  if (entry == nullptr) entry = new_symbol(tag, arity, type, indices);
  recent = entry;
  return entry;
}

const Symbol* TermManager::make_unique_symbol(const std::string& name, const DataType* type) {
  return make_unique_symbol(name, {}, type);
}

const Symbol* TermManager::make_unique_symbol(const std::string& name,
                                              std::span<const DataType* const> domain,
                                              const DataType* type) {
  if (name.find_first_of("|\\") != std::string::npos) {
    throw std::invalid_argument("a symbol cannot hold a bar or a backslash: " + name);
  }
  const auto is_own = [this](const DataType* sort) { return sort != nullptr && owns(sort); };
  if (!is_own(type) || !std::ranges::all_of(domain, is_own)) {
    throw std::invalid_argument("the sort of symbol " + name + " is not one of this manager's");
  }
  if (domain.size() > kMaxArguments) {
    throw std::invalid_argument("a function of " + std::to_string(domain.size()) +
                                " arguments; they go up to " + std::to_string(kMaxArguments));
  }
  std::string unique = name;
  auto [entry, fresh] = names.try_emplace(unique, 1);
  std::uint64_t& next_suffix = entry->second;
  while (!fresh) {
    unique = name + "!" + std::to_string(next_suffix++);
    fresh = names.try_emplace(unique, 1).second;
  }
  Symbol* symbol = new_symbol(SymbolTag::none, domain.size(), type, {});
  symbol->name = std::move(unique);
  symbol->domain.assign(domain.begin(), domain.end());
  return symbol;
}

const Term* TermManager::make_constant(const Symbol* symbol) {
  if (symbol->owner != this || symbol->arity != 0) {
    throw std::invalid_argument("a constant needs a symbol of arity 0 of this manager");
  }
  if (symbol->constant == nullptr) {
    // The one mutable word of a symbol, and the symbol is this manager's own.
    const_cast<Symbol*>(symbol)->constant = allocate_term(symbol, {});
  }
  return symbol->constant;
}

const Term* TermManager::make_application(const Symbol* function,
                                          std::span<const Term* const> args) {
  if (function->owner != this || !function->is_function()) {
    throw std::invalid_argument("an application needs a function of this manager");
  }
  check_count(function->name, {"argument", "arguments"}, args.size(), function->arity,
              function->arity);
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (!owns(args[i])) {
      throw std::invalid_argument(function->name + ": argument " + std::to_string(i + 1) +
                                  " is no term of this manager");
    }
    const DataType* type = args[i]->get_type();
    if (type != function->domain[i]) {
      throw std::invalid_argument(function->name + ": argument " + std::to_string(i + 1) +
                                  " must be of " + function->domain[i]->to_string() +
                                  ", got a term of " + type->to_string());
    }
  }
  count_step(function->output_type);
  return intern_term(function, args);
}

const Term* TermManager::make_element(const DataType* type, const QNumber& number) {
  const bool is_sort = type != nullptr && owns(type) && type->kind == DataType::Kind::uninterpreted;
  if (!is_sort || number.sign() < 0 || !number.is_integer()) {
    throw std::invalid_argument(
        "an element needs an uninterpreted sort of this manager and an integer from 0");
  }
  return intern_number(number, type);
}

bool TermManager::get_symbol_kind(const Symbol* symbol, SymbolTag::tag* kind) const {
  if (symbol->owner != this || symbol->tag == SymbolTag::none) return false;
  *kind = symbol->tag;
  return true;
}

bool TermManager::is_number(const Term* term, QNumber* value) const {
  const QNumber* number = get_number(term->get_symbol());
  if (number != nullptr && value != nullptr) *value = *number;
  return number != nullptr;
}

const Term* TermManager::intern_number(const QNumber& value, const DataType* type) {
  const Term*& entry = number_table[NumberKey{type, value}];
  if (entry == nullptr) {
    Symbol* symbol = new_symbol(SymbolTag::none, 0, type, {});
    symbol->is_number = true;
    symbol->value = value;
    entry = make_constant(symbol);
  }
  return entry;
}

// Terms ---------------------------------------------------------------------------------------

/// What is wide takes longer, above all where it is folded.
void TermManager::count_step(const DataType* type) {
  steps += 1 + (type->has_bits() ? type->get_value_width() / kStepBits : 0);
  if (steps < kStepsBetweenTests) return;
  steps = 0;
  if (termtest != nullptr && termtest->terminate()) throw Terminated();
}

const Term* TermManager::build(const Operation& op, const DataType* type,
                               std::span<const Term* const> args, const Symbol::Indices& indices) {
  count_step(type);
  std::array<const Term*, 2> ordered;
  if (rewriting) {
    if (op.is_commutative && args[0]->get_id() > args[1]->get_id()) {
      ordered = {args[1], args[0]};
      args = ordered;
    }
    if (const Term* simpler = Rewriter(*this).rewrite(op, type, args, indices)) return simpler;
  }
  return intern_term(intern_symbol(op.tag, args.size(), type, indices), args);
}

const Term* TermManager::intern_term(const Symbol* symbol, std::span<const Term* const> args) {
  if ((table_count + 1) * 5 > term_table.size() * 4) grow_term_table();
  const std::size_t mask = term_table.size() - 1;
  const auto hash = static_cast<std::uint32_t>(hash_term(symbol->id, args));
  std::size_t slot = hash & mask;
  for (; term_table[slot] != nullptr; slot = (slot + 1) & mask) {
    const Term* term = term_table[slot];
    if (term_hashes[slot] == hash && term->get_symbol() == symbol && has_args(term, args)) {
      return term;
    }
  }
  const Term* term = allocate_term(symbol, args);
  term_table[slot] = term;
  term_hashes[slot] = hash;
  ++table_count;
  return term;
}

void TermManager::grow_term_table() {
  const std::size_t size = term_table.size() * 2;
  const std::size_t mask = size - 1;
  std::vector<const Term*> terms(size, nullptr);
  std::vector<std::uint32_t> hashes(size);
  for (std::size_t i = 0; i < term_table.size(); ++i) {
    if (term_table[i] == nullptr) continue;
    std::size_t slot = term_hashes[i] & mask;
    while (terms[slot] != nullptr)
      slot = (slot + 1) & mask;
    terms[slot] = term_table[i];
    hashes[slot] = term_hashes[i];
  }
  term_table = std::move(terms);
  term_hashes = std::move(hashes);
}

Term* TermManager::allocate_term(const Symbol* symbol, std::span<const Term* const> args) {
  if (args.size() < free_terms.size() && !free_terms[args.size()].empty()) {
    Term* reused = free_terms[args.size()].back();
    free_terms[args.size()].pop_back();
    --free_count;
    reused = new (reused) Term(reused->id, symbol);
    std::ranges::copy(args, reinterpret_cast<const Term**>(reused + 1));
    return reused;
  }
  const std::size_t bytes = sizeof(Term) + args.size_bytes();
  if (bytes > chunk_left) {
    chunks.push_back(std::make_unique_for_overwrite<std::byte[]>(kChunkBytes));
    chunk_free = chunks.back().get();
    chunk_left = kChunkBytes;
  }
  auto* term = new (chunk_free) Term(next_id, symbol);
  std::ranges::copy(args, reinterpret_cast<const Term**>(chunk_free + sizeof(Term)));
  chunk_free += bytes;
  chunk_left -= bytes;
  ++next_id;
  return term;
}

std::size_t TermManager::get_term_bytes() const {
  return chunks.size() * kChunkBytes - chunk_left +
         term_table.size() * (sizeof(void*) + sizeof(std::uint32_t));
}

}  // namespace vorn
