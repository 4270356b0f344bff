; Adding a number to itself is doubling it, overflow included.
(set-logic QF_BVFP)
(define-sort F () Float16)
(declare-const r RoundingMode)
(declare-const x F)
(assert (not (= (fp.add r x x) (fp.mul r x ((_ to_fp 5 11) RNE 2.0)))))
(set-info :status unsat)
(check-sat)
