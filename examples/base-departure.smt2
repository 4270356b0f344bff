; options: --encoder base
; The base encoder gives a sum of zeros the sign that the rounding mode names, and has no model where
; the operands ask for another; docs/semantics.md lists such departures. The exact encoder says sat.
(set-logic QF_FP)
(declare-const x Float32)
(assert (= x (_ -zero 8 24)))
(assert (fp.isZero (fp.add RNE x x)))
(set-info :status unsat)
(check-sat)
