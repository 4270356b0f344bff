#!/usr/bin/env bash
# doxygen finds a description for everything that the public headers declare.
#   reference_test.sh DOXYFILE SOURCE
set -u
doxyfile=$1
# shellcheck source=tests/check.sh
source "$2/tests/check.sh"
if ! command -v doxygen >/dev/null; then
  echo "skipped: doxygen is not installed"
  exit 77
fi

reference() { # INPUT : the headers of the Doxyfile if empty
  { cat "$doxyfile"; echo "OUTPUT_DIRECTORY = $dir/reference"; [[ -z $1 ]] || echo "INPUT = $1"; } >"$dir/Doxyfile"
  doxygen "$dir/Doxyfile"
}
check 'everything is described' 0 '' '^$' reference ''
check 'there are pages' 0 'make_fp_add' '^$' cat "$dir/reference/html/classvorn_1_1TermManager.html"

# And would miss it.
script one.h '// A file.\n\n/// Described.\nclass One {\n public:\n  /// Described.\n  void f();\n\n  void missing();\n};\n'
check 'what is missing is found' 1 '' 'missing.* is not documented' reference "$dir/one.h"
script two.h '// A file.\n\n/// Described.\nclass Two {\n public:\n  /// Both are described.\n  void f();\n  void g();\n\n private:\n  void own();\n};\n'
check 'one description for two' 0 '' '^$' reference "$dir/two.h"

summary
