; A sum with 2p + 1 bits, rounded to p bits, is rounded as if once; more exponents are not needed.
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const r RoundingMode)
(declare-const s RoundingMode)
(declare-const x F)
(declare-const y F)
(assert (or
  (not (= ((_ to_fp 3 4) r (fp.add r ((_ to_fp 3 9) s x) ((_ to_fp 3 9) s y))) (fp.add r x y)))
  (not (= ((_ to_fp 3 4) r (fp.sub r ((_ to_fp 3 9) s x) ((_ to_fp 3 9) s y))) (fp.sub r x y)))
))
(set-info :status unsat)
(check-sat)
