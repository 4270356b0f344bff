; Bits read as a float, and a float that takes its bits.
(set-logic QF_BVFP)
(declare-const b (_ BitVec 16))
(declare-const x Float16)
(assert (= x ((_ to_fp 5 11) b)))
(assert (fp.lt x (_ -zero 5 11)))
(assert (= ((_ extract 15 15) b) #b0))
(set-info :status unsat)
(check-sat)
