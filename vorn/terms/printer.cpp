// Terms and sorts as SMT-LIB text.
//
// A term is a graph: printed as a tree it may be exponentially long. Operations that occur more
// than once are bound by nested `let`s, innermost first. The walks keep their own stacks, since
// terms may be as deep as memory allows.
#include "vorn/terms/printer.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "vorn/terms/bv_number.h"
#include "vorn/terms/ieee_float.h"
#include "vorn/terms/operations.h"
#include "vorn/terms/post_order.h"
#include "vorn/terms/simple_symbol.h"
#include "vorn/terms/term_set.h"

namespace vorn {
namespace {

std::string binary(const QNumber& value, std::size_t width) {
  const std::string digits = value.to_string(2);
  return "#b" + std::string(width - digits.size(), '0') + digits;
}

std::string bv_literal(const QNumber& value, std::size_t width) {
  if (width % 4 != 0) return binary(value, width);
  const std::string digits = value.to_string(16);
  return "#x" + std::string(width / 4 - digits.size(), '0') + digits;
}

std::string fp_literal(const QNumber& bits, IEEEFloat::format f) {
  const auto [e, m] = f;
  const IEEEFloat value = IEEEFloat::from_bits(f, bits);
  const std::string sort = " " + std::to_string(e) + " " + std::to_string(m + 1) + ")";
  const char* sign = value.is_sign_set() ? "-" : "+";
  if (value.is_nan()) return "(_ NaN" + sort;
  if (value.is_inf()) return "(_ " + std::string(sign) + "oo" + sort;
  if (value.is_zero()) return "(_ " + std::string(sign) + "zero" + sort;
  return "(fp " + binary(BVNumber::bv_extract(e + m, e + m, bits), 1) + " " +
         binary(BVNumber::bv_extract(e + m - 1, m, bits), e) + " " +
         binary(BVNumber::bv_extract(m - 1, 0, bits), m) + ")";
}

/// The text of a symbol within that of another.
std::string without_bars(const std::string& text) {
  std::string result = text;
  std::erase(result, '|');
  return result;
}

std::string element_literal(const QNumber& number, const DataType* type) {
  return "(as " + quote_symbol(element_name(number, type)) + " " + type->to_string() + ")";
}

std::string operator_name(const Symbol* symbol) {
  if (symbol->is_function()) return quote_symbol(symbol->get_name());
  const Operation* operation = find_operation(symbol->get_tag());
  const Symbol::Indices& i = symbol->get_indices();
  std::string name(operation->name);
  switch (operation->indexing) {
    case Indexing::none:
      return name;
    case Indexing::extraction:
      return "(_ " + name + " " + std::to_string(i[0]) + " " + std::to_string(i[1]) + ")";
    case Indexing::format: {
      const DataType* type = symbol->get_output_type();
      return "(_ " + name + " " + std::to_string(type->get_e()) + " " +
             std::to_string(type->get_m() + 1) + ")";
    }
    case Indexing::sort:
      return "(as " + name + " " + symbol->get_output_type()->to_string() + ")";
    case Indexing::extension:
    case Indexing::repetition:
    case Indexing::rotation:
    case Indexing::width:
      break;
  }
  return "(_ " + name + " " + std::to_string(i[0]) + ")";
}

std::string leaf_text(const Symbol* symbol) {
  if (const QNumber* value = symbol->get_literal()) {
    return literal_text(*value, symbol->get_output_type());
  }
  // An uninterpreted constant may have the empty name: || is a symbol.
  return symbol->get_tag() == SymbolTag::none ? quote_symbol(symbol->get_name())
                                              : operator_name(symbol);
}

/// Prints one term; see the head of this file.
class Printer {
 public:
  explicit Printer(const Term* root) {
    for (const Term* t : find_shared(list_post_order({&root, 1}))) {
      std::string definition = print(t);
      names[t] = fresh_name();
      ++bindings;
      text += "(let ((" + names[t] + " " + definition + ")) ";
    }
    text += print(root) + std::string(bindings, ')');
  }

  std::string take() { return std::move(text); }

 private:
  struct Visit {
    const Term* term;
    std::size_t next = 0;
  };

  /// The operations among all terms, in post-order, that occur more than once. Notes the names of
  /// constants.
  std::vector<const Term*> find_shared(std::vector<const Term*> terms) {
    TermSet used;
    TermSet shared;
    for (const Term* t : terms) {
      taken.insert(t->get_symbol()->get_name());
      for (const Term* arg : t->get_args()) {
        if (!used.insert(arg)) shared.insert(arg);
      }
    }
    std::erase_if(terms, [&](const Term* t) { return t->get_arity() == 0 || !shared.contains(t); });
    return terms;
  }

  /// A name that no constant of the term has.
  std::string fresh_name() {
    std::string name;
    do {
      name = ".s" + std::to_string(++counter);
    } while (taken.contains(name));
    return name;
  }

  std::string print(const Term* root) {
    std::string out;
    std::vector<Visit> stack{{root}};
    while (!stack.empty()) {
      Visit& top = stack.back();
      const Term* t = top.term;
      const auto bound = names.find(t);
      if (bound != names.end() || t->get_arity() == 0) {
        out += bound != names.end() ? bound->second : leaf_text(t->get_symbol());
        stack.pop_back();
      } else if (top.next < t->get_arity()) {
        out += top.next == 0 ? "(" + operator_name(t->get_symbol()) + " " : " ";
        stack.push_back({t->get_arg(top.next++)});
      } else {
        out += ")";
        stack.pop_back();
      }
    }
    return out;
  }

  std::unordered_map<const Term*, std::string> names;
  std::unordered_set<std::string> taken;  // names of constants
  std::size_t counter = 0;
  std::size_t bindings = 0;
  std::string text;
};

}  // namespace

std::string quoted_string(std::string_view text) {
  std::string result = "\"";
  for (const char c : text)
    result += c == '"' ? "\"\"" : std::string(1, c);
  return result + "\"";
}

std::string quote_symbol(const std::string& name) {
  return is_simple_symbol(name) ? name : "|" + name + "|";
}

std::string element_name(const QNumber& number, const DataType* type) {
  return "@" + without_bars(type->to_string()) + "!" + number.to_string();
}

std::string literal_text(const QNumber& value, const DataType* type) {
  if (type->get_kind() == DataType::Kind::bit_vector) return bv_literal(value, type->get_width());
  if (type->get_kind() == DataType::Kind::uninterpreted) return element_literal(value, type);
  return fp_literal(value, type->get_format());
}

std::string head_text(const Symbol* symbol) {
  return symbol->get_arity() == 0 ? leaf_text(symbol) : operator_name(symbol);
}

std::string DataType::to_string() const {
  switch (kind) {
    case Kind::boolean:
      return "Bool";
    case Kind::rounding_mode:
      return "RoundingMode";
    case Kind::bit_vector:
      return "(_ BitVec " + std::to_string(widths[0]) + ")";
    case Kind::floating_point:
      return "(_ FloatingPoint " + std::to_string(widths[0]) + " " + std::to_string(widths[1] + 1) +
             ")";
    case Kind::array:
      return "(Array " + index->to_string() + " " + element->to_string() + ")";
    case Kind::uninterpreted:
      break;
  }
  if (arguments.empty()) return quote_symbol(name);
  std::string text = "(" + quote_symbol(name);
  for (const DataType* argument : arguments)
    text += " " + argument->to_string();
  return text + ")";
}

std::string Term::to_string() const {
  return Printer(this).take();
}

}  // namespace vorn
