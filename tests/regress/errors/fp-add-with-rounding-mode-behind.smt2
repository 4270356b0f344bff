; expect: 3:15: fp.add: expected a rounding mode, got a term of (_ FloatingPoint 8 24)
(declare-const x Float32)
(assert (= x (fp.add x x RNE)))
