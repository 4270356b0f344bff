// An explanation as rows of text, and the two ways to print them.
#ifndef TOOLS_EXPLAIN_TABLE_H
#define TOOLS_EXPLAIN_TABLE_H

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "vorn/solver/explanation.h"

namespace vorn::tools {

/// One value.
struct Row {
  std::string label;
  std::size_t occurrence = 1;
  std::string_view stage;  // empty for operands and the result
  std::string_view kind;   // how it is to be read
  std::size_t width = 0;
  std::string bits;  // fields set apart by spaces
  std::string hex;
  std::string reading;
};

/// One operation.
struct Table {
  std::string operation;
  std::string term;  // what it belongs to
  std::vector<Row> operands;
  std::vector<Row> intermediates;
  Row result;
  std::vector<std::string> notes;
};

Table make_table(const solver::Explanation& explanation, std::string term);

void print_table(std::ostream& out, const Table& table);

/// What a program gets: all tables in one object. `answer` is that of a script, or empty.
void print_json(std::ostream& out, std::string_view encoder, std::string_view answer,
                const std::vector<Table>& tables);

}  // namespace vorn::tools

#endif
