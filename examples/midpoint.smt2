; Is (x + y) / 2 between x and y? Not when the sum overflows, as the model shows.
(set-logic QF_FP)
(declare-const x Float16)
(declare-const y Float16)
(define-fun midpoint () Float16 (fp.div RNE (fp.add RNE x y) ((_ to_fp 5 11) RNE 2)))
(assert (fp.leq x y))
(assert (not (or (fp.isInfinite x) (fp.isInfinite y))))
(assert (not (fp.leq x midpoint y)))

(set-info :status sat)
(check-sat)

; Where the sum is finite, it is.
(assert (not (fp.isInfinite (fp.add RNE x y))))
(set-info :status unsat)
(check-sat)
