; expect: 2:18: expected a sort, got '"Bool"'
(declare-const f "Bool")
