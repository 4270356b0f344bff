; expect: 4:10: =: operands of different sorts, (Array Bool Bool) and (Array Bool (_ FloatingPoint 5 11))
(declare-const a (Array Bool Bool))
(declare-const b (Array Bool Float16))
(assert (= a b))
