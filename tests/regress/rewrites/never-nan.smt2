; Integers are numbers.
(set-logic QF_BVFP)
(declare-const r RoundingMode)
(declare-const s RoundingMode)
(declare-const u (_ BitVec 6))
(assert (or
  (not (= (fp.isNaN ((_ to_fp 3 4) r u)) false))
  (not (= (fp.isNaN ((_ to_fp_unsigned 3 4) r u)) false))
  (not (= (fp.isNaN (fp.neg ((_ to_fp 2 3) r ((_ to_fp 3 4) s u)))) false))
))
(set-info :status unsat)
(check-sat)
