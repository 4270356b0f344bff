; Doubling a number is adding it to itself, overflow included.
(set-logic QF_BVFP)
(define-sort F () Float16)
(declare-const r RoundingMode)
(declare-const x F)
(assert (or
  (not (= (fp.mul r x ((_ to_fp 5 11) RNE 2.0)) (fp.add r x x)))
  (not (= (fp.div r x ((_ to_fp 5 11) RNE 0.5)) (fp.add r x x)))
))
(set-info :status unsat)
(check-sat)
