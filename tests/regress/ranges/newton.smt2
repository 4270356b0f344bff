; A step of Newton's method for the root of 2 comes near to it from the right.
(set-info :status unsat)
(set-logic QF_FP)
(declare-const x Float32)
(define-fun one () Float32 ((_ to_fp 8 24) RNE 1.0))
(define-fun two () Float32 ((_ to_fp 8 24) RNE 2.0))
(define-fun step () Float32
  (fp.sub RNE x (fp.div RNE (fp.sub RNE (fp.mul RNE x x) two) (fp.mul RNE two x))))
(assert (and (fp.leq one x) (fp.leq x two)))
(assert (not (and (fp.leq ((_ to_fp 8 24) RNE 1.41) step) (fp.leq step ((_ to_fp 8 24) RNE 1.51)))))
(check-sat)
