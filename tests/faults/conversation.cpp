#include "tests/faults/conversation.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace vorn::faults {
namespace {

constexpr std::string_view kReason = "(get-info :reason-unknown)";

bool starts(const std::string& command, std::string_view name) {
  return command.starts_with("(" + std::string(name) + ")") ||
         command.starts_with("(" + std::string(name) + " ");
}

bool is_check(const std::string& command) {
  return starts(command, "check-sat") || starts(command, "check-sat-assuming");
}

/// The expressions of a list.
std::vector<std::string> split(std::string_view list) {
  std::vector<std::string> parts;
  int depth = 0;
  std::size_t start = 0;
  bool is_in = false;
  for (std::size_t i = 0; i < list.size(); ++i) {
    const char c = list[i];
    if (c == ')') --depth;
    const bool ends = c == ')' ? depth == 0 : depth == 1 && (c == ' ' || c == '\n' || c == '(');
    if (is_in && ends && list[start] != '(') {
      parts.emplace_back(list.substr(start, i - start));
      is_in = false;
    }
    if (depth == 1 && c != ' ' && c != '\n' && c != ')' && !is_in) {
      start = i;
      is_in = true;
    }
    if (c == '(') ++depth;
    if (is_in && c == ')' && depth == 1 && list[start] == '(') {
      parts.emplace_back(list.substr(start, i + 1 - start));
      is_in = false;
    }
  }
  return parts;
}

/// An error without its line, and of an answer that gives values their names alone.
std::string normalise(const std::string& command, const std::string& answer) {
  if (answer.starts_with("(error ")) {
    const std::size_t line = answer.find(':');
    return answer.substr(0, line) + answer.substr(answer.find(':', line + 1));
  }
  if (starts(command, "get-unsat-assumptions")) return "some";
  if (!starts(command, "get-value") && !starts(command, "get-model") &&
      !starts(command, "get-assignment")) {
    return answer;
  }
  std::string names;
  for (const std::string& entry : split(answer)) {
    std::vector<std::string> parts = split(entry);
    if (!parts.empty()) parts.pop_back();
    for (const std::string& part : parts)
      names += part + ' ';
    names += "\n";
  }
  return names;
}

/// Whether the answer names each part of a core, as it has to where the fault was in the check that
/// would have left another part out.
bool has_core(const std::string& command, const std::string& answer, const std::string& core) {
  if (!starts(command, "get-unsat-core") || answer.starts_with("(error ")) return false;
  const std::vector<std::string> parts = split(answer);
  return std::ranges::all_of(split(core), [&parts](const std::string& part) {
    return std::ranges::find(parts, part) != parts.end();
  });
}

}  // namespace

// Output ----------------------------------------------------------------------------------------

std::string Printed::take() {
  if (text.ends_with('\n')) text.pop_back();
  return std::exchange(text, {});
}

Printed::int_type Printed::overflow(int_type c) {
  const Fault::Pause pause(fault);
  if (c != traits_type::eof()) text.push_back(static_cast<char>(c));
  return traits_type::not_eof(c);
}

std::streamsize Printed::xsputn(const char* s, std::streamsize length) {
  const Fault::Pause pause(fault);
  text.append(s, static_cast<std::size_t>(length));
  return length;
}

// Commands --------------------------------------------------------------------------------------

Conversation::Conversation(Fault& tested, std::vector<std::string> lines, const Answers& answers,
                           std::string error, Printed& output, Describe description)
    : fault(tested),
      error_text(std::move(error)),
      printed(output),
      describe(std::move(description)) {
  for (std::size_t i = 0; i < lines.size(); ++i)
    items.push_back({std::move(lines[i]), i < answers.size() ? answers[i] : ""});
}

Conversation::int_type Conversation::underflow() {
  const Fault::Pause pause(fault);
  fault.end();
  if (!sent.command.empty()) judge(printed.take());
  if (items.empty()) {
    sent = {};
    return traits_type::eof();
  }
  sent = std::move(items.front());
  items.pop_front();
  is_struck = fault.has_struck();
  if (!is_struck) state = describe();
  sent_text = sent.command + '\n';
  setg(sent_text.data(), sent_text.data(), sent_text.data() + sent_text.size());
  return traits_type::to_int_type(sent_text.front());
}

void Conversation::judge(const std::string& answer) {
  if (retry(answer)) return;
  const std::string known = normalise(sent.command, answer);
  const bool is_larger_core =
      fault.has_struck() && !is_struck && has_core(sent.command, known, sent.expected);
  if (!sent.expected.empty() && known != sent.expected && !is_larger_core) {
    reject(answer, sent.expected);
  }
  if (sent.command == kReason) return;
  if (!sent.is_inserted) {
    given.push_back(known);
    insert_check(answer);
  }
}

/// Whether the fault has ended the command, so that it is sent again; only once, and only the
/// command at which it struck.
bool Conversation::retry(const std::string& answer) {
  const bool is_error = answer.starts_with("(error ") && answer.ends_with(error_text + "\")");
  const bool is_unknown =
      is_check(sent.command) && answer == "unknown" && sent.expected != "unknown";
  if (!is_error && !is_unknown) return false;
  if (is_struck || !fault.has_struck() || sent.is_repeated) reject(answer, "no second failure");
  if (!is_check(sent.command) && describe() != state) {
    reject(answer + "\n" + describe(), "no effect:\n" + state);
  }
  sent.is_repeated = true;
  items.push_front(sent);
  if (is_unknown) insert(std::string(kReason), "(:reason-unknown \"memout\")");
  return true;
}

/// Values have to be those of a model, failed assumptions to fail.
void Conversation::insert_check(const std::string& answer) {
  if (answer.starts_with("(error ")) return;
  if (starts(sent.command, "get-unsat-assumptions")) {
    insert("(check-sat-assuming " + answer + ")", "unsat");
  } else if (starts(sent.command, "get-value")) {
    std::string equalities;
    for (const std::string& entry : split(answer)) {
      const std::vector<std::string> sides = split(entry);
      equalities += " (= " + sides[0] + " " + sides[1] + ")";
    }
    insert("(check-sat-assuming (" + equalities + "))", "sat");
  }
}

void Conversation::insert(std::string command, std::string expected) {
  items.push_front({std::move(command), std::move(expected), false, true});
}

void Conversation::reject(const std::string& answer, std::string_view wanted) const {
  std::fprintf(stderr, "place %llu: %s\n  got  %s\n  not  %.*s\n",
               static_cast<unsigned long long>(fault.get_place()), sent.command.c_str(),
               answer.c_str(), static_cast<int>(wanted.size()), wanted.data());
  std::fflush(stderr);
  _exit(EXIT_FAILURE);
}

}  // namespace vorn::faults
