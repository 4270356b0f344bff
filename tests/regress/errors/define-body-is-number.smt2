; expect: 2:29: a number is no term here; to_fp makes it a float, (_ bvN width) writes a bit-vector
(define-fun half () Float32 0.5)
