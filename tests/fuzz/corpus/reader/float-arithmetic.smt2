(declare-const x (_ FloatingPoint 3 5))(declare-const y (_ FloatingPoint 3 5))(declare-const r RoundingMode)
(assert (= (fp.add r x y) (fp.sub RNE x y) (fp.mul RTZ x (fp.neg y)) (fp.div RNA x y)))
(assert (fp.lt (fp.add RNE (fp #b0 #b011 #b0000) (fp #b1 #b001 #b0101)) (fp.div RTP (fp #b0 #b011 #b0000) (fp #b0 #b100 #b1000))))
(check-sat)
