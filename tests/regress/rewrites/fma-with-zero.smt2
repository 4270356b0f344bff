; A fused sum with the neutral zero is a product.
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const x F)
(declare-const y F)
(assert (or
  (not (= (fp.fma RNE x y (_ -zero 3 4)) (fp.mul RNE x y)))
  (not (= (fp.fma RNA x y (_ -zero 3 4)) (fp.mul RNA x y)))
  (not (= (fp.fma RTP x y (_ -zero 3 4)) (fp.mul RTP x y)))
  (not (= (fp.fma RTN x y (_ +zero 3 4)) (fp.mul RTN x y)))
  (not (= (fp.fma RTZ x y (_ -zero 3 4)) (fp.mul RTZ x y)))
))
(set-info :status unsat)
(check-sat)
