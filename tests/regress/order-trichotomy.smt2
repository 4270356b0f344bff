; For numbers exactly one of <, = and > holds.
(set-logic QF_FP)
(declare-const x Float64)
(declare-const y Float64)
(assert (not (or (fp.isNaN x) (fp.isNaN y))))
(assert (not (xor (fp.lt x y) (fp.eq x y) (fp.gt x y))))
(set-info :status unsat)
(check-sat)
