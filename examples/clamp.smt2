; Does clamping to [lo, hi] always end up in [lo, hi]? Only if no NaN is about.
(set-logic QF_FP)
(declare-const x Float32)
(declare-const lo Float32)
(declare-const hi Float32)
(define-fun clamped () Float32 (ite (fp.lt x lo) lo (ite (fp.gt x hi) hi x)))
(assert (fp.leq lo hi))

(push 1)
(assert (not (fp.leq lo clamped hi)))
(set-info :status sat)
(check-sat)
(pop 1)

(assert (not (fp.isNaN x)))
(assert (not (fp.leq lo clamped hi)))
(set-info :status unsat)
(check-sat)
