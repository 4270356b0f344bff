; An extension does not change an integer.
(set-logic QF_BVFP)
(declare-const r RoundingMode)
(declare-const v (_ BitVec 4))
(assert (or
  (not (= ((_ to_fp 3 4) r ((_ sign_extend 3) v)) ((_ to_fp 3 4) r v)))
  (not (= ((_ to_fp 3 4) r ((_ zero_extend 3) v)) ((_ to_fp_unsigned 3 4) r v)))
  (not (= ((_ to_fp_unsigned 3 4) r ((_ zero_extend 3) v)) ((_ to_fp_unsigned 3 4) r v)))
))
(set-info :status unsat)
(check-sat)
