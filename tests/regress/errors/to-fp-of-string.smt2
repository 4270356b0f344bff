; expect: 2:39: string literals are not supported
(assert (fp.isNaN ((_ to_fp 8 24) RNE "0.5")))
