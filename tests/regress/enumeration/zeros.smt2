; What fp.eq says of zeros is no definition: a constant that equals a zero may be the other one.
(set-info :status sat)
(set-logic QF_FP)
(declare-const x Float16)
(declare-const y Float16)
(assert (fp.eq y (fp.mul RNE x x)))
(assert (fp.isZero y))
(assert (fp.isNegative y))
(check-sat)
