; expect: 2:10: forall is not supported
(assert (forall ((v Float32)) (fp.eq v v)))
