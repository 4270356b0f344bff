; expect: 3:20: 'RTZ' is no function: it stands without parentheses
(declare-const x Float32)
(assert (fp.isNaN (RTZ x)))
