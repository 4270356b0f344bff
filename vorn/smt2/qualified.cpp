// Names with more than themselves: (_ name indices) and (as name sort).
#include <fmt/format.h>

#include "vorn/smt2/literals.h"
#include "vorn/smt2/parser.h"
#include "vorn/terms/printer.h"

namespace vorn::smt2 {

/// Reads "(_ name indices)" or "(as const sort)" behind a "(".
void Parser::open_qualified_application() {
  tokens.next();
  const Token underscore = tokens.next();
  if (underscore.is_word("as")) return open_constant_array(underscore);
  if (!underscore.is_word("_")) tokens.fail_expected("'_' and an indexed function", underscore);
  const Token name = tokens.expect_symbol("the name of a function");
  const Operator* op = is_bv_decimal(name.text) ? nullptr : &find_indexed(name);
  if (op == nullptr || op->max_args == 0) {
    fail(name.position, fmt::format("'{}' is no function and takes no arguments", name.text));
  }
  open_frame(Frame::Kind::application, name, op);
  read_indices();
}

/// Reads "name indices)" behind "(_".
std::optional<Value> Parser::indexed_constant() {
  const Token name = tokens.expect_symbol("the name of an indexed constant");
  if (is_bv_decimal(name.text)) {
    const std::uint32_t width = tokens.expect_index();
    tokens.expect_close("')' behind the width");
    if (name.text.size() > 3 && name.text[2] == '0') {
      tokens.depart(Departure::leading_zero, name.position, [&] {
        return fmt::format("the number in {} begins with a needless zero", name.text);
      });
    }
    return build_at(name.position,
                    [&] { return Value::of(make_bv_decimal(mgr, name.text, width)); });
  }
  open_frame(Frame::Kind::application, name, &find_indexed(name));
  read_indices();
  Value value = apply(frames.back(), {});
  close_frame();
  return value;
}

void Parser::open_constant_array(const Token& as) {
  if (!tokens.peek().is_symbol()) fail_annotation(as);
  const Token name = tokens.next();
  const Operator* op = find_operator(name.text);
  if (op == nullptr || !op->needs_sort()) fail_annotation(as);
  const DataType* sort = read_sort();
  tokens.expect_close("')' behind the sort");
  open_frame(Frame::Kind::application, name, op, nullptr, sort);
}

/// Reads "name sort)" behind "(as": a symbol may be given with its sort (SMT-LIB 2.6, section
/// 3.6.3).
Value Parser::annotated_constant(const Token& as) {
  if (!tokens.peek().is_symbol()) fail_annotation(as);
  const Token name = tokens.next();
  if (name.text.starts_with('@') && symbols.find(name.text) == nullptr) return element(name);
  Value value = symbol(name);
  const DataType* sort = read_sort();
  tokens.expect_close("')' behind the sort");
  if (value.real) fail_annotation(as);
  if (value.term->get_type() != sort) {
    fail(name.position, fmt::format("'{}' is of {}, not of {}", name.text,
                                    value.term->get_type()->to_string(), sort->to_string()));
  }
  return value;
}

/// Reads what follows the name of an element of an uninterpreted sort, as models have it.
Value Parser::element(const Token& name) {
  const DataType* sort = read_sort();
  tokens.expect_close("')' behind the sort");
  const std::string_view digits = name.text.substr(name.text.rfind('!') + 1);
  const bool has_number = !digits.empty() &&
                          digits.find_first_not_of("0123456789") == std::string_view::npos &&
                          sort->get_kind() == DataType::Kind::uninterpreted;
  if (has_number) {
    const QNumber number = QNumber::from_string(digits);
    if (element_name(number, sort) == name.text) return Value::of(mgr.make_element(sort, number));
  }
  fail(name.position, fmt::format("'{}' is no element of {}", name.text, sort->to_string()));
}

void Parser::fail_annotation(const Token& as) const {
  fail(as.position,
       "as is supported of symbols without arguments and in ((as const sort) value) only");
}

const Operator& Parser::find_indexed(const Token& name) const {
  const Operator* op = find_operator(name.text);
  if (op == nullptr && (locals.find(name.text) != nullptr || symbols.find(name.text) != nullptr)) {
    fail(name.position, fmt::format("'{}' takes no indices", name.text));
  }
  if (op == nullptr || !is_plain(op)) fail_unknown(name);
  return *op;
}

void Parser::read_indices() {
  while (!tokens.at_close())
    indices.push_back(tokens.expect_index());
  tokens.next();
}

}  // namespace vorn::smt2
