; An integer that was made a float without rounding comes back.
(set-info :status unsat)
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 8 24))
(declare-const v (_ BitVec 8))
(declare-const r RoundingMode)
(assert (not (and (= ((_ fp.to_ubv 8) r ((_ to_fp_unsigned 8 24) r v)) v) (= ((_ fp.to_sbv 8) r ((_ to_fp 8 24) r v)) v))))
(check-sat)
