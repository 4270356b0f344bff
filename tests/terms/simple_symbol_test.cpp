#include "vorn/terms/simple_symbol.h"

#include <gtest/gtest.h>

#include <string>

namespace vorn {
namespace {

TEST(SimpleSymbol, WordsOfTheLanguageOfTermsAreReserved) {
  for (const char* word : {"!", "_", "as", "BINARY", "DECIMAL", "exists", "HEXADECIMAL", "forall",
                           "let", "match", "NUMERAL", "par", "STRING"}) {
    EXPECT_TRUE(is_reserved_word(word)) << word;
    EXPECT_FALSE(is_simple_symbol(word)) << word;
    EXPECT_TRUE(is_simple_symbol(word + std::string("1"))) << word;
  }
  for (const char* word : {"", "Let", "lets", "__", "true", "assert"})
    EXPECT_FALSE(is_reserved_word(word)) << word;
}

TEST(SimpleSymbol, CommandsAndTruthValuesTakeBars) {
  for (const char* name : {"true", "false", "assert", "check-sat", "set-option"})
    EXPECT_FALSE(is_simple_symbol(name)) << name;
  for (const char* name : {"True", "asserts", "check", "sat"})
    EXPECT_TRUE(is_simple_symbol(name)) << name;
}

TEST(SimpleSymbol, ADigitCannotComeFirst) {
  EXPECT_TRUE(is_simple_symbol("x0"));
  EXPECT_FALSE(is_simple_symbol("0x"));
  EXPECT_FALSE(is_simple_symbol("7"));
  EXPECT_FALSE(is_simple_symbol(""));
}

}  // namespace
}  // namespace vorn
