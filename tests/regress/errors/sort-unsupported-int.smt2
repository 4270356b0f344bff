; expect: 2:18: Int is not supported
(declare-const f Int)
