# Completion of the command vorn for bash.
_vorn() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} word command=
  COMPREPLY=()
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case $word in
      solve | eval | encode | lift | explain) command=$word && break ;;
    esac
  done

  case $previous in
    --encoder) mapfile -t COMPREPLY < <(compgen -W 'ieee base' -- "$current") && return ;;
    --to) mapfile -t COMPREPLY < <(compgen -W 'smt2 dimacs aiger dot' -- "$current") && return ;;
    --time-limit | --memory-limit | --threads) return ;;
  esac
  if [[ $current == -* ]]; then
    local solve='--encoder --time-limit --memory-limit --no-rewrite --no-local-search --no-ranges --no-reals --no-enumeration --threads --no-relations --no-substitution --abstraction --no-abstraction --check-model --cnf --proof --stats --verbose --strict' options=--help
    case $command in
      '') options+=" --version $solve" ;;
      solve) options+=" $solve" ;;
      eval) options+=' --encoder' ;;
      encode) options+=' --to --op --out --keep-arrays --encoder --strict' ;;
      lift) options+=' --check' ;;
      explain) options+=' --encoder --json --strict' ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    return
  fi
  local words=
  [[ -n $command ]] || words='solve eval encode lift explain'
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current"; compgen -f -- "$current")
}
complete -o filenames -F _vorn vorn
