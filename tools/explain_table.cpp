#include "tools/explain_table.h"

#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "tools/reading.h"
#include "vorn/terms/printer.h"

namespace vorn::tools {
namespace {

constexpr int kSchemaVersion = 1;

/// A value of a sort, as an operand or result.
Row make_row(std::string label, const DataType* type, const QNumber& value, std::size_t width,
             bool is_signed) {
  Row row;
  row.label = std::move(label);
  switch (type->get_kind()) {
    case DataType::Kind::boolean:
      row.kind = get_reading_name(fp::Reading::flag);
      break;
    case DataType::Kind::rounding_mode:
      row.kind = get_reading_name(fp::Reading::mode);
      break;
    case DataType::Kind::floating_point:
      row.kind = get_reading_name(fp::Reading::source);
      break;
    default:
      row.kind = "integer";
      break;
  }
  row.width = width;
  row.bits = bits_text(type, value, width);
  row.hex = digits_text(value, width, 16);
  row.reading = value_text(type, value, is_signed);
  return row;
}

/// A rounding mode of the base encoder, which has four, takes one bit less.
std::size_t width_of(const DataType* type, solver::EncoderKind encoder) {
  const bool is_mode = type->get_kind() == DataType::Kind::rounding_mode;
  return type->get_value_width() - (is_mode && encoder == solver::EncoderKind::base ? 1 : 0);
}

std::string shown_label(const Row& row) {
  return row.occurrence == 1 ? row.label : fmt::format("{} ({})", row.label, row.occurrence);
}

/// Prints rows under one heading, in columns that are as wide as the table needs.
class Columns {
 public:
  explicit Columns(std::ostream& stream) : out(stream) {}

  void widen(const Row& row) {
    label = std::max(label, shown_label(row).size());
    width = std::max(width, std::to_string(row.width).size());
    bits = std::max(bits, row.bits.size());
    hex = std::max(hex, row.hex.size());
  }

  void print(std::string_view heading, const Row& row) {
    if (heading != last) out << heading << '\n';
    last = heading;
    const std::string line =
        fmt::format("  {:<{}}  {:>{}}  {:<{}}  {:<{}}  {}", shown_label(row), label, row.width,
                    width, row.bits, bits, row.hex, hex, row.reading);
    out << line.substr(0, line.find_last_not_of(' ') + 1) << '\n';
  }

 private:
  std::ostream& out;
  std::string_view last;
  std::size_t label = 0;
  std::size_t width = 0;
  std::size_t bits = 0;
  std::size_t hex = 0;
};

// Keys come in the order of docs/explain.md.
using Json = nlohmann::ordered_json;

Json json_row(const Row& row) {
  Json object;
  object["label"] = row.label;
  if (!row.stage.empty()) {
    object["occurrence"] = row.occurrence;
    object["stage"] = row.stage;
  }
  object["kind"] = row.kind;
  object["width"] = row.width;
  // Text: many readers of JSON take every number for a float of 64 bits.
  object["bits"] = row.bits;
  object["hex"] = row.hex;
  object["reading"] = row.reading;
  return object;
}

Json json_rows(const std::vector<Row>& rows) {
  Json array = Json::array();
  for (const Row& row : rows)
    array.push_back(json_row(row));
  return array;
}

Json json_table(const Table& table) {
  Json object;
  object["operation"] = table.operation;
  object["term"] = table.term;
  object["operands"] = json_rows(table.operands);
  object["intermediates"] = json_rows(table.intermediates);
  object["result"] = json_row(table.result);
  object["notes"] = table.notes;
  return object;
}

}  // namespace

Table make_table(const solver::Explanation& explanation, std::string term) {
  const Term* operation = explanation.operation;
  const SymbolTag::tag tag = operation->get_tag();
  Table table;
  table.operation = head_text(operation->get_symbol());
  table.term = std::move(term);
  constexpr const char* kNames[] = {"x", "y", "z"};
  std::size_t next = 0;
  for (std::size_t i = 0; i < operation->get_arity(); ++i) {
    const DataType* type = operation->get_arg(i)->get_type();
    const bool is_mode = type->get_kind() == DataType::Kind::rounding_mode;
    table.operands.push_back(make_row(is_mode ? "rm" : kNames[next++], type,
                                      explanation.operands[i], width_of(type, explanation.encoder),
                                      tag == SymbolTag::fp_from_sbv));
  }
  const IntermediateReader reader(explanation);
  for (std::size_t i = 0; i < explanation.intermediates.size(); ++i) {
    const solver::Intermediate& value = explanation.intermediates[i];
    const fp::Label& label = fp::find_label(value.label);
    table.intermediates.push_back({value.label, value.occurrence, get_stage_name(label.stage),
                                   get_reading_name(label.reading), value.width, reader.bits(i),
                                   digits_text(value.value, value.width, 16), reader.reading(i)});
  }
  const DataType* type = operation->get_type();
  table.result = make_row("result", type, explanation.result, width_of(type, explanation.encoder),
                          tag == SymbolTag::fp_to_sbv);
  if (explanation.is_open) {
    table.notes.emplace_back("the theory leaves this result open");
  }
  if (explanation.is_excluded) {
    table.notes.emplace_back(
        "the constraints of this circuit contradict each other here: where the operands are "
        "variables, no model has these values");
  }
  if (explanation.is_folded) {
    table.notes.emplace_back(
        "this encoder has no circuit of variables in this format: the values are those of a "
        "circuit "
        "of literals, which leaves stages out");
  }
  return table;
}

void print_table(std::ostream& out, const Table& table) {
  Columns columns(out);
  for (const Row& row : table.operands)
    columns.widen(row);
  for (const Row& row : table.intermediates)
    columns.widen(row);
  columns.widen(table.result);
  out << table.term << '\n';
  for (const Row& row : table.operands)
    columns.print("operands", row);
  for (const Row& row : table.intermediates)
    columns.print(row.stage, row);
  columns.print("value", table.result);
  for (const std::string& note : table.notes)
    out << "note: " << note << '\n';
}

void print_json(std::ostream& out, std::string_view encoder, std::string_view answer,
                const std::vector<Table>& tables) {
  Json object;
  object["schema"] = kSchemaVersion;
  object["encoder"] = encoder;
  object["answer"] = answer.empty() ? Json(nullptr) : Json(answer);
  object["operations"] = Json::array();
  for (const Table& table : tables)
    object["operations"].push_back(json_table(table));
  // Symbols of a script may hold any bytes: those that are no UTF-8 become U+FFFD.
  out << object.dump(1, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace vorn::tools
