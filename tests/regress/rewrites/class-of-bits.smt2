; Classes of bits read as a float are written in the bits.
(set-logic QF_BVFP)
(declare-const b (_ BitVec 7))
(assert (or
  (not (= (fp.isNaN ((_ to_fp 3 4) b)) (and (= ((_ extract 5 3) b) #b111) (not (= ((_ extract 2 0) b) #b000)))))
  (not (= (fp.isInfinite ((_ to_fp 3 4) b)) (and (= ((_ extract 5 3) b) #b111) (= ((_ extract 2 0) b) #b000))))
  (not (= (fp.isZero ((_ to_fp 3 4) b)) (and (= ((_ extract 5 3) b) #b000) (= ((_ extract 2 0) b) #b000))))
  (not (= (fp.isNormal ((_ to_fp 3 4) b)) (not (or (= ((_ extract 5 3) b) #b000) (= ((_ extract 5 3) b) #b111)))))
  (not (= (fp.isSubnormal ((_ to_fp 3 4) b)) (and (= ((_ extract 5 3) b) #b000) (not (= ((_ extract 2 0) b) #b000)))))
  (not (= (fp.isNegative ((_ to_fp 3 4) b)) (and (= ((_ extract 6 6) b) #b1) (not (and (= ((_ extract 5 3) b) #b111) (not (= ((_ extract 2 0) b) #b000)))))))
  (not (= (fp.isPositive ((_ to_fp 3 4) b)) (not (or (= ((_ extract 6 6) b) #b1) (and (= ((_ extract 5 3) b) #b111) (not (= ((_ extract 2 0) b) #b000)))))))
))
(set-info :status unsat)
(check-sat)
