; expect: 3:13: 'p' is of Bool, not of (_ FloatingPoint 5 11)
(declare-const p Bool)
(assert (as p Float16))
