; expect: 2:39: unknown symbol '-1.5'; a negative number is written (- 1.5)
(assert (fp.isNaN ((_ to_fp 8 24) RNE -1.5)))
