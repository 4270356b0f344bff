; A remainder is exact, so that of widened values is widened.
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 3))
(declare-const r RoundingMode)
(declare-const s RoundingMode)
(declare-const x F)
(declare-const y F)
(assert (or
  (not (= (fp.rem ((_ to_fp 3 5) r x) ((_ to_fp 3 5) s y)) ((_ to_fp 3 5) RNE (fp.rem x y))))
  (not (= (fp.rem ((_ to_fp 3 5) r x) ((_ to_fp 3 5) RNE 3.0)) ((_ to_fp 3 5) RNE (fp.rem x ((_ to_fp 3 3) RNE 3.0)))))
))
(set-info :status unsat)
(check-sat)
