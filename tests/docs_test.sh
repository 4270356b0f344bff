#!/usr/bin/env bash
# The manual says what the command does: names in the code's tables and in docs/command.md are the
# same, and the files that documents name are there. docs_examples.py runs what the documents show.
#   docs_test.sh VORN SOURCE-DIRECTORY
set -uf  # names may be stars
vorn=$1
root=$2
manual=$root/docs/command.md
# shellcheck source=tests/check.sh
source "$(dirname "${BASH_SOURCE[0]}")/check.sh"

expect() { # NAME TEST...
  local name=$1
  shift
  if "$@"; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    echo "FAILED $name"
  fi
}

# The part of the manual between two headings of its language section.
section() { awk -v from="### $1" '/^##/ { on = $0 == from } on' "$manual"; }
# What stands between backquotes, one a line, without and within the lines that refuse.
quoted() { grep -o '`[^`]*`' | tr -d '`'; }
supported() { section "$1" | awk '/^Refused/ { off = 1 } !off' | quoted; }
refused() { section "$1" | awk '/^Refused/ { on = 1 } on' | quoted; }
# The names of a table in the code: rows {"name", ...}; WITH or without anything behind the name.
rows() { # FILE TABLE
  awk -v table="$2" 'index($0, table) && /\{$/ { on = 1; next } on && /^};/ { on = 0 } on' "$root/$1"
}
with() { grep -oE '^ *\{"[^"]+",' | sed 's/^ *{"//; s/",$//'; }
without() { grep -oE '^ *\{"[^"]+"\}' | sed 's/^ *{"//; s/"}$//'; }
same() { [[ -n $1 && "$(sort -u <<<"$1")" == "$(sort -u <<<"$2")" ]] || { diff <(sort -u <<<"$1") <(sort -u <<<"$2"); false; }; }
within() { [[ -n $1 ]] && comm -23 <(sort -u <<<"$1") <(sort -u <<<"$2") | { ! grep .; }; }

# Options of the command.
help=$("$vorn" --help; for part in solve eval explain encode lift; do "$vorn" $part --help; done)
expect 'options of the command' same "$(grep -oE -- '--[a-z][a-z-]+' <<<"$help")" \
  "$(grep -oE '^\| `--[^|]*' "$manual" | grep -oE -- '--[a-z][a-z-]+')"
for status in 0 1 2 3 4; do
  expect "exit status $status" grep -qE "^\| $status \|" "$manual"
done
expect 'exit statuses of --help' grep -q '4 an internal error' <<<"$(tr '\n' ' ' <<<"$help" | tr -s ' ')"

# Rules: those of the manual, each with a script that proves it.
rules=$(awk '/^##/ { on = $0 == "## Rewriting" } on' "$root/docs/architecture.md" | grep -oE '^\| `[^|]*' | quoted)
expect 'rewriting rules' same "$(cd "$root/tests/regress/rewrites" && ls | sed 's/\.smt2$//')" "$rules"

# Commands: those of the table, and what the command does with each.
commands=$(rows vorn/smt2/interpreter.cpp kCommands)
known=$(supported Commands | grep -xE '[a-z]+(-[a-z]+)*' | grep -vxE 'sat|unsat|unsupported')
expect 'commands' same "$(with <<<"$commands")" "$known"
expect 'refused commands' same "$(without <<<"$commands")" "$(refused Commands)"
for name in $known; do
  script command.smt2 "($name"
  check "command $name" 1 '^\(error ".*never closed"\)$' '^$' "$vorn" "$dir/command.smt2"
done
for name in $(refused Commands); do
  script command.smt2 "($name)"
  check "refused $name" 1 "^\(error \".*error: $name is not supported\"\)$" '^$' "$vorn" "$dir/command.smt2"
done

# Options of a session.
options=$(rows vorn/smt2/session.cpp kOptions | with)
expect 'options of a session' same "$options" "$(section 'Options of a session' | grep '^|' | quoted | grep '^:')"
for name in $options; do
  script option.smt2 "(get-option $name)"
  check "option $name" 0 '^(true|false|[0-9]+|"std(out|err)")$' '^$' "$vorn" "$dir/option.smt2"
done

# Functions.
operations=$(grep -oE '(core|bits|floats|arrays)\("[^"]+"' "$root/vorn/terms/operations.cpp" | cut -d'"' -f2)
functions=$(rows vorn/smt2/operators.cpp 'kForms[]' | with; echo "$operations")
unknown=$(rows vorn/smt2/operators.cpp 'kRefused[]' | grep -oE '"[^"]+"' | tr -d '"')
expect 'functions' within "$functions" "$(supported Terms | tr ' ' '\n')"
expect 'refused functions' within "$unknown" "$(refused Terms)"
expect 'functions that are said to be there' within \
  "$(section Terms | grep '^| [A-Z]' | quoted | grep -vE '^[#(]')" "$functions"
for name in $(refused Terms | grep -vE '^(forall|exists|match|as)$'); do
  script function.smt2 "(assert ($name true))"
  check "refused $name" 1 "^\(error \".*error: ${name//[+*]/.} is not supported" '^$' "$vorn" "$dir/function.smt2"
done

# Files: what has a slash or an ending between backquotes is one of the tree, from the root or from
# the folder of a layer, with or without its ending. NAME stands for any name; what is built, and
# what lies beside the tree, need not be there.
name='[A-Za-z0-9_.*-]'
ending='(h|cpp|in|md|sh|py|txt|cmake|map|json|smt2)'
paths() { # DOCUMENT
  quoted <"$1" | grep -xE "$name+(/$name*)+|$name+\\.$ending" | grep -vE '^(build|\.\.)/' | sort -u
}
exists() { # PATH
  local place pattern
  pattern=${1%/}
  pattern=${pattern//NAME/*}
  for place in "" vorn/ vorn/*/; do
    [[ -n $(cd "$root" && set +f && compgen -G "$place$pattern") ]] && return
    [[ -n $(cd "$root" && set +f && compgen -G "$place$pattern.*") ]] && return
  done
  return 1
}
for document in CONTRIBUTING.md docs/architecture.md; do
  named=$(paths "$root/$document")
  expect "$document names files" [ "$(wc -l <<<"$named")" -gt 5 ]
  for path in $named; do
    expect "$document: $path is there" exists "$path"
  done
done

summary
