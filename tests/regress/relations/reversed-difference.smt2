; Differences of two operands are negations of each other in modes that treat signs alike.
(set-logic QF_BVFP)
(define-sort F () (_ FloatingPoint 3 4))
(declare-const r RoundingMode)
(declare-const x F)
(declare-const y F)
(define-fun d () F (fp.sub r x y))
(define-fun b () F (fp.sub r y x))
(assert (not (and
  (=> (or (= r RNE) (= r RNA) (= r RTZ)) (or (fp.isNaN d) (fp.eq d (fp.neg b)))))))
(set-info :status unsat)
(check-sat)
