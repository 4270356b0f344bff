; The first terms of the series of sine stay within 1.
(set-info :status unsat)
(set-logic QF_FP)
(declare-const x Float64)
(define-fun one () Float64 ((_ to_fp 11 53) RNE 1.0))
(define-fun square () Float64 (fp.mul RNE x x))
(define-fun cube () Float64 (fp.mul RNE square x))
(define-fun fifth () Float64 (fp.mul RNE cube square))
(define-fun sine () Float64
  (fp.add RNE (fp.sub RNE x (fp.div RNE cube ((_ to_fp 11 53) RNE 6.0)))
    (fp.div RNE fifth ((_ to_fp 11 53) RNE 120.0))))
(assert (fp.leq (fp.abs x) one))
(assert (not (fp.leq (fp.abs sine) one)))
(check-sat)
