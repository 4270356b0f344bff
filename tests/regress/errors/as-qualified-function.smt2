; expect: 3:11: as is supported of symbols without arguments and in ((as const sort) value) only
(declare-const p Bool)
(assert ((as not Bool) p))
