; expect: 2:25: Int is not supported
(declare-const a (Array Int Int))
