// A session, command by command, with what is to be said of its answers.
//
// The commands come from a stream that makes up its mind when the interpreter asks for more: by
// then what it sent before has been answered. What a fault has ended is sent again; models and sets
// of failed assumptions, of which there are many, are put back as a question with one answer.
#ifndef VORN_TESTS_FAULTS_CONVERSATION_H
#define VORN_TESTS_FAULTS_CONVERSATION_H

#include <deque>
#include <functional>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

#include "tests/faults/fault.h"

namespace vorn::faults {

/// The answers to a session's commands, as far as they are one and the same in each right session:
/// without lines of places, without the values of models.
using Answers = std::vector<std::string>;

/// Collects what is printed.
class Printed final : public std::streambuf {
 public:
  explicit Printed(Fault& tested) : fault(tested) {}

  /// What was printed since the last call, without the last line break.
  std::string take();

 protected:
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* s, std::streamsize length) override;

 private:
  Fault& fault;
  std::string text;
};

/// Sends commands and looks at the answers. Prints what is wrong and ends the process.
class Conversation final : public std::streambuf {
 public:
  /// Describes what a command that fails must not change.
  using Describe = std::function<std::string()>;

  /// Each command is one line. `expected` has an answer for each, or is empty: all but sat and
  /// unsat of the inserted commands is right then. `error` ends the answer of a command that the
  /// fault has ended. The rest is borrowed.
  Conversation(Fault& tested, std::vector<std::string> lines, const Answers& answers,
               std::string error, Printed& output, Describe description);

  /// The command that was sent last.
  const std::string& get_command() const { return sent.command; }
  /// The answers, those to inserted commands left out.
  const Answers& get_answers() const { return given; }

 protected:
  int_type underflow() override;

 private:
  struct Item {
    std::string command;
    std::string expected;      // normalised; empty: anything
    bool is_repeated = false;  // the fault has ended it
    bool is_inserted = false;  // it is none of the session's own
  };

  void judge(const std::string& answer);
  bool retry(const std::string& answer);
  void insert_check(const std::string& answer);
  void insert(std::string command, std::string expected);
  [[noreturn]] void reject(const std::string& answer, std::string_view wanted) const;

  Fault& fault;
  std::deque<Item> items;
  const std::string error_text;
  Printed& printed;
  const Describe describe;

  Item sent;
  std::string sent_text;   // with its line break, which the stream reads
  std::string state;       // before it was sent
  bool is_struck = false;  // the fault had struck before it was sent
  Answers given;
};

}  // namespace vorn::faults

#endif
