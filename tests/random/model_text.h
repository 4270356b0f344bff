// Printed models and values, read back as equations. The reader is as small as can be and does not
// use the library's own, which must not be its own judge.
#ifndef VORN_TESTS_RANDOM_MODEL_TEXT_H
#define VORN_TESTS_RANDOM_MODEL_TEXT_H

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vorn::random {

/// The elements of a parenthesised list. Throws std::runtime_error where the text is none.
std::vector<std::string> split_list(std::string_view text);

/// An equation for each constant that get-model defined. Throws std::runtime_error unless exactly
/// the names of `declared` are defined, functions among them, in this order.
std::vector<std::string> read_model(std::string_view text,
                                    const std::vector<std::string>& declared);
/// The definitions of functions with arguments, by name.
std::map<std::string, std::string> read_functions(std::string_view text);
/// An equation for each pair that get-value printed.
std::vector<std::string> read_values(std::string_view text);

}  // namespace vorn::random

#endif
