; A remainder is below the divisor unless that is 0, and not above the dividend.
(set-logic QF_BV)
(declare-const x (_ BitVec 8))
(declare-const y (_ BitVec 8))
(assert (or
  (not (= (bvult (bvurem x y) y) (not (= y #x00))))
  (not (= (bvule y (bvurem x y)) (= y #x00)))
  (not (= (bvule (bvurem x y) x) true))
))
(set-info :status unsat)
(check-sat)
