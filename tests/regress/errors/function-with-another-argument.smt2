; expect: 3:10: f: argument 2 must be of (_ FloatingPoint 5 11), got a term of Bool
(declare-fun f (Bool Float16) Bool)
(assert (f true true))
