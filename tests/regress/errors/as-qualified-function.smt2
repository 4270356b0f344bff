; expect: 3:11: as is not supported
(declare-const p Bool)
(assert ((as not Bool) p))
