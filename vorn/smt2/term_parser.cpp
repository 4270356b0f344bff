// Terms: the loop over forms, and what each form becomes.
#include <fmt/format.h>

#include <utility>

#include "vorn/smt2/literals.h"
#include "vorn/smt2/parser.h"
#include "vorn/smt2/substitution.h"

namespace vorn::smt2 {
namespace {

/// -12 and -1.5: symbols to the standard, which no theory has.
bool is_signed_number(const Token& token) {
  if (!token.is(Token::Kind::symbol) || !token.text.starts_with('-')) return false;
  const std::string_view digits = token.text.substr(1);
  const std::size_t point = digits.find('.');
  const auto is_number = [](std::string_view part) {
    return !part.empty() && part.find_first_not_of("0123456789") == std::string_view::npos;
  };
  if (point == std::string_view::npos) return is_number(digits);
  return is_number(digits.substr(0, point)) && is_number(digits.substr(point + 1));
}

}  // namespace

// The loop over forms ---------------------------------------------------------------------------

/// Reads one expression: each token either opens a form or completes a value, and a value completes
/// the forms that waited for it only.
Value Parser::read_value() {
  for (;;) {
    std::optional<Value> value = read_step(tokens.next());
    if (value && deliver(&*value)) return *value;
  }
}

std::optional<Value> Parser::read_step(const Token& token) {
  switch (token.kind) {
    case Token::Kind::open:
      return open_form();
    case Token::Kind::close:
      return close_application(token);
    default:
      return atom(token);
  }
}

/// Hands a value to the innermost open form. True when no form is left: it is the whole expression.
bool Parser::deliver(Value* value) {
  while (!frames.empty()) {
    const Frame& frame = frames.back();
    switch (frame.kind) {
      case Frame::Kind::application:
        values.push_back(std::move(*value));
        return false;
      case Frame::Kind::let_bindings:
        values.push_back(std::move(*value));
        tokens.expect_close("')' to close the binding");
        read_binding();
        return false;
      case Frame::Kind::let_body:
        tokens.expect_close("')' to close the let");
        end_let(frame);
        break;
      case Frame::Kind::annotation:
        read_attributes(*value);
        break;
    }
    close_frame();
  }
  return true;
}

void Parser::open_frame(Frame::Kind kind, const Token& head, const Operator* op,
                        const Function* function, const DataType* sort) {
  frames.push_back(
      {kind, head, op, function, sort, indices.size(), values.size(), let_names.size()});
}

void Parser::close_frame() {
  const Frame& frame = frames.back();
  indices.resize(frame.first_index);
  values.resize(frame.first_value);
  let_names.resize(frame.first_name);
  frames.pop_back();
}

// Atoms and heads -------------------------------------------------------------------------------

Value Parser::atom(const Token& token) {
  switch (token.kind) {
    case Token::Kind::symbol:
    case Token::Kind::quoted_symbol:
      return symbol(token);
    case Token::Kind::numeral:
    case Token::Kind::decimal:
      return Value::of(QNumber::from_string(token.text));
    case Token::Kind::binary:
    case Token::Kind::hexadecimal:
      return build_at(token.position, [&] {
        return Value::of(make_bv_digits(mgr, token.text, token.is(Token::Kind::binary) ? 1 : 4));
      });
    case Token::Kind::string:
      fail(token.position, "string literals are not supported");
    default:
      tokens.fail_expected("a term", token);
  }
}

Value Parser::symbol(const Token& name) {
  if (is_reserved_word(name)) tokens.fail_expected("a term", name);
  if (const Value* local = locals.find(name.text)) return *local;
  const Function* function = symbols.find(name.text);
  const Operator* op = function == nullptr ? find_operator(name.text) : nullptr;
  if (function == nullptr && op == nullptr && is_signed_number(name)) return signed_number(name);
  if (function == nullptr && !is_plain(op)) fail_unknown(name);
  open_frame(Frame::Kind::application, name, op, function);
  Value value = apply(frames.back(), {});
  close_frame();
  return value;
}

Value Parser::signed_number(const Token& name) const {
  tokens.depart(Departure::signed_number, name.position, [&] {
    return fmt::format("'{}' is a symbol; a negative number is written (- {})", name.text,
                       name.text.substr(1));
  });
  return Value::of(QNumber::from_string(name.text));
}

/// Whether the name of a theory stands by itself; null for a name of none.
bool Parser::is_plain(const Operator* op) {
  return op != nullptr && op->is_supported() && !op->needs_sort();
}

void Parser::fail_unknown(const Token& name) const {
  const Operator* op = find_operator(name.text);
  if (op != nullptr && !op->is_supported()) {
    fail(name.position, fmt::format("{} is not supported", name.text));
  }
  // What is a literal elsewhere, but a symbol by the rules of SMT-LIB.
  std::string hint;
  if (is_bv_decimal(name.text)) {
    hint = fmt::format("; a bit-vector is written (_ {} width)", name.text);
  } else if (op != nullptr) {
    hint = "; an array of one value is written ((as const sort) value)";
  }
  fail(name.position, fmt::format("unknown symbol '{}'{}", name.text, hint));
}

/// Reads what follows "(". A value comes back when the form is an indexed constant.
std::optional<Value> Parser::open_form() {
  if (tokens.peek().is(Token::Kind::open)) {
    open_qualified_application();
    return std::nullopt;
  }
  const Token head = tokens.next();
  if (head.is_word("_")) return indexed_constant();
  if (head.is_word("as")) return annotated_constant(head);
  if (head.is_word("let")) {
    tokens.expect_open("'(' to open the bindings");
    open_frame(Frame::Kind::let_bindings, head);
    read_binding();
  } else if (head.is_word("!")) {
    open_frame(Frame::Kind::annotation, head);
  } else if (head.is_symbol() && is_reserved_word(head)) {
    fail(head.position, fmt::format("{} is not supported", head.text));
  } else if (head.is_symbol()) {
    open_application(head);
  } else {
    tokens.fail_expected("the name of a function", head);
  }
  return std::nullopt;
}

void Parser::open_application(const Token& head) {
  const bool local = locals.find(head.text) != nullptr;
  const Function* function = symbols.find(head.text);
  const Operator* op = function == nullptr ? find_operator(head.text) : nullptr;
  if (!local && function == nullptr && !is_plain(op)) fail_unknown(head);
  const bool constant = local || (function != nullptr ? function->parameters.empty()
                                                      : op->max_args == 0 && op->indices == 0);
  if (constant) {
    fail(head.position,
         fmt::format("'{}' is no function: it stands without parentheses", head.text));
  }
  open_frame(Frame::Kind::application, head, op, function);
}

// Applications ----------------------------------------------------------------------------------

Value Parser::close_application(const Token& close) {
  if (frames.empty() || frames.back().kind != Frame::Kind::application) {
    tokens.fail_expected("a term", close);
  }
  const Frame& frame = frames.back();
  Value value = apply(frame, std::span(values).subspan(frame.first_value));
  close_frame();
  return value;
}

Value Parser::apply(const Frame& frame, std::span<const Value> args) {
  if (frame.function == nullptr && frame.op->is_departure(args.size())) {
    tokens.depart(frame.op->departure, frame.head.position,
                  [&] { return frame.op->describe_departure(args.size()); });
  }
  return build_at(frame.head.position, [&] {
    if (frame.function != nullptr) return apply_function(frame, args);
    return apply_operator(*frame.op,
                          {mgr, std::span(indices).subspan(frame.first_index), args, frame.sort});
  });
}

Value Parser::apply_function(const Frame& frame, std::span<const Value> args) {
  const std::vector<const Term*>& parameters = frame.function->parameters;
  const std::string_view name = frame.head.text;
  check_count(name, {"argument", "arguments"}, args.size(), parameters.size(), parameters.size());
  if (parameters.empty()) return Value::of(frame.function->body);

  std::vector<const Term*> terms;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const DataType* wanted = parameters[i]->get_type();
    if (args[i].real || args[i].term->get_type() != wanted) {
      const std::string got =
          args[i].real ? "a number" : "a term of " + args[i].term->get_type()->to_string();
      throw std::invalid_argument(fmt::format("{}: argument {} must be of {}, got {}", name, i + 1,
                                              wanted->to_string(), got));
    }
    terms.push_back(args[i].term);
  }
  if (const Symbol* symbol = frame.function->symbol) {
    return Value::of(mgr.make_application(symbol, terms));
  }
  return Value::of(
      instantiate(mgr, *frame.function, terms, symbols.get_instances(), tokens.get_hooks().poll));
}

// let and annotations ---------------------------------------------------------------------------

/// Reads up to the term of the next binding, or binds all names behind the last one: only then, so
/// that the bindings are parallel.
void Parser::read_binding() {
  Frame& frame = frames.back();
  const bool some = let_names.size() > frame.first_name;
  const Token token = tokens.next();
  if (token.is(Token::Kind::open)) {
    let_names.push_back(tokens.expect_symbol("the name of a binding"));
    return;
  }
  if (!token.is(Token::Kind::close) || !some) tokens.fail_expected("'(' to open a binding", token);
  for (std::size_t i = 0; frame.first_name + i < let_names.size(); ++i) {
    const Token& name = let_names[frame.first_name + i];
    if (!locals.bind(name.text, values[frame.first_value + i], frames.size())) {
      fail(name.position, fmt::format("'{}' is bound twice", name.text));
    }
  }
  frame.kind = Frame::Kind::let_body;
}

void Parser::end_let(const Frame& frame) {
  for (std::size_t i = frame.first_name; i < let_names.size(); ++i) {
    locals.unbind(let_names[i].text);
  }
}

/// Reads ":keyword value ... )". Attributes other than :named say nothing that we use. The first
/// name of the outermost annotation is that of the whole term.
void Parser::read_attributes(const Value& value) {
  do {
    const Token key = tokens.expect(Token::Kind::keyword, "an attribute");
    if (key.text == ":named") {
      name_term(value);
    } else if (!tokens.at_close() && !tokens.peek().is(Token::Kind::keyword)) {
      tokens.skip_expression();
    }
  } while (!tokens.at_close());
  tokens.next();
}

void Parser::name_term(const Value& value) {
  const Token name = read_new_symbol();
  if (value.real) fail(name.position, "a number cannot be named");
  if (in_macro) {
    fail(name.position, "a term inside of a definition with parameters cannot be named");
  }
  symbols.define(name.text, {{}, value.term});
  if (frames.size() == 1 && !outer_name) outer_name = name.text;
  if (mgr.is_bool_type(value.term->get_type())) symbols.add_label(name.text, value.term);
}

}  // namespace vorn::smt2
