; expect: 2:19: unknown sort 'Seq'
(declare-const f (Seq Bool))
