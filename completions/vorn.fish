# Completion of the command vorn for fish.
set -l commands solve eval encode lift explain
set -l none "not __fish_seen_subcommand_from $commands"
complete -c vorn -n $none -a solve -d 'decide SMT-LIB scripts'
complete -c vorn -n $none -a eval -d 'evaluate operations on bit patterns'
complete -c vorn -n $none -a encode -d 'write a script as a formula for other solvers'
complete -c vorn -n $none -a lift -d 'turn the answer of a SAT solver into one to the script'
complete -c vorn -n $none -a explain -d 'show how operations become circuits'
complete -c vorn -n $none -l version -d 'print the version'
complete -c vorn -l help -s h -d 'say what the command is'

complete -c vorn -n "not __fish_seen_subcommand_from lift" -l encoder -x -a 'ieee base' \
  -d 'circuits for floating point'
complete -c vorn -n "not __fish_seen_subcommand_from eval lift" -l strict \
  -d 'refuse spellings that the standard does not allow'
set -l solve "not __fish_seen_subcommand_from eval encode lift explain"
complete -c vorn -n $solve -l time-limit -x -d 'end each check after that many seconds'
complete -c vorn -n $solve -l memory-limit -x -d 'end what needs more megabytes of memory'
complete -c vorn -n $solve -l no-rewrite -d 'encode formulas as they are'
complete -c vorn -n $solve -l no-local-search -d 'find models by circuits alone'
complete -c vorn -n $solve -l no-ranges -d 'find refutations by circuits alone'
complete -c vorn -n $solve -l no-reals -d 'do not add up comparisons for refutations'
complete -c vorn -n $solve -l no-enumeration -d 'do not try all assignments'
complete -c vorn -n $solve -l threads -x -d 'try assignments in that many threads'
complete -c vorn -n $solve -l no-relations -d 'state no theorems beside formulas'
complete -c vorn -n $solve -l no-substitution -d 'substitute no definitions'
complete -c vorn -n $solve -l abstraction -d 'put off circuits of bit-vector operations too'
complete -c vorn -n $solve -l no-abstraction -d 'make all circuits before the search'
complete -c vorn -n $solve -l check-model -d 'check each model, which is always done'
complete -c vorn -n $solve -l cnf -r -d 'write the clauses in DIMACS'
complete -c vorn -n $solve -l proof -r -d 'write a proof of unsat in DRAT'
complete -c vorn -n $solve -l stats -d 'print statistics'
complete -c vorn -n $solve -l verbose -d 'report progress'
complete -c vorn -n '__fish_seen_subcommand_from encode' -l to -x -a 'smt2 dimacs aiger dot' -d format
complete -c vorn -n '__fish_seen_subcommand_from encode' -l keep-arrays -d 'keep arrays and functions'
complete -c vorn -n '__fish_seen_subcommand_from encode' -l op -x -d 'draw this operation'
complete -c vorn -n '__fish_seen_subcommand_from encode' -l out -s o -r -d 'where to write'
complete -c vorn -n '__fish_seen_subcommand_from lift' -l check -r -d 'evaluate this script'
complete -c vorn -n '__fish_seen_subcommand_from explain' -l json -d 'print JSON'
