; expect: 3:23: '+oo' is no function and takes no arguments
(declare-const x Float32)
(assert (fp.isNaN ((_ +oo 8 24) x)))
