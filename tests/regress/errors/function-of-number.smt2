; expect: 3:10: f: argument 1 must be of (_ FloatingPoint 5 11), got a number
(declare-fun f (Float16) Bool)
(assert (f 1.5))
