// Where a stream is cut into commands.
#include "vorn/smt2/command_reader.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace vorn::smt2 {
namespace {

/// All commands of a text, each as "LINE:COLUMN text".
std::vector<std::string> split(const std::string& text) {
  std::istringstream in(text);
  CommandReader reader(in);
  std::vector<std::string> commands;
  while (const auto command = reader.next()) {
    commands.push_back(std::to_string(command->position.line) + ":" +
                       std::to_string(command->position.column) + " " + command->text);
  }
  return commands;
}

using Commands = std::vector<std::string>;

TEST(CommandReader, CutsWhereParenthesesClose) {
  EXPECT_EQ(split("(a)(b (c) d)\n ; remark (\n  (e\n f)"),
            (Commands{"1:1 (a)", "1:4 (b (c) d)", "3:3 (e\n f)"}));
}

TEST(CommandReader, KnowsStringsQuotedSymbolsAndComments) {
  EXPECT_EQ(split("(echo \")(\") (assert |)(|) (x ; )\n)"),
            (Commands{"1:1 (echo \")(\")", "1:13 (assert |)(|)", "1:27 (x ; )\n)"}));
  EXPECT_EQ(split("(echo \"a\"\")\")"), (Commands{"1:1 (echo \"a\"\")\")"}));
}

TEST(CommandReader, HandsOnWhatIsNoCommand) {
  EXPECT_EQ(split("foo)(a) \"s\" |q"),
            (Commands{"1:1 foo", "1:4 )", "1:5 (a)", "1:9 \"s\"", "1:13 |q"}));
  EXPECT_EQ(split("(a (b"), (Commands{"1:1 (a (b"}));
  EXPECT_EQ(split(" \n ; nothing"), Commands{});
}

TEST(CommandReader, ReadsNoFurtherThanTheCommand) {
  std::istringstream in("(a)(b)");
  CommandReader reader(in);
  reader.next();
  EXPECT_EQ(in.peek(), '(');
}

TEST(CommandReader, FindsNothingInAnEmptyStream) {
  for (const char* text : {"", " \t\r\n\n", "; remark", "; remark\n; another\n "})
    EXPECT_EQ(split(text), Commands{}) << text;
}

TEST(CommandReader, EndsAgainAndAgain) {
  std::istringstream in("(a) ");
  CommandReader reader(in);
  EXPECT_TRUE(reader.next().has_value());
  EXPECT_FALSE(reader.next().has_value());
  EXPECT_FALSE(reader.next().has_value());
}

TEST(CommandReader, CountsLinesAndCharacters) {
  EXPECT_EQ(split("\r\n\t(a)\r\n  (b)"), (Commands{"2:2 (a)", "3:3 (b)"}));
  EXPECT_EQ(split("(\xC3\xA4 |\xE2\x82\xAC|)(b)"),
            (Commands{"1:1 (\xC3\xA4 |\xE2\x82\xAC|)", "1:8 (b)"}));
  EXPECT_EQ(split("(a |b\n c|) (d)"), (Commands{"1:1 (a |b\n c|)", "2:6 (d)"}));
}

TEST(CommandReader, EndsALineWithALineFeedACarriageReturnOrBoth) {
  EXPECT_EQ(split("; x\r(a)\r\n(b ; )\r c)\r\r(d)"),
            (Commands{"2:1 (a)", "3:1 (b ; )\r c)", "6:1 (d)"}));
}

TEST(CommandReader, HandsOnAByteOrderMarkByItself) {
  EXPECT_EQ(split("\xEF\xBB\xBF(a)\n(b)"), (Commands{"1:1 \xEF\xBB\xBF", "1:1 (a)", "2:1 (b)"}));
}

TEST(CommandReader, KeepsCommentsWithinACommandSoThatColumnsStayRight) {
  EXPECT_EQ(split("(a ; \")|(\n b)(c)"), (Commands{"1:1 (a ; \")|(\n b)", "2:4 (c)"}));
}

TEST(CommandReader, LeavesCommentsBetweenCommandsOut) {
  EXPECT_EQ(split("(a);(x)\n;(y)\n(b); end"), (Commands{"1:1 (a)", "3:1 (b)"}));
}

TEST(CommandReader, EndsAWordWhereALexerDoes) {
  EXPECT_EQ(split("foo;(x)\nbar(a)baz|q|\"s\""),
            (Commands{"1:1 foo", "2:1 bar", "2:4 (a)", "2:7 baz", "2:10 |q|", "2:13 \"s\""}));
}

TEST(CommandReader, HandsOnTheRestWhereSomethingIsNeverClosed) {
  EXPECT_EQ(split("(a) (b \"c) (d)\n"), (Commands{"1:1 (a)", "1:5 (b \"c) (d)\n"}));
  EXPECT_EQ(split("(a |b)\n(c)"), Commands{"1:1 (a |b)\n(c)"});
  EXPECT_EQ(split("(a ; b)"), Commands{"1:1 (a ; b)"});
}

TEST(CommandReader, TakesAnyByteForAPartOfAWord) {
  const std::string bytes("\xFF\x00\x1A", 3);
  EXPECT_EQ(split(bytes + " (" + bytes + ")"), (Commands{"1:1 " + bytes, "1:5 (" + bytes + ")"}));
}

TEST(CommandReader, CountsParenthesesWithoutTheNativeStack) {
  constexpr std::size_t kDepth = 1'000'000;
  const std::string deep = std::string(kDepth, '(') + std::string(kDepth, ')');
  const Commands commands = split(deep + "(b)");
  ASSERT_EQ(commands.size(), 2U);
  EXPECT_EQ(commands[0], "1:1 " + deep);
  EXPECT_EQ(commands[1], "1:2000001 (b)");
}

TEST(CommandReader, AnswersBeforeTheNextCommandIsThere) {
  std::stringstream stream;
  CommandReader reader(stream);
  stream << "(a)";
  EXPECT_EQ(reader.next()->text, "(a)");
  stream << " (b)";
  const auto second = reader.next();
  ASSERT_TRUE(second.has_value());
  EXPECT_EQ(second->text, "(b)");
  EXPECT_EQ(second->position, (Position{1, 5}));
}

}  // namespace
}  // namespace vorn::smt2
