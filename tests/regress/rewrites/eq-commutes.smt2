; fp.eq does not depend on the order of its operands.
(set-logic QF_BVFP)
(define-sort F () Float32)
(declare-const x F)
(declare-const y F)
(assert (not (= (fp.eq x y) (fp.eq y x))))
(set-info :status unsat)
(check-sat)
