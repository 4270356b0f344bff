; Two roundings in one direction are one if the second format is part of the first.
(set-logic QF_BVFP)
(define-sort G () (_ FloatingPoint 5 9))
(declare-const c G)
(assert (or
  (not (= ((_ to_fp 3 4) RTP ((_ to_fp 4 6) RTP c)) ((_ to_fp 3 4) RTP c)))
  (not (= ((_ to_fp 3 4) RTN ((_ to_fp 4 6) RTN c)) ((_ to_fp 3 4) RTN c)))
  (not (= ((_ to_fp 3 4) RTZ ((_ to_fp 4 6) RTZ c)) ((_ to_fp 3 4) RTZ c)))
  (not (= ((_ to_fp 3 4) RTP ((_ to_fp 3 6) RTP c)) ((_ to_fp 3 4) RTP c)))
  (not (= ((_ to_fp 3 4) RTN ((_ to_fp 3 6) RTN c)) ((_ to_fp 3 4) RTN c)))
  (not (= ((_ to_fp 3 4) RTZ ((_ to_fp 3 6) RTZ c)) ((_ to_fp 3 4) RTZ c)))
))
(set-info :status unsat)
(check-sat)
