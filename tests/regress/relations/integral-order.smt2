; Roundings of one operand to integers lie around it, and each of them is one of the two outer ones.
(set-logic QF_BVFP)
(declare-const x (_ FloatingPoint 4 6))
(define-fun floor () (_ FloatingPoint 4 6) (fp.roundToIntegral RTN x))
(define-fun ceiling () (_ FloatingPoint 4 6) (fp.roundToIntegral RTP x))
(define-fun even () (_ FloatingPoint 4 6) (fp.roundToIntegral RNE x))
(define-fun away () (_ FloatingPoint 4 6) (fp.roundToIntegral RNA x))
(assert (not (and
  (or (fp.isNaN x) (fp.leq floor x ceiling))
  (= (fp.roundToIntegral RTZ x) (ite (fp.isNegative x) ceiling floor))
  (or (= even floor) (= even ceiling))
  (or (= away floor) (= away ceiling)))))
(set-info :status unsat)
(check-sat)
