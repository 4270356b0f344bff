; A conversion or sign of one of two literals is one of two literals.
(set-logic QF_BVFP)
(declare-const p Bool)
(assert (or
  (not (= (fp.neg (ite p (_ +zero 3 4) (_ NaN 3 4))) (ite p (_ -zero 3 4) (_ NaN 3 4))))
  (not (= (fp.abs (ite p (_ -oo 3 4) ((_ to_fp 3 4) RNE 0.5))) (ite p (_ +oo 3 4) ((_ to_fp 3 4) RNE 0.5))))
  (not (= ((_ to_fp 2 3) RTP (ite p ((_ to_fp 3 4) RNE 1.125) (_ -zero 3 4))) (ite p ((_ to_fp 2 3) RNE 1.25) (_ -zero 2 3))))
  (not (= (fp.roundToIntegral RNE (ite p ((_ to_fp 3 4) RNE 2.5) (_ -oo 3 4))) (ite p ((_ to_fp 3 4) RNE 2.0) (_ -oo 3 4))))
))
(set-info :status unsat)
(check-sat)
