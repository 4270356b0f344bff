; An integer that was made a float without rounding comes back.
(set-info :status unsat)
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 5 11))
(declare-const v (_ BitVec 8))
(declare-const r RoundingMode)
(assert (not (and (= ((_ fp.to_ubv 8) r ((_ to_fp_unsigned 5 11) r v)) v) (= ((_ fp.to_sbv 8) r ((_ to_fp 5 11) r v)) v))))
(check-sat)
