; expect: 3:10: 'a' is no function: it stands without parentheses
(declare-const a (Array Bool Bool))
(assert (a true))
