; expect: 3:23: to_fp of a float takes a rounding mode before it
(declare-const x Float32)
(assert (fp.isNaN ((_ to_fp 11 53) x)))
