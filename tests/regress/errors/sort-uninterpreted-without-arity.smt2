; expect: 2:16: expected a numeral, got ')'
(declare-sort U)
