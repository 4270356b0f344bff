#include "vorn/terms/simple_symbol.h"

#include <algorithm>
#include <span>

namespace vorn {
namespace {

constexpr std::string_view kDigits = "0123456789";

constexpr std::string_view kReservedWords[] = {
    "!",      "_",   "as",    "BINARY",  "DECIMAL", "exists", "HEXADECIMAL",
    "forall", "let", "match", "NUMERAL", "par",     "STRING"};

constexpr std::string_view kTakenNames[] = {
    "true", "false",
    // Commands, which the standard reserves too.
    "assert", "check-sat", "check-sat-assuming", "declare-const", "declare-datatype",
    "declare-datatypes", "declare-fun", "declare-sort", "define-const", "define-fun",
    "define-fun-rec", "define-funs-rec", "define-sort", "echo", "exit", "get-assertions",
    "get-assignment", "get-info", "get-model", "get-option", "get-proof", "get-unsat-assumptions",
    "get-unsat-core", "get-value", "pop", "push", "reset", "reset-assertions", "set-info",
    "set-logic", "set-option"};

bool contains(std::span<const std::string_view> words, std::string_view word) {
  return std::ranges::find(words, word) != words.end();
}

bool is_symbol_character(char c) {
  return kSymbolLetters.find(c) != std::string_view::npos ||
         kDigits.find(c) != std::string_view::npos;
}

}  // namespace

bool is_reserved_word(std::string_view word) {
  return contains(kReservedWords, word);
}

bool is_simple_symbol(std::string_view name) {
  if (name.empty() || kDigits.find(name[0]) != std::string_view::npos) return false;
  if (is_reserved_word(name) || contains(kTakenNames, name)) return false;
  return std::ranges::all_of(name, is_symbol_character);
}

}  // namespace vorn
