; expect: 3:10: as is not supported
(declare-const p Bool)
(assert (as p Bool))
