#!/usr/bin/env bash
# Runs an example and compares what it prints. Exit status 77 of the example passes through.
#   compare.sh EXPECTED PROGRAM [FILTER...]    the output goes through the filter first
expected=$1
program=$2
shift 2
output=$("$program") || exit
[[ $# -eq 0 ]] || output=$("$@" <<<"$output")
diff "$expected" - <<<"$output"
