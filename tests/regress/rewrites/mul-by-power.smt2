; A product with a power of two is the quotient by its reciprocal, also where the reciprocal is
; subnormal and where the result overflows or underflows.
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const r RoundingMode)
(declare-const x F)
(assert (or
  (not (= (fp.mul r x ((_ to_fp 3 4) RNE 0.5)) (fp.div r x ((_ to_fp 3 4) RNE 2.0))))
  (not (= (fp.mul r x ((_ to_fp 3 4) RNE (- 0.25))) (fp.div r x ((_ to_fp 3 4) RNE (- 4.0)))))
  (not (= (fp.mul r x ((_ to_fp 3 4) RNE 0.125)) (fp.div r x ((_ to_fp 3 4) RNE 8.0))))
  (not (= (fp.mul r x ((_ to_fp 3 4) RNE 4.0)) (fp.div r x ((_ to_fp 3 4) RNE 0.25))))
  (not (= (fp.mul r x ((_ to_fp 3 4) RNE 8.0)) (fp.div r x ((_ to_fp 3 4) RNE 0.125))))
))
(set-info :status unsat)
(check-sat)
