; expect: 2:23: as is supported of symbols without arguments and in ((as const sort) value) only
(assert (let ((n 1)) (as n Bool)))
