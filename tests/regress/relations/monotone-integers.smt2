; Rounded conversions rise with the integer.
(set-logic QF_BVFP)
(declare-const r RoundingMode)
(declare-const v (_ BitVec 7))
(declare-const w (_ BitVec 7))
(assert (not (and
  (=> (bvsle v w) (fp.leq ((_ to_fp 3 3) r v) ((_ to_fp 3 3) r w)))
  (=> (bvule v w) (fp.leq ((_ to_fp_unsigned 3 3) r v) ((_ to_fp_unsigned 3 3) r w))))))
(set-info :status unsat)
(check-sat)
