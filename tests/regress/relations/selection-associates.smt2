; Minimum and maximum of three are the same whichever two come first, zeros and NaN included.
(set-logic QF_BVFP)
(define-sort F () Float16)
(declare-const x F)
(declare-const y F)
(declare-const z F)
(assert (or
  (not (= (fp.min (fp.min x y) z) (fp.min x (fp.min y z))))
  (not (= (fp.max (fp.max x y) z) (fp.max x (fp.max y z))))))
(set-info :status unsat)
(check-sat)
