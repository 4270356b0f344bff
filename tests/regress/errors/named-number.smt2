; expect: 2:53: a number cannot be named
(assert (fp.isNaN ((_ to_fp 8 24) RNE (! 0.5 :named half))))
