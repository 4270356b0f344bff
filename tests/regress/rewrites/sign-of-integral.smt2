; A negation moves out of a rounding to an integer if the mode is mirrored.
(set-logic QF_BVFP)
(define-sort F () Float16)
(declare-const x F)
(assert (or
  (not (= (fp.roundToIntegral RNE (fp.neg x)) (fp.neg (fp.roundToIntegral RNE x))))
  (not (= (fp.roundToIntegral RNA (fp.neg x)) (fp.neg (fp.roundToIntegral RNA x))))
  (not (= (fp.roundToIntegral RTP (fp.neg x)) (fp.neg (fp.roundToIntegral RTN x))))
  (not (= (fp.roundToIntegral RTN (fp.neg x)) (fp.neg (fp.roundToIntegral RTP x))))
  (not (= (fp.roundToIntegral RTZ (fp.neg x)) (fp.neg (fp.roundToIntegral RTZ x))))
))
(set-info :status unsat)
(check-sat)
