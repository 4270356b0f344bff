#include "vorn/smt2/lexer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "vorn/terms/simple_symbol.h"

namespace vorn::smt2 {
namespace {

using Kind = Token::Kind;

std::vector<Token> tokens_of(std::string_view text) {
  Lexer lexer(text, "t");
  std::vector<Token> tokens;
  do {
    tokens.push_back(lexer.next());
  } while (!tokens.back().is(Kind::end));
  return tokens;
}

std::string error_of(std::string_view text) {
  try {
    tokens_of(text);
  } catch (const ScriptError& error) {
    return error.what();
  }
  return "no error";
}

void expect_token(std::string_view source, Kind kind, std::string_view text) {
  const std::vector<Token> tokens = tokens_of(source);
  ASSERT_EQ(tokens.size(), 2U) << source;
  EXPECT_EQ(tokens[0].kind, kind) << source;
  EXPECT_EQ(tokens[0].text, text) << source;
  EXPECT_EQ(tokens[0].raw, source);
}

TEST(Lexer, ReadsEveryKindOfToken) {
  expect_token("(", Kind::open, "(");
  expect_token(")", Kind::close, ")");
  expect_token("fp.add", Kind::symbol, "fp.add");
  expect_token("+oo", Kind::symbol, "+oo");
  expect_token("~!@$%^&*_-+=<>.?/a0", Kind::symbol, "~!@$%^&*_-+=<>.?/a0");
  expect_token("|a b\n(;\"#|", Kind::quoted_symbol, "a b\n(;\"#");
  expect_token("||", Kind::quoted_symbol, "");
  expect_token(":named", Kind::keyword, ":named");
  expect_token("0", Kind::numeral, "0");
  expect_token("0120", Kind::numeral, "0120");
  expect_token("1.50", Kind::decimal, "1.50");
  expect_token("#b0101", Kind::binary, "0101");
  expect_token("#xaF09", Kind::hexadecimal, "aF09");
  expect_token("\"a (;| b\"", Kind::string, "a (;| b");
  expect_token("\"\"", Kind::string, "");
  expect_token("\"say \"\"yes\"\"\"", Kind::string, "say \"\"yes\"\"");
}

TEST(Lexer, ReadsAsASymbolWhatIsPrintedWithoutBars) {
  for (int c = 0; c < 256; ++c) {
    for (const std::string& word :
         {std::string(1, static_cast<char>(c)), std::string("a") + static_cast<char>(c) + "b"}) {
      if (vorn::is_reserved_word(word)) continue;
      bool is_symbol = false;
      try {
        const std::vector<Token> tokens = tokens_of(word);
        is_symbol = tokens[0].is(Kind::symbol) && tokens[0].raw == word;
      } catch (const ScriptError&) {
        is_symbol = false;
      }
      EXPECT_EQ(is_symbol, is_simple_symbol(word)) << word;
    }
  }
}

TEST(Lexer, EndsAgainAndAgain) {
  Lexer lexer(" ; nothing", "t");
  EXPECT_TRUE(lexer.next().is(Kind::end));
  EXPECT_TRUE(lexer.next().is(Kind::end));
}

TEST(Lexer, SkipsBlanksAndComments) {
  const std::vector<Token> tokens = tokens_of("a;b (\xC3\xBC\x01\r\n\t( ;\n|c|;d");
  ASSERT_EQ(tokens.size(), 4U);
  EXPECT_EQ(tokens[0].text, "a");
  EXPECT_TRUE(tokens[1].is(Kind::open));
  EXPECT_EQ(tokens[2].text, "c");
}

TEST(Lexer, CountsLinesAndCharacters) {
  const std::vector<Token> tokens = tokens_of("a\t b\n  \"\xC3\xA4\xE2\x82\xAC\" c |\n\xC3\xA4| d");
  ASSERT_EQ(tokens.size(), 7U);
  EXPECT_EQ(tokens[0].position, (Position{1, 1}));
  EXPECT_EQ(tokens[1].position, (Position{1, 4}));
  EXPECT_EQ(tokens[2].position, (Position{2, 3}));
  EXPECT_EQ(tokens[3].position, (Position{2, 8}));
  EXPECT_EQ(tokens[4].position, (Position{2, 10}));
  EXPECT_EQ(tokens[5].position, (Position{3, 4}));
}

TEST(Lexer, SeparatesWithoutBlanksAtParenthesesAndComments) {
  EXPECT_EQ(tokens_of("(a)(1)#b1;x").size(), 8U);
}

TEST(Lexer, ReservedWordsLoseTheirMeaningBetweenBars) {
  EXPECT_TRUE(tokens_of("let")[0].is_word("let"));
  EXPECT_FALSE(tokens_of("|let|")[0].is_word("let"));
  EXPECT_TRUE(tokens_of("|let|")[0].is_symbol());
}

TEST(Lexer, RefusesWordsThatAreNoTokens) {
  const char* tail = "' is neither a literal nor a symbol";
  for (const std::string word : {"12abc", "1.", "1.2.3", "1.x", "#", "#b", "#b012", "#x", "#xg",
                                 "#q1", ":", "a:b", "a#", "12\"x\"", "a|b|", "#b1|"}) {
    EXPECT_EQ(error_of("a\n " + word + " b"), "t:2:2: error: '" + word + tail);
  }
  EXPECT_EQ(error_of("\"a\"b"), "t:1:1: error: \"a\" is followed by 'b' without a blank between");
  EXPECT_EQ(error_of("|a|b"), "t:1:1: error: |a| is followed by 'b' without a blank between");
}

TEST(Lexer, RefusesStrayBytes) {
  const char* tail = "; a symbol with such characters is written between bars: |...|";
  EXPECT_EQ(error_of("ab\x01"), "t:1:3: error: stray byte 0x01");
  EXPECT_EQ(error_of("\n\x7F"), "t:2:1: error: stray byte 0x7F");
  EXPECT_EQ(error_of("a \xC3\xBC"), std::string("t:1:3: error: stray byte 0xC3") + tail);
  EXPECT_EQ(error_of("na\xC3\xAFve"), std::string("t:1:3: error: stray byte 0xC3") + tail);
  EXPECT_EQ(error_of("a [b]"), std::string("t:1:3: error: stray character '['") + tail);
  EXPECT_EQ(error_of("|a|["), std::string("t:1:4: error: stray character '['") + tail);
  EXPECT_EQ(error_of(std::string_view("a\0", 2)), "t:1:2: error: stray byte 0x00");
}

TEST(Lexer, RefusesWhatIsNeverClosed) {
  EXPECT_EQ(error_of("a\n  \"b\nc"), "t:2:3: error: this string has no closing '\"'");
  EXPECT_EQ(error_of("\"b\"\""), "t:1:1: error: this string has no closing '\"'");
  EXPECT_EQ(error_of("a |b\nc"), "t:1:3: error: this quoted symbol has no closing '|'");
}

TEST(Lexer, EndsALineWithALineFeedACarriageReturnOrBoth) {
  const std::vector<Token> tokens = tokens_of("a ;b\rc ;d\r\n\r\n e\n\rf |g\rh| i\r");
  ASSERT_EQ(tokens.size(), 7U);
  EXPECT_EQ(tokens[0].position, (Position{1, 1}));
  EXPECT_EQ(tokens[1].position, (Position{2, 1}));
  EXPECT_EQ(tokens[1].text, "c");
  EXPECT_EQ(tokens[2].position, (Position{4, 2}));
  EXPECT_EQ(tokens[2].text, "e");
  EXPECT_EQ(tokens[3].position, (Position{6, 1}));
  EXPECT_EQ(tokens[4].text, "g\rh");
  EXPECT_EQ(tokens[5].position, (Position{7, 4}));
  EXPECT_TRUE(tokens[6].is(Kind::end));
}

TEST(Lexer, PassesOverAByteOrderMarkAtTheBeginningOfAFileOnly) {
  const std::vector<Token> tokens = tokens_of("\xEF\xBB\xBF(a)");
  ASSERT_EQ(tokens.size(), 4U);
  EXPECT_EQ(tokens[0].position, (Position{1, 1}));
  EXPECT_EQ(tokens[1].text, "a");
  EXPECT_TRUE(tokens_of("\xEF\xBB\xBF")[0].is(Kind::end));
  EXPECT_TRUE(error_of("a \xEF\xBB\xBF").starts_with("t:1:3: error: stray byte 0xEF"));
  EXPECT_TRUE(error_of("\n\xEF\xBB\xBF").starts_with("t:2:1: error: stray byte 0xEF"));
  EXPECT_TRUE(error_of("\xEF\xBB\xBF\xEF\xBB\xBF").starts_with("t:1:1: error: stray byte 0xEF"));
  Lexer later("\xEF\xBB\xBF", "t", {3, 1});
  EXPECT_THROW(later.next(), ScriptError);
}

TEST(Lexer, TakesAnyByteInCommentsStringsAndBetweenBars) {
  expect_token("|a\\b|", Kind::quoted_symbol, "a\\b");
  expect_token("|\\|", Kind::quoted_symbol, "\\");
  expect_token("|caf\xE9|", Kind::quoted_symbol, "caf\xE9");     // Latin-1
  expect_token("\"caf\xC3\xA9\"", Kind::string, "caf\xC3\xA9");  // UTF-8
  EXPECT_EQ(tokens_of("a ; caf\xE9 \xFF\x80\nb").size(), 3U);
}

TEST(Lexer, CollapsesGaps) {
  EXPECT_EQ(collapse(" (  fp.add\n; comment\n RNE |a  b| ( f \"x\" ) )"),
            "(fp.add RNE |a  b| (f \"x\"))");
}

}  // namespace
}  // namespace vorn::smt2
