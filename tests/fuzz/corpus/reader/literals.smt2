(assert (distinct #b0101 (_ bv4 4) #xA #xf))
(assert (= #x00FF (_ bv255 16) (_ bv00255 16) #b0000000011111111))
(assert (fp.eq ((_ to_fp 5 11) RNE 007) ((_ to_fp 5 11) RNE 7.000)))
(check-sat)
