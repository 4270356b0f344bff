#!/usr/bin/env bash
# The manual page and the completions know every subcommand and every option of the command.
#   command_files_test.sh VORN SOURCE MANUAL-PAGE
set -u
vorn=$1
source=$2
page=$3
# shellcheck source=tests/check.sh
source "$source/tests/check.sh"

mapfile -t subcommands < <("$vorn" --help | awk '/^Subcommands:/ { on = 1; next } on && /^  [a-z]/ { print $1 }')
check 'there are subcommands' 0 'solve eval encode' '^$' echo "${subcommands[@]}"

# The options of the command, or of a subcommand.
options() { "$vorn" "$@" --help | grep -oE '^  [-,a-z]*--[a-z-]+' | grep -oE -- '--[a-z-]+'; }

complete_words() { # WORD... : what bash offers for the last one
  bash -c 'source "$0"; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _vorn; printf "%s\n" "${COMPREPLY[@]}"' \
    "$source/completions/vorn.bash" vorn "$@"
}
offered=" $(complete_words '' | tr '\n' ' ')"
for subcommand in '' "${subcommands[@]}"; do
  if [[ -n $subcommand ]]; then
    check "manual: $subcommand" 0 '' '^$' grep -qE "^\.(It )?Cm $subcommand\$|^\.Op Cm $subcommand\$" "$page"
    check "bash: $subcommand" 0 " $subcommand " '^$' echo "$offered"
    check "zsh: $subcommand" 0 '' '^$' grep -q "'$subcommand:" "$source/completions/_vorn"
    check "fish: $subcommand" 0 '' '^$' grep -q -- "-a $subcommand " "$source/completions/vorn.fish"
  fi
  # shellcheck disable=SC2086
  flags=" $(complete_words $subcommand -- | tr '\n' ' ')"
  # shellcheck disable=SC2086
  for option in $(options $subcommand); do
    check "manual: $subcommand $option" 0 '' '^$' grep -qE "^\.It.* Fl \\\\-${option#--}( |\$)" "$page"
    check "bash: $subcommand $option" 0 " $option " '^$' echo "$flags"
    check "zsh: $option" 0 '' '^$' grep -qE -- "[{',)]${option}['}[]" "$source/completions/_vorn"
    check "fish: $option" 0 '' '^$' grep -qE -- "-l ${option#--} " "$source/completions/vorn.fish"
  done
done
check 'bash: values' 0 'ieee.base' '^$' complete_words eval --encoder ''
check 'bash: files' 0 'vorn.fish' '^$' complete_words "$source/completions/v"
check 'version' 0 '' '^$' grep -qF "$("$vorn" --version)" "$page"

check_syntax() { # PROGRAM ARGUMENT...
  if command -v "$1" >/dev/null; then
    check "syntax by $1" 0 '^$' '^$' "$@"
  else
    echo "skipped: $1 is not installed"
  fi
}
check_syntax mandoc -T lint -W warning "$page"
check_syntax zsh -n "$source/completions/_vorn"
check_syntax fish -n "$source/completions/vorn.fish"

summary
