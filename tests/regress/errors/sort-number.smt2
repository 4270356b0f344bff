; expect: 2:18: expected a sort, got '8'
(declare-const f 8)
