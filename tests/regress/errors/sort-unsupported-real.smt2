; expect: 2:18: Real is not supported
(declare-const f Real)
