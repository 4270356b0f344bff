; expect: 4:10: =: operands of different sorts, Bool and (_ FloatingPoint 8 24)
(declare-const p Bool)
(declare-const x Float32)
(assert (= p x))
