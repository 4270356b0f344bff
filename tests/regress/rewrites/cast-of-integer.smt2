; An integer that a format has is cast from there as it is converted.
(set-logic QF_BVFP)
(declare-const r RoundingMode)
(declare-const s RoundingMode)
(declare-const v (_ BitVec 4))
(declare-const u (_ BitVec 6))
(assert (or
  (not (= ((_ to_fp 3 4) r ((_ to_fp 5 11) s u)) ((_ to_fp 3 4) r u)))
  (not (= ((_ to_fp 3 4) r ((_ to_fp_unsigned 5 11) s u)) ((_ to_fp_unsigned 3 4) r u)))
  (not (= ((_ to_fp 2 3) r ((_ to_fp 3 4) s v)) ((_ to_fp 2 3) r v)))
))
(set-info :status unsat)
(check-sat)
