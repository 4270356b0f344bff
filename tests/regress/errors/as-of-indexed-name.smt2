; expect: 3:20: as is supported of symbols without arguments and in ((as const sort) value) only
(declare-const x Float16)
(assert (fp.eq x  (as  (_ NaN 5 11) Float16)))
