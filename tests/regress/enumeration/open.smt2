; The theory leaves open what a conversion out of range is: only some of its values are a model.
(set-info :status sat)
(set-logic QF_BVFP)
(declare-const x (_ FloatingPoint 3 4))
(assert (fp.isInfinite x))
(assert (= ((_ fp.to_ubv 4) RTZ x) #x9))
(check-sat)
